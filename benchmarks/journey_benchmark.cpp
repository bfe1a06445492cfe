// A journey through the real window, drawn by software, at 135 and at 5,000 applications with 50 smart
// folders: start, search, drag, save, rescan, check for updates, review of a removal, while a volume
// and a tool hang and a server drips; and a second start. First the budgets of the main thread, each
// beside its floor in the same run, in milliseconds of its processor time; then its longest turns by
// name. A turn is what the event loop delivers at once: nothing else happens meanwhile, so none is to
// take over 16 ms. Last the frames of what moves under the hand: how many a second, and the longest
// wait for one, which is not to pass 33 ms. Those are wall time, and mean something on a quiet machine
// alone.

#include "app/launcher_window.h"
#include "editing/search_index.h"
#include "icns_bytes.h"
#include "launcher/installed_applications.h"
#include "launcher/launcher_cleanup.h"
#include "launcher/launcher_editor.h"
#include "launcher/launcher_history.h"
#include "launcher/launcher_search.h"
#include "launcher/launcher_updates.h"
#include "launcher/live_layout.h"
#include "launcher/smart_folder_editing.h"
#include "launcher/smart_folder_library.h"
#include "platform/file_system.h"
#include "sample/mac_builder.h"
#include "smartfolders/smart_folder_rule.h"
#include "support/collecting_log.h"
#include "support/fake_http.h"
#include "support/fake_updates.h"
#include "support/memory_settings.h"

#include <QGuiApplication>
#include <QMetaEnum>
#include <QMouseEvent>
#include <QTemporaryDir>
#include <QTimer>

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <condition_variable>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <functional>
#include <mutex>
#include <vector>

using namespace tessellar;
using namespace std::chrono_literals;
using namespace Qt::Literals::StringLiterals;

// ---- a volume that hangs: calls of the C library on it wait until it is let go

namespace {

constexpr const char* hungVolume = "/Volumes/Hung";
std::mutex hangMutex;
std::condition_variable hangEnded;
bool isHanging = false;
pthread_t mainThread;
int mainThreadHung = 0;

void hangOn(const char* path) {
    if (!std::strstr(path, hungVolume))
        return;
    std::unique_lock lock(hangMutex);
    if (!isHanging)
        return;
    if (::pthread_equal(::pthread_self(), mainThread)) {
        // For good it would end the benchmark; long enough to be the longest turn.
        ++mainThreadHung;
        hangEnded.wait_for(lock, 500ms);
        return;
    }
    hangEnded.wait(lock, [] { return !isHanging; });
}

void setHanging(bool isOn) {
    const std::lock_guard lock(hangMutex);
    isHanging = isOn;
    hangEnded.notify_all();
}

template <typename Function>
Function* next(const char* name) {
    return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

} // namespace

extern "C" {
int open(const char* path, int flags, ...) {
    va_list rest;
    va_start(rest, flags);
    const mode_t mode = (flags & (O_CREAT | O_TMPFILE)) ? va_arg(rest, mode_t) : 0;
    va_end(rest);
    hangOn(path);
    static const auto call = next<int(const char*, int, ...)>("open");
    return call(path, flags, mode);
}
int fstatat(int folder, const char* path, struct stat* status, int flags) noexcept {
    hangOn(path);
    static const auto call = next<int(int, const char*, struct stat*, int)>("fstatat");
    return call(folder, path, status, flags);
}
int statx(int folder, const char* path, int flags, unsigned mask, struct statx* status) noexcept {
    hangOn(path);
    static const auto call = next<int(int, const char*, int, unsigned, struct statx*)>("statx");
    return call(folder, path, flags, mask, status);
}
int faccessat(int folder, const char* path, int mode, int flags) noexcept {
    hangOn(path);
    static const auto call = next<int(int, const char*, int, int)>("faccessat");
    return call(folder, path, mode, flags);
}
char* realpath(const char* path, char* resolved) noexcept {
    hangOn(path);
    static const auto call = next<char*(const char*, char*)>("realpath");
    return call(path, resolved);
}
}

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

// ---- a machine whose parts hang

/// Every tool is there and never ends by itself.
class HangingCommands final : public CommandRunner {
public:
    CommandResult run(const Command&, std::stop_token stop) override {
        std::unique_lock lock(_mutex);
        _ended.wait(lock, stop, [] { return false; });
        return {.outcome = CommandResult::Outcome::cancelled};
    }
    std::expected<std::int64_t, int> start(const Command&, const QByteArray&) override {
        return std::unexpected(ENOENT);
    }
    DetachedState look(std::int64_t, const QByteArray&) override { return {}; }
    void terminate(std::int64_t, const QByteArray&, bool) override {}

private:
    std::mutex _mutex;
    std::condition_variable_any _ended;
};

class HangingMac {
public:
    explicit HangingMac(int applications) {
        static const QStringList colours{u"Amber"_s, u"Birch"_s, u"Cobalt"_s, u"Dusk"_s, u"Ember"_s,
                                         u"Fern"_s,  u"Gold"_s,  u"Hazel"_s,  u"Iris"_s, u"Jade"_s};
        static const QStringList things{u"Atlas"_s,  u"Board"_s,  u"Compass"_s, u"Diary"_s,
                                        u"Editor"_s, u"Finder"_s, u"Grid"_s,    u"Harbor"_s,
                                        u"Ink"_s,    u"Journal"_s};
        const QByteArray icon = test::icnsFile(test::icnsEntry("ic07", test::png(128, Qt::darkCyan)));
        builder.addStandardFolders();
        for (int i = 0; i < applications; ++i) {
            const QString name = u"%1 %2 %3"_s.arg(colours[i % 10], things[i / 10 % 10]).arg(i);
            builder.addApplication(
                {.name = name,
                 .identifier = u"org.example.app%1"_s.arg(i),
                 .sparkleFeed =
                     i % 20 == 0 ? std::optional(u"https://feeds.test/%1"_s.arg(i)) : std::nullopt,
                 .icon = icon});
        }
        builder.addApplication({.name = u"Away"_s,
                                .folder = QString::fromLatin1(hungVolume),
                                .identifier = u"org.example.away"_s});
        for (int i = 0; i < 1200; ++i)
            builder.addFile(u"/Users/ada/Library/Preferences/org.example.app0.part%1.plist"_s.arg(i),
                            "x");
        for (const auto* tool : {"/usr/bin/codesign", "/usr/bin/lipo", "/usr/bin/mdls"})
            builder.addExecutable(QString::fromLatin1(tool), "stand-in");
        builder.addExecutable(u"/usr/bin/open"_s, "stand-in");
        (void)settings.set(u"appDiscovery.additionalSearchPaths"_s,
                           QJsonArray{QString::fromLatin1(hungVolume)});
        (void)settings.set(u"appUpdates.enabled"_s, true);
    }

