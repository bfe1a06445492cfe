#pragma once

#include "model/json_losses.h"
#include "model/layout_store.h"

namespace tessellar {

/// A saved arrangement as a list shows it, with what a small picture of it needs.
struct ListedArrangement {
    ArrangementSummary summary;
    Page firstPage; ///< without what is hidden
    int rows = 0;   ///< of the grid that it was saved with; 0 where that is not known
    int columns = 0;
    bool isReadable = true; ///< else no more than the identifier is known

    bool operator==(const ListedArrangement&) const = default;
};

/// Counts what is in it. A document of an older version becomes the current one.
Arrangement makeArrangement(const QUuid& id, const QString& name, Instant createdAt,
                            LayoutDocument document, const std::optional<ArrangementLayout>& layout);
ArrangementSummary summaryOf(const Arrangement& arrangement);

/// The folder of one mode's saved arrangements. A value; any thread may use it, for it reads whole
/// documents.
class SavedArrangements {
public:
    using Error = LayoutStore::Error;
    using Read = std::expected<json::MaybeLossy<Arrangement>, Error>;

    SavedArrangements(const Machine& machine, const QString& applicationFolder,
                      LauncherWindowMode mode);

    QString path(const QUuid& id) const;
    /// Newest first, those that cannot be read last; the log says why. A file whose name is no
    /// identifier is somebody else's.
    QList<ListedArrangement> list() const;
    /// It goes by the name of its file, whatever identifier stands in that.
    Read read(const QUuid& id) const;
    /// What `bytes` holds, as a file at `path` would.
    Read decode(const QByteArray& bytes, const QString& path) const;
    /// The bytes of its file.
    std::expected<QByteArray, FileError> encoded(const Arrangement& arrangement) const;
    std::expected<void, FileError> remove(const QUuid& id) const { return _files->remove(path(id)); }

    // The files as they are.
    std::expected<QByteArray, FileError> bytes(const QUuid& id) const;
    std::expected<void, FileError> writeBytes(const QUuid& id, const QByteArray& bytes) const;

private:
    const FileSystem* _files;
    Log* _log;
    Locale _locale;
    QString _folder;
};

} // namespace tessellar
