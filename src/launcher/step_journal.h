#pragma once

#include "model/layout_store.h"
#include "platform/stored_file.h"
#include "smartfolders/smart_folder_definition.h"

#include <array>

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
    /// What a step changes, file by file; absent where it leaves a file alone.
    struct Change {
        template <typename Value>
        struct Part {
            QString before; ///< the digest
            Value after;
        };
        using Layouts = std::array<std::optional<LayoutDocument>, 2>; ///< by mode

        LauncherWindowMode mode = LauncherWindowMode::fullScreen; ///< whose settings they are
        std::optional<Part<LayoutDocument>> fullScreen;
        std::optional<Part<LayoutDocument>> windowed;
        std::optional<Part<QList<SmartFolderDefinition>>> definitions;
        std::optional<Part<ArrangementLayout>> settings;

        int files() const;
    };

    explicit StepJournal(const Machine& machine, const QString& directory);

    template <typename Value>
    static Change::Part<Value> part(const Value& before, const Value& after);

    std::expected<void, FileError> begin(const Change& change);
    void end();

    /// Brings a step that was cut off to its end: in the stores, and in what was loaded from them.
    void finish(LayoutStore& store, std::array<LayoutStore::LoadResult, 2>& loaded,
                SmartFolderLibrary& smartFolders);

private:
    const Machine& _machine;
    StoredFile _file;
};

} // namespace tessellar
