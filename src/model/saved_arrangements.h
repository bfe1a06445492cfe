#pragma once

#include "model/json_losses.h"
#include "model/layout_store.h"

namespace tessellar {

/// A saved arrangement as shown in a list, with what its thumbnail needs.
struct ListedArrangement {
    ArrangementSummary summary;
    Page firstPage; ///< without hidden tiles
    int rows = 0;   ///< of the grid when it was saved; 0 if unknown
    int columns = 0;
    bool isReadable = true; ///< if false, only the identifier is known

    bool operator==(const ListedArrangement&) const = default;
};

/// Computes the counts. Upgrades documents of older versions.
Arrangement makeArrangement(const QUuid& id, const QString& name, Instant createdAt,
                            LayoutDocument document, const std::optional<ArrangementLayout>& layout);
ArrangementSummary summaryOf(const Arrangement& arrangement);

/// One mode's folder of saved arrangements. Reads whole documents; any thread may use a copy.
class SavedArrangements {
public:
    using Error = LayoutStore::Error;
    using Read = std::expected<json::MaybeLossy<Arrangement>, Error>;

    SavedArrangements(const Machine& machine, const QString& applicationFolder,
                      LauncherWindowMode mode);

    QString path(const QUuid& id) const;
    /// Newest first; unreadable ones last, with the reason in the log. Ignores files whose name is not
    /// an identifier.
    QList<ListedArrangement> list() const;
    /// The identifier is that of the file name, whatever the file says.
    Read read(const QUuid& id) const;
    /// Decodes `bytes` as the contents of a file at `path`.
    Read decode(const QByteArray& bytes, const QString& path) const;
    /// The contents of its file.
    std::expected<QByteArray, FileError> encoded(const Arrangement& arrangement) const;
    std::expected<void, FileError> remove(const QUuid& id) const { return _files->remove(path(id)); }

    // Raw access to the files.
    std::expected<QByteArray, FileError> bytes(const QUuid& id) const;
    std::expected<void, FileError> writeBytes(const QUuid& id, const QByteArray& bytes) const;

private:
    const FileSystem* _files;
    Log* _log;
    Locale _locale;
    QString _folder;
};

} // namespace tessellar
