#include "model/overwrite_guard.h"

#include <utility>

namespace tessellar {

void OverwriteGuard::wasRead(const QByteArray& bytes) {
    const std::lock_guard lock(_mutex);
    _isWatching = true;
    _known = {printOf(bytes)};
}

std::expected<void, FileError> OverwriteGuard::beforeWriting(const QByteArray& bytes, Instant now) {
    const std::lock_guard lock(_mutex);
    if (!_isWatching)
        return {};
    const auto found = _files.read(_path, maximumLayoutBytes);
    if (!found && found.error().code != FileError::Code::notFound)
        return std::unexpected(found.error());
    QList<Print> known{printOf(bytes)};
    if (found) {
        const Print present = printOf(*found);
        if (!known.contains(present) && !_known.contains(present)) {
            auto kept = _backups.keep(*found, QStringLiteral("changed-by-another-program"), now);
            if (!kept)
                return std::unexpected(kept.error());
            _kept = *std::move(kept);
        }
        known.append(present);
    }
    _known = std::move(known);
    return {};
}

std::optional<QString> OverwriteGuard::takeKept() {
    const std::lock_guard lock(_mutex);
    return std::exchange(_kept, std::nullopt);
}

} // namespace tessellar
