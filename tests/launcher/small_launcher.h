#pragma once

#include "launcher/installed_applications.h"
#include "launcher/launcher_arrangements.h"
#include "launcher/launcher_editor.h"
#include "launcher/launcher_history.h"
#include "launcher/launcher_messages.h"
#include "launcher/launcher_settings.h"
#include "launcher/launcher_view_model.h"
#include "launcher/layout_archive.h"
#include "launcher/live_layout.h"
#include "launcher/smart_folder_library.h"
#include "launcher/tile_opener.h"
#include "model/drawn.h"
#include "sample/mac_builder.h"
#include "support/printers.h"
#include "support/test_machine.h"

#include <gtest/gtest.h>

namespace tessellar::test {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

constexpr auto fullScreen = LauncherWindowMode::fullScreen;
constexpr auto windowed = LauncherWindowMode::windowed;

/// "done", or the code of the refusal.
template <typename Value>
QString codeOf(const std::expected<Value, LauncherError>& outcome) {
    return outcome ? u"done"_s : outcome.error().code;
}

// The saved arrangements of the mode that is shown, waited for.
inline LauncherArrangements::Saved saveArrangement(const LauncherViewModel& launcher, TestMachine& mac,
                                                   const QString& name) {
    LauncherArrangements::Saved result;
    launcher.arrangements().save(launcher.shown().mode(), name,
                                 [&](const LauncherArrangements::Saved& saved) { result = saved; });
    mac.settle();
    return result;
}
inline LayoutArchive::Outcome restoreArrangement(const LauncherViewModel& launcher, TestMachine& mac,
                                                 const QUuid& id) {
    LayoutArchive::Outcome result;
    launcher.archive().restore(launcher.shown().mode(), id,
                               [&](const LayoutArchive::Restored& restored) {
                                   if (!restored)
                                       result = std::unexpected(restored.error());
                               });
    mac.settle();
    return result;
}

/// A launcher on a small Mac. Its time is far ahead of the files' own: none counts as changed just now.
class SmallLauncher : public testing::Test {
protected:
    SmallLauncher() { time.advance(50 * 365 * 24h); }

    QString install(const QString& name, const QString& folder = u"/Applications"_s,
                    const QString& version = u"1.0"_s) {
        return builder.addApplication({.name = name,
                                       .folder = folder,
                                       .identifier = u"org.example."_s + name.toLower(),
                                       .version = version});
    }
    /// Applications by their names, with spaces between.
    void installAll(const QString& names) {
        for (const QString& name : names.split(u' '))
            install(name);
    }
    void uninstall(const QString& name) { mac.remove(u"/Applications/%1.app"_s.arg(name)); }
    void move(const QString& from, const QString& to) const {
        EXPECT_TRUE(QDir().rename(mac.hostPath(from), mac.hostPath(to))) << from.toStdString();
    }
    /// Ends as the program does, and begins anew.
    LauncherViewModel& start() {
        if (launcher)
            (void)launcher->quit();
        launcher.reset();
        launcher = std::make_unique<LauncherViewModel>(mac.machine);
        launcher->startAndWait();
        mac.settle();
        return *launcher;
    }
    void rescan() {
        launcher->applications().rescan();
        mac.settle();
    }
    void store(const Pages& pages, const QSet<QString>& hidden = {}) {
        mac.write(layoutFile,
                  json::write(json::encode(LayoutDocument{.pages = pages, .hiddenKeys = hidden})));
    }
    /// A folder in a file's place: nothing can be written there, or read.
    void block(const QString& path) {
        mac.workers.waitIdle();
        if (mac.exists(path))
            mac.remove(path);
        mac.makeFolder(path + u"/in the way"_s);
    }
    LayoutDocument stored(const char* name = "layout.json") {
        mac.workers.waitIdle(); // what was handed over is on the disk then
        return json::decodeDocument<LayoutDocument>(mac.read(data + u'/' + QLatin1StringView(name)))
            .value_or(LayoutDocument());
    }
    /// Takes a step back or forth; "done", or the code of the refusal, or nothing while it waits.
    QString undo() { return step(&LauncherHistory::undo); }
    QString redo() { return step(&LauncherHistory::redo); }
    QString sketched() const { return sketch(launcher->shown().pages()); }

    LauncherWindowMode mode() const { return launcher->shown().mode(); }
    LauncherEditor& editor() const { return launcher->editor(); }
    LauncherMessages& messages() const { return launcher->messages(); }
    const QList<SmartFolderDefinition>& definitions() const {
        return launcher->smartFolders().definitions();
    }
    /// The names of the steps that can be undone, oldest first.
    QStringList steps() const {
        QStringList names;
        for (const LayoutUndoEntry& entry : launcher->history().steps().undoStack())
            names += entry.name;
        return names;
    }
    /// What the user was told of since the last call, by code or by another part.
    QStringList alerts(QString LauncherError::*part = &LauncherError::code) const {
        QStringList told;
        for (const LauncherError& alert : messages().takeAlerts())
            told += alert.*part;
        return told;
    }
    /// The title of the question that waits, and the text of the notice that shows.
    QString asked() const { return messages().question() ? messages().question()->title : QString(); }
    QString noticed() const { return messages().notice() ? messages().notice()->text : QString(); }

    const QString data = u"/Users/ada/Library/Application Support/com.tessellar.app"_s;
    const QString layoutFile = data + u"/layout.json"_s;
    TestMachine mac;
    ManualTime& time = mac.time;
    sample::MacBuilder builder{mac.root.path()};
    std::unique_ptr<LauncherViewModel> launcher;

private:
    QString step(void (LauncherHistory::*take)(LauncherWindowMode, LauncherHistory::Done)) {
        const auto code = std::make_shared<QString>(); // it may end after the call
        (launcher->history().*take)(launcher->shown().mode(),
                                    [code](const auto& outcome) { *code = codeOf(outcome); });
        mac.settle();
        return *code;
    }
};

} // namespace tessellar::test
