#pragma once

#include "model/layout_store.h"
#include "platform/stored_file.h"
#include "smartfolders/smart_folder_definition.h"

#include <array>
#include <optional>

namespace tessellar {

class SmartFolderLibrary;

/// Makes steps that change several files atomic, even if the program is killed in between or the disk
/// is full: a rollback journal.
///
/// 1. `begin` records the contents of each file, and a digest of its contents to be.
/// 2. The files are written atomically by their own stores.
/// 3. `end` deletes the record, which commits the step.
///
/// A record found at start-up belongs to a step that was interrupted, or that failed and could not be
/// rolled back: its files get their old contents back. If a file has neither its old nor its new
/// contents, it was changed since, and the record is discarded.
///
///     unfinished-step.json
class StepJournal {
public:
    /// The contents of the files that a step changes; absent if unchanged.
    struct Files {
        std::optional<LayoutDocument> fullScreen = {};
        std::optional<LayoutDocument> windowed = {};
        std::optional<QList<SmartFolderDefinition>> definitions = {};
        std::optional<QMap<QString, QJsonValue>> settings = {}; ///< null if unset
        /// The import metadata: its bytes as Latin-1, empty if there is no file.
        std::optional<QString> importRecord = {};
    };

    StepJournal(const Machine& machine, const QString& directory);

    /// `before` must be what the files contain now; no save may be pending.
    std::expected<void, FileError> begin(const Files& before, const Files& after);
    /// Commits the step; it is permanent once this succeeds.
    std::expected<void, FileError> end();
    /// The contents that the files of an interrupted step had before it; nullopt if there is no such
    /// step, or if not all files can be read.
    std::optional<Files> interruptedStep(const std::array<LayoutStore::LoadResult, 2>& loaded,
                                         const SmartFolderLibrary& smartFolders);

    /// The present import metadata, encoded as in `Files`; nullopt if unreadable.
    std::optional<QString> importRecord() const;
    /// Restores the import metadata.
    std::expected<void, FileError> putImportRecordBack(const QString& record) const;

    struct Note; ///< the contents of the file

private:
    const Machine& _machine;
    QString _directory;
    StoredFile _file;
};

} // namespace tessellar
