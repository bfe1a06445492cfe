#pragma once

#include "launcher/launcher_error.h"
#include "model/saved_arrangements.h"
#include "platform/signal.h"
#include "platform/task.h"

#include <array>
#include <expected>
#include <functional>
#include <list>

namespace tessellar {

class LauncherHistory;
class LiveLayouts;

/// The saved arrangements of each display mode: saves, changes, exports and imports them.
/// `LayoutArchive` restores them.
///
/// Changes can be undone while the launcher runs, in a history of their own, as they do not affect the
/// layout. Files are read and written on a worker, one request at a time. Main thread only.
class LauncherArrangements {
public:
    using Mode = LauncherWindowMode;
    using Saved = std::expected<ArrangementSummary, LauncherError>;
    /// Receives the changed arrangement, or the removed one as it was.
    using Done = std::function<void(const Saved&)>;

    static constexpr std::size_t maximumSteps = 20;

    LauncherArrangements(Machine& machine, const LayoutStore& store, const LiveLayouts& layouts,
                         const LauncherHistory& history);

    void list(Mode mode, std::function<void(const QList<ListedArrangement>&)> done);
    /// Saves the current arrangement with the grid's settings.
    void save(Mode mode, const QString& name, Done done);
    /// Overwrites a saved arrangement with the current one, keeping its name.
    void replace(Mode mode, const QUuid& id, Done done);
    void rename(Mode mode, const QUuid& id, const QString& name, Done done);
    void remove(Mode mode, const QUuid& id, Done done);
    /// Copies its file to a path that must not exist yet.
    void exportTo(Mode mode, const QUuid& id, const FileSystem& files, const QString& path, Done done);
    /// Adds a copy of an arrangement's file.
    void importFrom(Mode mode, const FileSystem& files, const QString& path, Done done);

    /// For example "Delete “Work”"; empty if there is nothing to undo or redo.
    QString undoName(Mode mode) const;
    QString redoName(Mode mode) const;
    void undo(Mode mode, Done done);
    void redo(Mode mode, Done done);

    Signal<> changed; ///< the saved arrangements, or what can be undone

private:
    std::expected<void, LauncherError> guard(LauncherWindowMode mode, const QString& title) const;

    /// One change of a file; nullopt where it did not or does not exist.
    struct Step {
        QString name;
        Mode mode;
        QUuid id;
        std::optional<QByteArray> before;
        std::optional<QByteArray> after;
    };
    using Made = std::expected<Step, LauncherError>;
    using Steps = std::list<Step>;
    struct History {
        Steps undo;
        Steps redo;
    };

    template <typename Work, typename Then>
    void run(Work work, Then then);
    template <typename Make>
    void change(Mode mode, const QString& title, Make make, Done done);
    History& steps(Mode mode) { return _histories[std::size_t(mode)]; }
    const History& steps(Mode mode) const { return _histories[std::size_t(mode)]; }
    void step(Steps& from, Steps& to, bool isBack, Done done);
    static Made apply(const SavedArrangements& saved, Step step, const QString& title);
    static Saved summary(const SavedArrangements& saved, const Step& step);

    Machine& _machine;
    const LayoutStore& _store;
    const LiveLayouts& _layouts;
    const LauncherHistory& _history;
    std::array<History, 2> _histories; ///< by mode
    std::list<Task> _running;
};

/// Why a saved or imported arrangement cannot be used.
LauncherError arrangementError(const LayoutStore::Error& error, const QString& title);

} // namespace tessellar
