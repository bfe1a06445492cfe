#include "platform/host_machine.h"

#include "platform/texts.h"
#include "platform/user_settings.h"

#include <cstdlib>

extern char** environ;

namespace tessellar {
namespace {

class FixedClock final : public Clock {
public:
    explicit FixedClock(Instant now) : _now(now) {}
    Instant now() const override { return _now; }

private:
    Instant _now;
};

std::map<QByteArray, QByteArray> processEnvironment() {
    std::map<QByteArray, QByteArray> result;
    for (char** entry = environ; *entry; ++entry) {
        const QByteArray text(*entry);
        if (const qsizetype equals = text.indexOf('='); equals > 0)
            result.emplace(text.first(equals), text.sliced(equals + 1));
    }
    return result;
}

} // namespace

HostMachine::HostMachine(const MachineOptions& options)
    : _files(options.root.value_or(QStringLiteral("/")))
    , _environment(processEnvironment())
    , _workers(_mailbox) {
    if (options.now)
        _clock = std::make_unique<FixedClock>(*options.now);
    else
        _clock = std::make_unique<SystemClock>();
}

std::expected<Places, QString> HostMachine::findPlaces(const MachineOptions& options) const {
    Places places;
    const auto variable = [&](const char* name) {
        const auto found = _environment.find(name);
        return found == _environment.end() ? QString() : QString::fromUtf8(found->second);
    };
    if (options.home) {
        places.home = FileSystem::standardized(*options.home);
    } else if (options.root) {
        QStringList homes;
        const auto users = _files.entries(QStringLiteral("/Users"));
        for (const DirectoryEntry& entry : users.value_or(QList<DirectoryEntry>()))
            if (entry.type == FileType::directory && entry.name != "Shared" &&
                !entry.name.startsWith('.'))
                homes += QString::fromUtf8(entry.name);
        if (homes.size() != 1)
            return std::unexpected(
                homes.isEmpty()
                    ? Texts::tr("There is no home in the folder “Users” of %1; name one with --home.")
                          .arg(*options.root)
                    : Texts::tr("There are several homes in %1 (%2); name one with --home.")
                          .arg(*options.root, homes.join(QLatin1StringView(", "))));
        places.home = FileSystem::joined(QStringLiteral("/Users"), homes.first());
    } else {
        places.home = FileSystem::standardized(variable("HOME"));
        if (places.home == u"/")
            return std::unexpected(Texts::tr("HOME is not set; name the home with --home."));
    }
    if (!_files.isDirectory(places.home))
        return std::unexpected(Texts::tr("The home %1 is not a folder.").arg(places.home));
    return places;
}

std::expected<std::unique_ptr<HostMachine>, QString> HostMachine::make(const MachineOptions& options) {
    std::unique_ptr<HostMachine> host(new HostMachine(options));
    if (!host->_files.isDirectory(QStringLiteral("/")))
        return std::unexpected(Texts::tr("The root %1 is not a folder.").arg(host->_files.hostRoot()));
    auto places = host->findPlaces(options);
    if (!places)
        return std::unexpected(places.error());
    const UserSettingsContext store{.files = host->_files,
                                    .commands = host->_commands,
                                    .environment = host->_environment,
                                    .home = places->home,
                                    .hasRoot = options.root.has_value()};
    places->applicationSupport = applicationSupportDirectory(store);
    host->_settings = makeUserSettings(store);
    host->_machine = std::make_unique<Machine>(
        Machine{.files = host->_files,
                .places = *std::move(places),
                .clock = *host->_clock,
                .scheduler = host->_scheduler,
                .workers = host->_workers,
                .commands = host->_commands,
                .http = host->_http,
                .settings = *host->_settings,
                .uuids = host->_uuids,
                .log = host->_log,
                .locale = options.locale ? Locale(*options.locale) : Locale::system(),
                .environment = host->_environment});
    return host;
}

} // namespace tessellar
