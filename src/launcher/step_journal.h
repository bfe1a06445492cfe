#pragma once

#include "discovery/launchpad_import.h"
#include "model/layout_store.h"
#include "platform/stored_file.h"
#include "smartfolders/smart_folder_definition.h"

#include <array>
#include <optional>

namespace tessellar {

class SmartFolderLibrary;

/// Lets a step that changes several files be whole: all of them are as it wants them, or none, also
/// after the program was killed between two of them.
///
/// 1. `begin` writes down what each file is to hold, and a digest of what it held.
/// 2. The files are written, each whole, by their own stores.
/// 3. `end` removes the note.
///
/// A note that is found at the start is of a step that was cut off: `finish` writes the files that are
/// still as they were. Where one of them is neither as it was nor as it was to be, others have worked
/// on it since, and the note means nothing any more.
///
///     unfinished-step.json
class StepJournal {
public:
    /// What the files are to hold that a step changes; absent where it leaves one alone.
    struct Change {
        LauncherWindowMode mode = LauncherWindowMode::fullScreen; ///< whose settings they are
        std::optional<LayoutDocument> fullScreen = {};
        std::optional<LayoutDocument> windowed = {};
        std::optional<QList<SmartFolderDefinition>> definitions = {};
        std::optional<ArrangementLayout> settings = {};
        std::optional<LegacyLaunchpadImportMetadata> importRecord = {};
    };

    explicit StepJournal(const Machine& machine, const QString& directory);

    /// Nothing may wait to be saved: it is the files as they are now that the step begins with.
    std::expected<void, FileError> begin(Change change);
    void end();

    /// Brings a step that was cut off to its end: in the stores, and in what was loaded from them.
    void finish(LayoutStore& store, std::array<LayoutStore::LoadResult, 2>& loaded,
                SmartFolderLibrary& smartFolders);

    struct Note; ///< what the file holds

private:
    /// Of the files as they are, in the order of the changes.
    QStringList digests(LauncherWindowMode mode) const;

    const Machine& _machine;
    QString _directory;
    StoredFile _file;
};

} // namespace tessellar