    QTemporaryDir root;
    sample::MacBuilder builder{root.path()};
    FileSystem files{root.path()};
    SystemClock clock;
    EventLoopScheduler scheduler;
    Mailbox mailbox;
    HangingCommands commands;
    test::FakeHttp http;
    test::MemorySettings settings;
    RandomUuidSource uuids;
    test::CollectingLog log;
    WorkerPool workers{mailbox};
    Machine machine{.files = files,
                    .places = {.home = u"/Users/ada"_s,
                               .applicationSupport = u"/Users/ada/Library/Application Support"_s},
                    .clock = clock,
                    .scheduler = scheduler,
                    .workers = workers,
                    .commands = commands,
                    .http = http,
                    .settings = settings,
                    .uuids = uuids,
                    .log = log,
                    .locale = Locale(u"en_US"_s),
                    .environment = {}};
};

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
        setHanging(true);
        search();
        editRules();
        changeLayout();
        dragAndSave();
        rescan();
        check();
        review();
        launchFromHungVolume();
        setHanging(false);
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
            return !folders.appKeys(folders.definitions().last().id, viewModel().shown().mode())
                        .isEmpty();
        });
        viewModel().shown().setCurrentPage(0);
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
        SmartFolderPanel& panel = *controller().smartFolder();
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
        if (!controller().drag()->isLifted())
            std::printf("  nothing was lifted\n");
    }

    void dragAndSave() {
        step = "drag";
        carry(16ms);
        send(QEvent::MouseButtonRelease, cell(5.3, 2.4), {});
        step = "save after the drag";
        pass(1500ms);
    }

    /// The waits for frames while something moves: from what sets it off to the first, and on to the
    /// last.
    class Frames {
    public:
        explicit Frames(QQuickWindow& window) {
            QObject::connect(&window, &QQuickWindow::frameSwapped, &_context, [this] {
                const double now = milliseconds(CLOCK_MONOTONIC);
                _waits.push_back(now - std::exchange(_last, now));
            });
        }
        /// Something sets off a motion: what was waited before does not count.
        void begin() { _last = milliseconds(CLOCK_MONOTONIC); }
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
        double _last = 0;
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
                if (!viewModel().shown().openFolder(folder))
                    return (void)std::printf("  there is no folder\n");
                pass(240ms);
                frames.begin();
                viewModel().shown().closeFolder();
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
        setHanging(false); // a scan looks at every volume; one that hangs would hold it up for good
        _mac.builder.addApplication({.name = u"Newly There"_s, .identifier = u"org.example.new"_s});
        bool isDone = false;
        turn("rescan", [&] { viewModel().applications().look([&] { isDone = true; }); });
        (void)until([&] { return isDone; });
        pass(1s);
        step = "rescan while a volume hangs";
        setHanging(true);
        turn("rescan", [&] { viewModel().applications().look(); });
        pass(300ms);
        setHanging(false);
        pass(1s);
        setHanging(true);
    }

    void check() {
        step = "check for updates";
        QTimer drip;
        QObject::connect(&drip, &QTimer::timeout, &drip,
                         [&] { _mac.http.answer(u"feeds"_s, test::sparkleFeed("101")); });
        drip.start(10ms);
        turn("check", [&] { viewModel().updates().checkNow(); });
        pass(1s);
        step = "check for updates with its sheet";
        turn("the sheet opens", [&] { controller().sheets()->open(Sheets::updates); });
        pass(3s);
        turn("end of the check", [&] { viewModel().updates().cancelCheck(); });
        pass(300ms);
        step = "sheet of updates";
        UpdateRows& rows = *controller().updates()->rows();
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
        RemovalItems& items = *controller().removal()->items();
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
        turn("close", [&] { controller().removal()->cancel(); });
        pass(300ms);
    }

    void launchFromHungVolume() {
        step = "launch from a volume that hangs";
        mainThreadHung = 0;
        turn("launch", [&] { viewModel().launch(u"org.example.away"_s); });
        pass(300ms);
        if (mainThreadHung > 0)
            std::printf("  the main thread waited for the volume %d times\n", mainThreadHung);
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
    mainThread = ::pthread_self();
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
