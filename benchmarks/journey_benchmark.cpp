// A journey through the real window, drawn by software, at 135 and at 5,000 applications with 50 smart
// folders: start, search, drag, save, rescan, check for updates, review of a removal, while a volume
// and a tool hang and a server drips; and a second start. First the budgets of the main thread, each
// beside its floor in the same run, in milliseconds of its processor time; then its longest turns by
// name. A turn is what the event loop delivers at once: nothing else happens meanwhile, so none is to
// take over 16 ms. Last the frames of what moves under the hand: how many a second, and the longest
// wait for one, which is not to pass 33 ms. Those are wall time, and mean something on a quiet machine
// alone.

#include "hanging_mac.h"

#include "app/launcher_window.h"
#include "editing/search_index.h"
#include "launcher/installed_applications.h"
#include "launcher/launcher_cleanup.h"
#include "launcher/launcher_editor.h"
#include "launcher/launcher_history.h"
#include "launcher/launcher_search.h"
#include "launcher/launcher_updates.h"
#include "launcher/live_layout.h"
#include "launcher/smart_folder_editing.h"
#include "launcher/smart_folder_library.h"
#include "launcher/tile_opener.h"
#include "smartfolders/smart_folder_rule.h"
#include "support/fake_updates.h"

#include <QGuiApplication>
#include <QMetaEnum>
#include <QMouseEvent>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <functional>
#include <optional>
#include <vector>

using namespace tessellar;
using namespace std::chrono_literals;
using namespace Qt::Literals::StringLiterals;

