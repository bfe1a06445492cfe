#pragma once

#include "updates/app_update_coordinator.h"

#include "sample/mac_builder.h"
#include "tests/support/fake_updates.h"
#include "tests/support/items.h"
#include "tests/support/printers.h"
#include "tests/support/test_machine.h"

#include <gmock/gmock.h>

namespace tessellar::test {

using namespace std::chrono_literals;
using namespace Qt::Literals::StringLiterals;

inline const QString brewPath = u"/opt/homebrew/bin/brew"_s;

/// The newer version that a record tells of, or its status, "-" for none.
inline QString sketch(const std::optional<AppUpdateRecord>& record) {
    if (!record)
        return u"-"_s;
    const auto* update = std::get_if<UpdateAvailable>(&record->status);
    return update ? update->latestVersion
                  : QString::fromLatin1(json::Cases<AppUpdateStatus>::names[record->status.index()]);
}

/// A Mac with one application of each channel: Cask, Store, Feed, and Plain of none.
class UpdatesFixture : public testing::Test {
protected:
    void SetUp() override {
        for (const auto& name : {u"Cask"_s, u"Feed"_s})
            add({.name = name, .sparkleFeed = u"https://feeds.test/"_s + name});
        add({.name = u"Store"_s, .receipt = true});
        add({.name = u"Plain"_s});
        mac.tool(u"/usr/bin/mdls"_s, exited(0, "4711"));
        mac.tool(u"/usr/bin/open"_s, exited(0));
        brew("2.0");
        make();
    }

    void make() {
        coordinator.reset();
        coordinator.emplace(mac.machine);
        subscription = coordinator->known().events.connect([this](const AppUpdateEvent& event) {
            published += event.kind == AppUpdateEvent::Kind::changed ? 1 : 0;
            if (event.kind == AppUpdateEvent::Kind::updated)
                completed.append(event.appKey);
            if (event.kind == AppUpdateEvent::Kind::actionChanged)
                if (const auto state = coordinator->runner().state(event.appKey))
                    phases.append(json::rawValue(state->phase));
        });
    }

    /// Asks for an update as a window does; false when it was refused.
    bool update(const QStringList& which, AppUpdateRunner::Done done = {}) {
        QStringList keys;
        for (const QString& name : which)
            keys.append(key(name));
        return coordinator->runner().update(
            keys,
            [this](const AppUpdateQuestion& question, const auto& answer) {
                alerts.append(question.title + u'|' + question.text);
                answer(confirms);
            },
            std::move(done));
    }
    AppUpdateActionState state(const QString& name) const {
        return coordinator->runner().state(key(name)).value_or(AppUpdateActionState());
    }

    /// Installs it, as version 1.9 of build 100 where nothing else is said, and known by its name.
    void add(sample::Application application) {
        application.identifier = key(application.name);
        if (application.version == sample::Application().version)
            application.version = u"1.9"_s;
        if (application.build == sample::Application().build)
            application.build = u"100"_s;
        sample::MacBuilder builder(mac.root.path());
        builder.addApplication(application);
        EXPECT_EQ(builder.failure(), std::nullopt);
    }

    /// Has applications of the store, as the only ones beside those that are named, whose items have
    /// the numbers of their names: S10, S11, and so on; or the number 99, which twins share.
    void addStoreApps(const QStringList& others, const QStringList& apps) {
        names = others + apps;
        for (const QString& name : apps)
            add({.name = name, .version = u"1"_s, .receipt = true});
        mac.tool(u"/usr/bin/mdls"_s, [](const Command& command, const std::stop_token&) {
            const QByteArray name = command.arguments.last().split('/').last();
            return exited(0, name.startsWith("Twin") ? "99" : name.mid(1, 2));
        });
    }
    static QStringList numbered(int from, int end) {
        QStringList result;
        for (int i = from; i < end; ++i)
            result.append(u"S%1"_s.arg(i));
        return result;
    }
    void brew(const QByteArray& newer) { mac.tool(brewPath, brewOfOneCask(newer)); }
    /// A brew of a newer version that gives another answer to one of its commands.
    void brewBut(const QByteArray& word, const CommandResult& answer) {
        mac.tool(brewPath, [=](const Command& command, const std::stop_token& stop) {
            return command.arguments.value(0) == word ? answer : brewOfOneCask("2.0")(command, stop);
        });
    }
    /// How often a brew was asked for this.
    qsizetype brewRuns(const QByteArray& word) const {
        return std::ranges::count_if(mac.commands.commands(), [&](const Command& command) {
            return command.arguments.value(0) == word;
        });
    }

    void settle() {
        for (int i = 0; i < 6; ++i) { // what a round begins may go on in a timer
            mac.settle();
            mac.time.advance(0ms);
        }
    }

    void load() {
        QList<AppEntry> apps;
        for (const auto& name : names)
            apps.append(app(name));
        coordinator->updateApps(apps);
        settle();
    }

    /// What it does at its start, and what the scan then brings.
    void start() {
        coordinator->start();
        load();
    }
    /// Another run, which knows of applications, but has not started.
    void restart() {
        make();
        load();
    }
    void set(const QString& setting, const QJsonValue& value) {
        (void)mac.settings.set(setting, value);
        coordinator->settingsChanged();
    }
    void pass(std::chrono::milliseconds time) {
        mac.time.advance(time);
        settle();
    }

    static QByteArray lookup(const QByteArray& version) {
        return R"({"results":[{"bundleId":"org.example.store","version":")" + version + R"("}]})";
    }
    void answerStore(const QByteArray& version) {
        mac.http.answer(u"lookup"_s, lookup(version));
        settle();
    }
    void answerFeed(const QByteArray& build) {
        mac.http.answer(u"feeds"_s, sparkleFeed(build));
        settle();
    }
    /// Answers what a check asks for: 1.10 of the store, 2.5 of the feed.
    void answerAll() {
        settle();
        answerStore("1.10");
        answerFeed("101");
    }

    /// A check, as far as it comes without a server.
    void beginCheck(const AppUpdateCheckRequest& request = {}) {
        ASSERT_TRUE(coordinator->check(request));
        settle();
    }
    /// A full check to its end.
    void check() {
        beginCheck();
        answerAll();
    }

    /// What is known of the four, in the order of their channels.
    QString sketch() const {
        QStringList parts;
        for (const auto& name : {u"Cask"_s, u"Store"_s, u"Feed"_s, u"Plain"_s})
            parts.append(test::sketch(coordinator->known().record(key(name))));
        return parts.join(u' ');
    }
    static QString key(const QString& name) { return u"org.example."_s + name.toLower(); }

    /// What the file says, the cache's form aside.
    AppUpdateCache stored() {
        mac.workers.waitIdle();
        return json::decodeDocument<AppUpdateCache>(
                   mac.read(AppUpdateStore::defaultPath(mac.machine.places)))
            .value_or(AppUpdateCache());
    }

    TestMachine mac;
    QStringList names{u"Cask"_s, u"Store"_s, u"Feed"_s, u"Plain"_s};
    QStringList alerts;
    QStringList completed;
    bool confirms = true;
    int published = 0;
    QStringList phases;
    std::optional<AppUpdateCoordinator> coordinator;
    Subscription subscription;
};

} // namespace tessellar::test
