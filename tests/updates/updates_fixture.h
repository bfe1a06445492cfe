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
        subscription = coordinator->events.connect([this](const AppUpdateEvent& event) {
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

    static QByteArray lookup(const QByteArray& version) {
        return R"({"results":[{"bundleId":"org.example.store","version":")" + version + R"("}]})";
    }
    /// Answers what a check asks for: 1.10 of the store, 2.5 of the feed.
    void answerAll() {
        settle();
        mac.http.answer(u"lookup"_s, lookup("1.10"));
        mac.http.answer(u"feeds"_s, sparkleFeed("101"));
        settle();
    }

    /// A full check to its end.
    void check() {
        ASSERT_TRUE(coordinator->check());
        answerAll();
    }

    /// What is known of the four, in the order of their channels.
    QString sketch() const {
        QStringList parts;
        for (const auto& name : {u"Cask"_s, u"Store"_s, u"Feed"_s, u"Plain"_s}) {
            const auto record = coordinator->record(key(name));
            if (!record) {
                parts.append(u"-"_s);
                continue;
            }
            const auto* update = std::get_if<UpdateAvailable>(&record->status);
            parts.append(update ? update->latestVersion
                                : QString::fromLatin1(
                                      json::Cases<AppUpdateStatus>::names[record->status.index()]));
        }
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
