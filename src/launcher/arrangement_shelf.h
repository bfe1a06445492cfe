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

/// The arrangements that the user saved, of each display mode: kept, changed, taken elsewhere and
/// brought in. To put one in place of the present one is `LayoutArchive`'s.
///
/// Each change can be taken back while the launcher runs. It is no step of the layout's history, for
/// the layout is as it was. Files are read and written on a worker, one request after the other. Main
/// thread only.
class ArrangementShelf {
public:
    using Mode = LauncherWindowMode;
    using Saved = std::expected<ArrangementSummary, LauncherError>;
    /// With what the arrangement is now, or was before it went.
    using Done = std::function<void(const Saved&)>;

    static constexpr std::size_t maximumSteps = 20;

    ArrangementShelf(Machine& machine, const LayoutStore& store, const LiveLayouts& layouts,
                     const LauncherHistory& history);

    void list(Mode mode, std::function<void(const QList<ListedArrangement>&)> done);
    /// The present arrangement, with the grid's settings.
    void save(Mode mode, const QString& name, Done done);
    /// The present arrangement in place of a saved one, under its name.
    void replace(Mode mode, const QUuid& id, Done done);
    void rename(Mode mode, const QUuid& id, const QString& name, Done done);
    void remove(Mode mode, const QUuid& id, Done done);
    /// A copy of its file at a path where there is none yet.
    void exportTo(Mode mode, const QUuid& id, const FileSystem& files, const QString& path, Done done);
    /// Beside those that are there. The file stays where it is.
    void importFrom(Mode mode, const FileSystem& files, const QString& path, Done done);

    /// "Delete “Work”", or empty where there is nothing to undo or redo.
    QString undoName(Mode mode) const;
    QString redoName(Mode mode) const;
    void undo(Mode mode, Done done);
    void redo(Mode mode, Done done);

    Signal<> changed; ///< what is saved, or what can be undone

private:
    std::expected<void, LauncherError> guard(LauncherWindowMode mode, const QString& title) const;

    /// What a change made of a file; nothing where there was or is none.
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

/// Why a saved arrangement, here or in a file from elsewhere, cannot be used.
LauncherError arrangementError(const LayoutStore::Error& error, const QString& title);

} // namespace tessellar