namespace {

// ---- the turns of the main thread

double milliseconds(clockid_t clock) {
    timespec time{};
    ::clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

struct Turn {
    const char* step;
    QByteArray what;
    double processor = 0;
    double wall = 0;
};

const char* step = "";
std::vector<Turn> turns;
bool isInTurn = false;

/// Runs a call as a turn; its processor time.
template <typename Call>
double turn(const QByteArray& what, const Call& call) {
    const bool isOuter = !std::exchange(isInTurn, true);
    const double wall = milliseconds(CLOCK_MONOTONIC);
    const double processor = milliseconds(CLOCK_THREAD_CPUTIME_ID);
    call();
    const double took = milliseconds(CLOCK_THREAD_CPUTIME_ID) - processor;
    if (isOuter) {
        isInTurn = false;
        turns.push_back({step, what, took, milliseconds(CLOCK_MONOTONIC) - wall});
    }
    return took;
}

class MeteredApplication final : public QGuiApplication {
public:
    using QGuiApplication::QGuiApplication;

    bool notify(QObject* receiver, QEvent* event) override {
        if (isInTurn)
            return QGuiApplication::notify(receiver, event);
        const auto type = QMetaEnum::fromType<QEvent::Type>().valueToKey(event->type());
        const QByteArray what = QByteArray(receiver->metaObject()->className()) + ' ' + type;
        bool isAccepted = false;
        turn(what, [&] { isAccepted = QGuiApplication::notify(receiver, event); });
        return isAccepted;
    }
};

/// Lets events come until something is so; false after a minute.
template <typename IsSo>
bool until(const IsSo& isSo) {
    const double end = milliseconds(CLOCK_MONOTONIC) + 60'000;
    QTimer wake; // looks again even when nothing happens
    wake.start(5ms);
    while (!isSo()) {
        if (milliseconds(CLOCK_MONOTONIC) > end) {
            std::printf("  %s: gave up waiting\n", step);
            return false;
        }
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
}

void pass(std::chrono::milliseconds time) {
    const double end = milliseconds(CLOCK_MONOTONIC) + static_cast<double>(time.count());
    (void)until([&] { return milliseconds(CLOCK_MONOTONIC) > end; });
}

double median(std::vector<double> values) {
    std::ranges::sort(values);
    return values.empty() ? 0 : values[values.size() / 2];
}

void printBudget(const char* what, const std::vector<double>& work, double floor, double budget) {
    const double most = work.empty() ? 0 : std::ranges::max(work);
    std::printf("  %-52s %8.2f %8.2f %8.2f %8.2f  %s\n", what, median(work), most, floor, budget,
                most <= budget ? "" : "over");
}

// ---- the journey

class Journey {
public:
    explicit Journey(int applications) : _mac(applications) {}

    void run() {
        turns.clear();
        std::printf("  %-52s %8s %8s %8s %8s\n", "main thread, ms of processor time", "median", "most",
                    "floor", "budget");
        start("start");
        addSmartFolders();
        printFrames();
        hanging_volume::setHanging(true);
        search();
        editRules();
        changeLayout();
        deleteSmartFolder();
        dragAndSave();
        rescan();
        check();
        review();
        launchFromHungVolume();
        hanging_volume::setHanging(false);
        step = "end";
        turn("the window goes", [&] { _window.reset(); });
        start("start with an arrangement");
        _window.reset();
        printTurns();
    }

private:
    LauncherViewModel& viewModel() { return _window->viewModel(); }
    LauncherController& controller() { return _window->controller(); }

    void start(const char* name) {
        step = name;
        bool isComplete = false;
        turn("the window is made", [&] {
            _window = std::make_unique<LauncherWindow>(_mac.machine, LauncherWindowMode::fullScreen,
                                                       QSize(1440, 900));
            _window->whenComplete([&] { isComplete = true; });
        });
        turn("the window is shown", [&] { _window->show(); });
        (void)until([&] { return isComplete; });
        pass(500ms);
    }

    void addSmartFolders() {
        step = "preparation";
        for (int i = 0; i < 50; ++i) {
            auto definition = templateDefinition(SmartFolderTemplate::games, _mac.uuids.next(),
                                                 _mac.clock.now(), _mac.uuids);
            definition.name = u"Smart %1"_s.arg(i);
            definition.rules = {SmartFolderTextRule{_mac.uuids.next(), "displayName",
                                                    predicate::Contains(i % 2 == 0 ? u"a"_s : u"e"_s)}};
            (void)viewModel().editor().addSmartFolder(viewModel().shown().mode(), definition);
        }
        (void)until([&] {
            const auto& folders = viewModel().smartFolders();
            const auto* last =
                folders.evaluation(folders.definitions().last().id, viewModel().shown().mode());
            return last && !last->matches.isEmpty();
        });
        viewModel().shown().navigation().setCurrentPage(0);
        pass(1s);
    }

    void search() {
        step = "search";
        const SearchIndex index(
            searchInput(viewModel().shown().document(), viewModel().applications().all()),
            _mac.machine.locale);
        bool isReady = false;
        viewModel().search().whenReady(viewModel().shown().mode(), [&] { isReady = true; });
        (void)until([&] { return isReady; });
        std::vector<double> keystrokes;
        std::vector<double> floors;
        for (const char* word : {"amber", "gold", "journal 1", "e"}) {
            for (std::size_t length = 1; length <= std::strlen(word); ++length) {
                const QString query = QString::fromLatin1(word, static_cast<qsizetype>(length));
                floors.push_back(turn("floor", [&] { (void)index.search(query); }));
                turns.pop_back();
                keystrokes.push_back(turn("keystroke", [&] { controller().search()->setText(query); }));
                pass(40ms);
            }
        }
        turn("end of the search", [&] { controller().search()->clear(); });
        pass(200ms);
        printBudget("a keystroke until its results are in the model", keystrokes, median(floors), 3);
    }

    /// A rule is typed while what it matches is shown below it.
    void editRules() {
        step = "rules";
        SmartFolderPanel& panel = *controller().panels()->smartFolder();
        turn("the editor opens", [&] {
            viewModel().smartFolderEditing().open(viewModel().shown().mode(),
                                                  viewModel().smartFolders().definitions().first());
            controller().sheets()->open(Sheets::smartFolder);
        });
        pass(500ms);
        std::vector<double> keystrokes;
        std::vector<double> previews;
        for (const char* word : {"amber", "gold", "journal", "e"}) {
            for (std::size_t length = 1; length <= std::strlen(word); ++length) {
                const double typed = milliseconds(CLOCK_MONOTONIC);
                const auto rules = viewModel().smartFolderEditing().draft()->ruleCount();
                keystrokes.push_back(turn("keystroke", [&] {
                    panel.type(static_cast<int>(rules - 1), 0,
                               QString::fromLatin1(word, static_cast<qsizetype>(length)));
                }));
                const auto shown = QObject::connect(&panel, &SmartFolderPanel::changed, &panel, [&] {
                    previews.push_back(milliseconds(CLOCK_MONOTONIC) - typed);
                });
                pass(80ms);
                QObject::disconnect(shown);
            }
        }
        turn("the editor closes", [&] { panel.cancel(); });
        pass(200ms);
        printBudget("a keystroke in a rule", keystrokes, 0, 16);
        printBudget("a keystroke until its matches are shown (wall)", previews, 0, 50);
    }

    void changeLayout() {
        step = "change of the layout";
        std::vector<double> changes;
        std::vector<double> floors;
        for (int i = 0; i < 10; ++i) {
            const LiveLayout& layout = viewModel().shown();
            const Page page = layout.shownPages().tiles(0);
            floors.push_back(turn("floor", [&] {
                (void)ShownPages(layout.pages(), layout.hiddenKeys(),
                                 pageGeometry(layout.settings()).capacity());
            }));
            turns.pop_back();
            changes.push_back(turn("change", [&] {
                (void)viewModel().editor().moveTiles(layout.mode(), {page.first().id()},
                                                     {.page = 0, .index = 5});
            }));
            pass(30ms);
        }
        printBudget("a change of the layout until the grid has it", changes, median(floors), 8);
        step = "save";
        pass(1500ms);
    }

    /// A step of several files, which are written behind it.
    void deleteSmartFolder() {
        step = "a step of several files";
        const LauncherWindowMode mode = viewModel().shown().mode();
        std::vector<double> waits;
        const auto wait = [&](const QByteArray& what, const auto& call) {
            const double began = milliseconds(CLOCK_MONOTONIC);
            turn(what, call);
            waits.push_back(milliseconds(CLOCK_MONOTONIC) - began);
            pass(1500ms);
        };
        for (int i = 0; i < 3; ++i) {
            wait("a smart folder is deleted", [&] {
                const QUuid id = viewModel().smartFolders().definitions().last().id;
                (void)viewModel().editor().deleteSmartFolder(mode, id);
            });
            wait("it comes back", [&] { viewModel().history().undo(mode); });
        }
        printBudget("a step of several files until it is shown (wall)", waits, 0, 16);
    }

    QPointF cell(double column, double row) {
        const GridMetrics metrics = controller().grid()->metrics();
        return {metrics.left + column * metrics.cellWidth, metrics.top + row * metrics.cellHeight};
    }

    void send(QEvent::Type type, QPointF at, Qt::MouseButtons buttons) {
        QQuickView& view = _window->view();
        QMouseEvent event(type, at, view.mapToGlobal(at),
                          type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton, buttons, {});
        QCoreApplication::sendEvent(&view, &event);
    }

    /// Lifts the first tile and carries it over others, a step every few milliseconds.
    void carry(std::chrono::milliseconds pace) {
        send(QEvent::MouseButtonPress, cell(0.5, 0.4), Qt::LeftButton);
        for (int i = 1; i <= 40; ++i) {
            send(QEvent::MouseMove, cell(0.5 + i * 0.12, 0.4 + i * 0.05), Qt::LeftButton);
            pass(pace);
        }
        if (!controller().drag()->isActive())
            std::printf("  nothing was picked up\n");
    }

    void dragAndSave() {
        step = "drag";
        carry(16ms);
        send(QEvent::MouseButtonRelease, cell(5.3, 2.4), {});
        step = "save after the drag";
        pass(1500ms);
    }

    /// The waits for frames while something moves: from what sets it off to the first, and on to the
    /// last. A frame that comes while all rests is not waited for.
    class Frames {
    public:
        explicit Frames(QQuickWindow& window) {
            QObject::connect(&window, &QQuickWindow::frameSwapped, &_context, [this] {
                if (!_last)
                    return;
                const double now = milliseconds(CLOCK_MONOTONIC);
                _waits.push_back(now - std::exchange(*_last, now));
            });
        }
        /// Something sets off a motion: what was waited before does not count.
        void begin() { _last = milliseconds(CLOCK_MONOTONIC); }
        std::size_t count() const { return _waits.size(); }
        /// Nothing moves until the next `begin`.
        void rest() { _last.reset(); }
        void print(const char* what) const {
            double sum = 0;
            for (const double wait : _waits)
                sum += wait;
            const double most = _waits.empty() ? 0 : std::ranges::max(_waits);
            const auto count = static_cast<double>(_waits.size());
            std::printf("  %-52s %8.0f %8.1f %8.1f %8.1f  %s\n", what, count,
                        sum > 0 ? 1000 * count / sum : 0, median(_waits), most,
                        most <= 33 ? "" : "over");
        }

    private:
        QObject _context;
        std::vector<double> _waits;
        std::optional<double> _last;
    };

    void printFrames() {
        step = "frames";
        std::printf("  %-52s %8s %8s %8s %8s\n", "frames, ms of wall time", "count", "a second",
                    "median", "most");
        const LiveLayout& layout = viewModel().shown();
        {
            Frames frames(_window->view());
            for (const int page : {1, 2, 3, 2, 1, 0}) {
                frames.begin();
                controller().grid()->turnTo(page);
                pass(300ms); // it is still on its way, as it is under an impatient hand
            }
            frames.print("pages turned");
        }
        pass(500ms);
        {
            Frames frames(_window->view());
            frames.begin();
            carry(8ms);
            send(QEvent::MouseMove, cell(5.95, 2.4), Qt::LeftButton);
            frames.rest();
            pass(TileDrag::roomDelay);
            frames.begin();
            pass(200ms); // others make room
            frames.begin();
            for (int i = 1; i <= 40; ++i) {
                send(QEvent::MouseMove, cell(5.95 - i * 0.1, 2.4 + i * 0.03), Qt::LeftButton);
                pass(8ms);
            }
            frames.print("a tile carried over others");
        }
        (void)controller().drag()->putBack();
        send(QEvent::MouseButtonRelease, cell(2, 3.6), {});
        pass(500ms);
        const Page page = layout.shownPages().tiles(0);
        if (!viewModel().editor().moveTiles(layout.mode(), {page.first().id()},
                                            {.page = 0, .index = page.size() - 1}))
            return (void)std::printf("  nothing can be moved\n");
        pass(700ms);
        {
            Frames frames(_window->view());
            frames.begin();
            viewModel().history().undo(layout.mode());
            pass(300ms);
            frames.print("an undo slides all tiles of a page");
        }
        pass(300ms);
        if (!viewModel().editor().groupTiles(layout.mode(), {page.at(1).id(), page.at(2).id()},
                                             page.first().id()))
            return (void)std::printf("  nothing can be grouped\n");
        const QUuid folder = layout.shownPages().tiles(0).first().id();
        pass(500ms);
        {
            Frames frames(_window->view());
            for (int i = 0; i < 3; ++i) {
                frames.begin();
                if (!viewModel().shown().navigation().openFolder(folder))
                    return (void)std::printf("  there is no folder\n");
                pass(240ms);
                frames.begin();
                viewModel().shown().navigation().closeFolder();
                pass(240ms);
            }
            frames.print("a folder opened and closed");
        }
        viewModel().history().undo(layout.mode());
        pass(500ms);
        bool isReady = false;
        viewModel().search().whenReady(layout.mode(), [&] { isReady = true; });
        (void)until([&] { return isReady; });
        {
            Frames frames(_window->view());
            for (const auto* word : {u"amber", u"gold", u"e"}) {
                for (qsizetype length = 1; length <= QStringView(word).size(); ++length) {
                    frames.begin();
                    controller().search()->setText(QStringView(word).first(length).toString());
                    (void)until([&, before = frames.count()] { return frames.count() > before; });
                    frames.rest();
                    pass(80ms);
                }
            }
            frames.print("a search typed");
        }
        controller().search()->clear();
        pass(500ms);
    }

    void rescan() {
        step = "rescan";
        hanging_volume::setHanging(
            false); // a scan looks at every volume; one that hangs would hold it up for good
        _mac.builder.addApplication({.name = u"Newly There"_s, .identifier = u"org.example.new"_s});
        bool isDone = false;
        turn("rescan", [&] { viewModel().applications().rescan([&] { isDone = true; }); });
        (void)until([&] { return isDone; });
        pass(1s);
        step = "rescan while a volume hangs";
        hanging_volume::setHanging(true);
        turn("rescan", [&] { viewModel().applications().rescan(); });
        pass(300ms);
        hanging_volume::setHanging(false);
        pass(1s);
        hanging_volume::setHanging(true);
    }

    void check() {
        step = "check for updates";
        QTimer drip;
        QObject::connect(&drip, &QTimer::timeout, &drip,
                         [&] { _mac.http.answer(u"feeds"_s, test::sparkleFeed("101")); });
        drip.start(10ms);
        turn("check", [&] { viewModel().updates().check(); });
        pass(1s);
        step = "check for updates with its sheet";
        turn("the sheet opens", [&] { controller().sheets()->open(Sheets::updates); });
        pass(3s);
        turn("end of the check", [&] { viewModel().updates().cancelCheck(); });
        pass(300ms);
        step = "sheet of updates";
        UpdateRows& rows = *controller().panels()->updates()->rows();
        turn("what cannot be checked is listed", [&] { rows.toggle(rows.rowCount() - 1); });
        pass(500ms);
        std::printf("  %d lines in the sheet of updates\n", rows.rowCount());
        turn("the sheet closes", [&] { controller().sheets()->close(); });
        pass(300ms);
    }

    void review() {
        step = "review: scan";
        bool isFound = false;
        double found = 0;
        const double asked = milliseconds(CLOCK_MONOTONIC);
        turn("review", [&] {
            viewModel().cleanup().open(u"org.example.app0"_s, [&](const LauncherCleanup::Outcome&) {
                isFound = true;
                found = milliseconds(CLOCK_MONOTONIC);
                step = "review: opens";
            });
        });
        (void)until([&] { return isFound; });
        RemovalItems& items = *controller().panels()->removal()->items();
        bool isDrawn = false;
        QObject::connect(&_window->view(), &QQuickWindow::frameSwapped, &items,
                         [&] { isDrawn = isDrawn || items.rowCount() > 1000; });
        (void)until([&] { return isDrawn; });
        printBudget("a review of 1,200 items until it is drawn (wall)",
                    {milliseconds(CLOCK_MONOTONIC) - found}, found - asked, 50);
        step = "review: sizes";
        (void)until([&] { return !viewModel().cleanup().isMeasuring(); });
        pass(200ms);
        step = "review: closes";
        turn("close", [&] { controller().panels()->removal()->cancel(); });
        pass(300ms);
    }

    void launchFromHungVolume() {
        step = "launch from a volume that hangs";
        (void)hanging_volume::takeCallsOfMainThread();
        turn("launch", [&] { viewModel().opener().launch(u"org.example.away"_s); });
        pass(300ms);
        if (const int waits = hanging_volume::takeCallsOfMainThread(); waits > 0)
            std::printf("  the main thread waited for the volume %d times\n", waits);
    }

    static void printTurns() {
        std::erase_if(turns, [](const Turn& one) { return std::strcmp(one.step, "preparation") == 0; });
        const auto over =
            std::ranges::count_if(turns, [](const Turn& one) { return one.processor > 16; });
        std::printf("  %zu turns, %td of them over 16 ms of processor time; the longest:\n",
                    turns.size(), over);
        std::ranges::sort(turns, std::greater(), &Turn::processor);
        for (std::size_t i = 0; i < std::min<std::size_t>(12, turns.size()); ++i)
            std::printf("  %8.2f ms (%7.2f wall)  %s: %s\n", turns[i].processor, turns[i].wall,
                        turns[i].step, turns[i].what.constData());
        std::ranges::sort(turns, std::greater(), &Turn::wall);
        std::printf("  the longest by the clock: %.2f ms, %s: %s\n", turns.front().wall,
                    turns.front().step, turns.front().what.constData());
    }

    HangingMac _mac;
    std::unique_ptr<LauncherWindow> _window;
};

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    hanging_volume::watchMainThread();
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    MeteredApplication application(argc, argv);
    const int only = argc > 1 ? std::atoi(argv[1]) : 0;
    for (const int applications : {135, 5000}) {
        if (only != 0 && only != applications)
            continue;
        std::printf("%d applications\n", applications);
        Journey(applications).run();
    }
    return 0;
}
