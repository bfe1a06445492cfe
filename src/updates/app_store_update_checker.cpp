#include "updates/app_store_update_checker.h"

#include "platform/lifetime.h"
#include "updates/app_update_settings.h"
#include "updates/untrusted_text.h"

#include <QSet>
#include <QUrlQuery>

#include <algorithm>

namespace tessellar {

constexpr qsizetype longestNotes = 1'000;
constexpr qsizetype longestIdentifier = 500;
constexpr qsizetype mostDevices = 1'000;
/// Spotlight may not have indexed it yet, so an unknown item is asked about again after this time.
constexpr std::chrono::hours unknownFor{12};

// ---- the application's store item

std::optional<qint64> storeItemIdentifier(const QByteArray& spotlightAnswer) {
    QByteArray text = spotlightAnswer.trimmed();
    if (text.startsWith('"') && text.endsWith('"') && text.size() > 1)
        text = text.sliced(1, text.size() - 2);
    const QByteArray digits = text.startsWith('+') ? text.sliced(1) : text;
    if (digits.isEmpty() || !std::ranges::all_of(digits, [](char c) { return c >= '0' && c <= '9'; }))
        return std::nullopt;
    bool isNumber = false;
    const qint64 number = digits.toLongLong(&isNumber);
    return isNumber && number > 0 ? std::optional(number) : std::nullopt;
}

/// Asks the Mac's own tool about one bundle after another, in its lane. After a timeout it is not asked
/// about the rest.
class AppStoreUpdateChecker::Discovery final : public AppUpdateWork {
public:
    Discovery(AppStoreUpdateChecker& checker, QList<AppUpdateCandidate> unknown, AppUpdateSink sink)
        : _checker(checker), _unknown(std::move(unknown)), _sink(std::move(sink)) {
        _next = checker._machine.scheduler.after(std::chrono::milliseconds(0), [this] { ask(); });
    }
    ~Discovery() override { _stop.request_stop(); }
    void forget(const QString&) override {}

private:
    struct Answer {
        std::optional<StoreItem> item; ///< nullopt if the tool failed
        bool isTimedOut = false;
    };

    void ask() {
        if (_unknown.isEmpty()) {
            const AppUpdateSink sink = _sink;
            return sink(DiscoveryEnded{_problem});
        }
        const AppUpdateCandidate candidate = _unknown.takeFirst();
        const Machine& machine = _checker._machine;
        const QString tool = QStringLiteral("/usr/bin/mdls");
        const Command command{.executable = machine.files.hostPath(tool),
                              .arguments = {"-raw", "-name", "kMDItemAppStoreAdamID",
                                            machine.files.hostPath(candidate.path)},
                              .environment = machine.environment,
                              .timeout = spotlightTimeout,
                              .maximumOutput = 4'096,
                              .input = {}};
        _checker._lanes.run(
            tool, _stop.get_token(),
            [&commands = machine.commands, command, bundle = candidate.fingerprint(),
             now = machine.clock.now()](const std::stop_token& stop) {
                const CommandResult result = commands.run(command, stop);
                Answer answer{.isTimedOut = result.outcome == CommandResult::Outcome::timedOut};
                if (result.succeeded())
                    answer.item = StoreItem{bundle, storeItemIdentifier(result.standardOutput), now};
                return answer;
            },
            [this, alive = _lifetime.watch(), appKey = candidate.appKey](const Answer& answer) {
                if (!alive.expired())
                    answered(appKey, answer);
            });
    }

    void answered(const QString& appKey, const Answer& answer) {
        const auto alive = _lifetime.watch();
        if (answer.item) {
            _checker._items.insert(appKey, *answer.item);
            if (const AppUpdateSink sink = _sink; answer.item->identifier)
                sink(ChannelsLearned());
        } else if (answer.isTimedOut) {
            _problem = AppUpdateReason{AppUpdateReason::Code::noSpotlight, {}};
            _unknown.clear();
        }
        if (!alive.expired())
            ask();
    }

