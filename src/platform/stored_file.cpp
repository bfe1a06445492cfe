#include "platform/stored_file.h"

namespace tessellar {

using Code = FileError::Code;

StoredFile::StoredFile(const FileSystem& files, QString path, std::uint64_t maximumBytes)
    : _files(&files), _path(std::move(path)), _maximumBytes(maximumBytes) {}

std::expected<std::optional<QByteArray>, FileError> StoredFile::read() {
    auto bytes = _files->read(_path, _maximumBytes);
    bool isMissing = !bytes && bytes.error().code == Code::notFound;
    if (isMissing) {
        // A dangling link does not count as missing: its volume may come back.
        const auto link = _files->linkStatus(_path);
        isMissing = !link && link.error().code == Code::notFound;
    }
    _blocked.reset();
    if (isMissing)
        return std::nullopt;
    if (bytes)
        return *std::move(bytes);
    _blocked = bytes.error();
    return std::unexpected(bytes.error());
}

/// The path to write to: the target, if it is a link.
std::expected<QString, FileError> StoredFile::target() const {
    const auto link = _files->linkStatus(_path);
    if (link && link->type == FileType::symbolicLink)
        return _files->resolved(_path);
    return _path;
}

std::expected<void, FileError> StoredFile::write(const QByteArray& bytes) {
    if (const auto error = _blocked) {
        // If it is gone by now, nothing is lost. If it is readable by now, its contents have not been
        // loaded.
        const auto now = read();
        if (!now || *now) {
            _blocked = error;
            return std::unexpected(*error);
        }
    }
    if (static_cast<std::uint64_t>(bytes.size()) > _maximumBytes)
        return std::unexpected(FileError{Code::tooLarge, _path});
    if (!_isUnsure && _files->read(_path, _maximumBytes) == bytes)
        return {};
    if (const auto made = _files->createDirectories(FileSystem::parent(_path)); !made)
        return made;
    const auto path = target();
    const auto written = path ? _files->writeAtomically(*path, bytes) : std::unexpected(path.error());
    _isUnsure = !written;
    return written;
}

std::expected<QString, FileError> StoredFile::setAside(const Clock& clock, const QUuid& tag) {
    const QString name = FileSystem::fileName(_path);
    const QString aside = FileSystem::joined(
        FileSystem::parent(_path),
        stampedName(name.first(name.lastIndexOf(u'.')) + QStringLiteral(".damaged"), clock, tag));
    const auto moved = _files->move(_path, aside);
    if (!moved) {
        _blocked = moved.error();
        return std::unexpected(*_blocked);
    }
    return aside;
}

QString StoredFile::stampedName(const QString& prefix, const Clock& clock, const QUuid& tag) {
    const QString stamp = clock.now().toIso8601().replace(u':', u'-');
    return prefix + u'-' + stamp + u'-' + toText(tag).first(8) + QStringLiteral(".json");
}

} // namespace tessellar
