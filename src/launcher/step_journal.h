#pragma once

#include "model/layout_store.h"
#include "platform/stored_file.h"
#include "smartfolders/smart_folder_definition.h"

#include <array>
#include <optional>

namespace tessellar {

class SmartFolderLibrary;

/// Lets a step that changes several files be whole: all of them are as it wants them, or none, also
/// after the program was killed between two of them, or when the disk takes nothing any more.
///
/// 1. `begin` writes down what each file holds, and a digest of what it is to hold.
/// 2. The files are written, each whole, by their own stores.
/// 3. `end` takes the note away: with that the step is made, and not before.
///
/// A note that is found at the start is of a step that was cut off, or that failed and could not be
/// taken back: its files hold again what they held. Where one of them is neither as it was nor as it
/// was to be, others have worked on it since, and the note means nothing any more.
///
///     unfinished-step.json
class StepJournal {
public:
    /// What the files hold that a step changes; absent where it leaves one alone.
    struct Files {
        std::optional<LayoutDocument> fullScreen = {};
        std::optional<LayoutDocument> windowed = {};
        std::optional<QList<SmartFolderDefinition>> definitions = {};
        std::optional<QMap<QString, QJsonValue>> settings = {}; ///< null for those that are not set
        /// The record of an import: its bytes as Latin-1, empty where there is none.
        std::optional<QString> importRecord = {};
    };

    StepJournal(const Machine& machine, const QString& directory);

    /// Nothing may wait to be saved: `before` is what the files hold now.
    std::expected<void, FileError> begin(const Files& before, const Files& after);
    /// Success means that the step stands, whatever happens.
    std::expected<void, FileError> end();
    /// What the files of a step held that was cut off, and are to hold again; nothing where there is no
    /// such step, or where they cannot all be seen now.
    std::optional<Files> cutOff(const std::array<LayoutStore::LoadResult, 2>& loaded,
                                const SmartFolderLibrary& smartFolders);

    /// The record of an import as it is, as `Files` has it; nothing where it cannot be read now.
    std::optional<QString> importRecord() const;
    /// Makes it that again.
    std::expected<void, FileError> putImportRecordBack(const QString& record) const;

    struct Note; ///< what the file holds

private:
    const Machine& _machine;
    QString _directory;
    StoredFile _file;
};

} // namespace tessellar