    AppStoreUpdateChecker& _checker;
    QList<AppUpdateCandidate> _unknown;
    AppUpdateSink _sink;
    std::optional<AppUpdateReason> _problem;
    std::stop_source _stop;
    Lifetime _lifetime;
    Timer _next;
};

std::unique_ptr<AppUpdateWork>
AppStoreUpdateChecker::discover(const QList<AppUpdateCandidate>& candidates, AppUpdateSink sink) {
    QSet<QString> installed;
    installed.reserve(candidates.size());
    for (const AppUpdateCandidate& candidate : candidates)
        installed.insert(candidate.appKey);
    _items.removeIf([&](const auto& known) { return !installed.contains(known.key()); });
    QList<AppUpdateCandidate> unknown;
    for (const AppUpdateCandidate& candidate : candidates)
        if (candidate.hasStoreReceipt && !item(candidate))
            unknown.append(candidate);
    return unknown.isEmpty() ? nullptr
                             : std::make_unique<Discovery>(*this, std::move(unknown), std::move(sink));
}

const StoreItem* AppStoreUpdateChecker::item(const AppUpdateCandidate& candidate) const {
    const auto found = _items.constFind(candidate.appKey);
    const bool counts = found != _items.constEnd() && found->bundle == candidate.fingerprint() &&
                        (found->identifier || _machine.clock.now() - found->askedAt < unknownFor);
    return counts ? &*found : nullptr;
}

std::optional<AppUpdateChannel>
AppStoreUpdateChecker::channel(const AppUpdateCandidate& candidate) const {
    const StoreItem* known = candidate.hasStoreReceipt ? item(candidate) : nullptr;
    if (!known || !known->identifier)
        return std::nullopt;
    return MacAppStoreChannel{*known->identifier};
}

// ---- the store's answer

template <typename Value>
static std::optional<QString> textOf(const Value& value, qsizetype longest) {
    const QString text = toSingleLine(value.toString(), longest);
    return text.isEmpty() ? std::nullopt : std::optional(text);
}

std::expected<std::optional<CatalogItem>, AppUpdateReason::Code>
firstCatalogItem(const QByteArray& answer) {
    const auto document = json::parse(answer);
    const QJsonValue results = document ? (*document)[QLatin1StringView("results")] : QJsonValue();
    if (!results.isArray())
        return std::unexpected(AppUpdateReason::Code::notUnderstood);
    const QJsonArray list = results.toArray();
    if (list.isEmpty())
        return std::nullopt;
    const QJsonObject first = list.at(0).toObject();
    CatalogItem item{.version = plausibleVersion(first.value(u"version").toString()),
                     .bundleId = textOf(first.value(u"bundleId"), longestIdentifier),
                     .releaseNotes = textOf(first.value(u"releaseNotes"), longestNotes),
                     .trackViewUrl = textOf(first.value(u"trackViewUrl"), longestIdentifier)};
    // A malformed version must not pass for "nothing newer".
    if (const QJsonValue version = first.value(u"version");
        !item.version && !trimmed(version.toString()).isEmpty())
        return std::unexpected(AppUpdateReason::Code::notUnderstood);
    if (const QJsonValue devices = first.value(u"supportedDevices"); devices.isArray()) {
        const QJsonArray names = devices.toArray();
        item.supportedDevices.emplace();
        for (qsizetype i = 0; i < std::min(names.size(), mostDevices); ++i)
            if (names.at(i).isString())
                item.supportedDevices->append(names.at(i).toString());
    }
    return item;
}

AppUpdateVerdict AppStoreUpdateChecker::verdict(const std::optional<CatalogItem>& item,
                                                const AppUpdateCandidate& candidate) {
    using enum AppUpdateReason::Code;
    if (!item)
        return AppUpdateVerdict::failed({notListed, {}});
    if (item->bundleId && candidate.bundleIdentifier &&
        item->bundleId->compare(*candidate.bundleIdentifier, Qt::CaseInsensitive) != 0)
        return AppUpdateVerdict::failed({otherApplication, {}});
    if (candidate.isNativeMacApp && item->supportedDevices && !item->supportedDevices->isEmpty()) {
        const auto isMac = [](const QString& device) {
            return device.contains(u"MacDesktop", Qt::CaseInsensitive);
        };
        // A listing without a Mac says nothing about a Mac's build, and one shared by a Mac and other
        // devices may give the other devices' version: neither is trusted.
        if (std::ranges::none_of(*item->supportedDevices, isMac))
            return AppUpdateVerdict::unsupported(noMacListing);
        if (!std::ranges::all_of(*item->supportedDevices, isMac))
            return AppUpdateVerdict::unsupported(sharedListing);
    }
    const QString installed = trimmed(candidate.version.value_or(QString()));
    if (!item->version || installed.isEmpty() || compareNumeric(*item->version, installed) <= 0)
        return {UpToDate()};
    AppUpdateVerdict update{UpdateAvailable{*item->version}};
    const QUrl page(item->trackViewUrl.value_or(QString()));
    const AppUpdateNotes notes{item->releaseNotes.value_or(QString()),
                               isAllowedAddress(page) ? page.toString() : QString()};
    if (!notes.isEmpty())
        update.notes = notes;
    return update;
}

QUrl AppStoreUpdateChecker::lookupUrl(const QString& base, qint64 itemIdentifier,
                                      const QString& region) {
    QUrl url(base + QLatin1StringView("/lookup"));
    QUrlQuery query;
    query.addQueryItem(QStringLiteral("id"), QString::number(itemIdentifier));
    query.addQueryItem(QStringLiteral("entity"), QStringLiteral("macSoftware"));
    query.addQueryItem(QStringLiteral("country"), region.isEmpty() ? QStringLiteral("US") : region);
    url.setQuery(query);
    return url;
}

QUrl AppStoreUpdateChecker::storePageUrl(const QString& base, qint64 itemIdentifier) {
    return QUrl(base + QLatin1StringView("/app/id") + QString::number(itemIdentifier));
}

std::expected<HttpRequest, AppUpdateVerdict>
AppStoreUpdateChecker::request(const AppUpdateCandidate& candidate) const {
    const StoreItem* known = item(candidate);
    if (!known || !known->identifier)
        return std::unexpected(AppUpdateVerdict::unsupported(AppUpdateReason::Code::noStoreItem));
    return HttpRequest{.url = lookupUrl(readAppUpdateSettings(_machine.settings).storeLookupBase,
                                        *known->identifier, _machine.locale.region())};
}

WebUpdateChecker::Judge AppStoreUpdateChecker::judge() const {
    return [](const QByteArray& body, const QList<AppUpdateCandidate>& candidates) {
        const auto item = firstCatalogItem(body);
        QList<AppUpdateVerdict> verdicts;
        for (const AppUpdateCandidate& candidate : candidates)
            verdicts.append(item ? verdict(*item, candidate)
                                 : AppUpdateVerdict::failed({item.error(), {}}));
        return verdicts;
    };
}

} // namespace tessellar
