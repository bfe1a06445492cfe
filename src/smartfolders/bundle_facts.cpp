#include "smartfolders/bundle_facts.h"

#include "platform/extended_attribute.h"
#include "smartfolders/smart_folder_facts_catalog.h"
#include "smartfolders/smart_folder_fields.h"

#include <QtEndian>

#include <algorithm>

namespace tessellar {

namespace {

/// The channel as the bundle tells it; nullopt if `channelsArePending` and only the update channels can
/// tell: what contains a Sparkle feed may have been installed by Homebrew.
std::optional<SmartFolderDistributionChannel>
channel(const AppEntry& app, const BundleFindings& findings, bool channelsArePending) {
    using enum SmartFolderDistributionChannel;
    if (findings.isFromStore)
        return macAppStore;
    if (FileSystem::isWithin(app.path, QStringLiteral("/System")) ||
        FileSystem::isWithin(app.path, QStringLiteral("/Library/Apple")) ||
        app.source == AppSource::system)
        return system;
    if (channelsArePending)
        return std::nullopt;
    if (findings.hasSparkle)
        return sparkle;
    const QString identifier = app.bundleIdentifier.value_or(QString());
    if (findings.hasKeystone || identifier.startsWith(u"com.microsoft.", Qt::CaseInsensitive))
        return vendor;
    return unsupported;
}

template <typename Map>
std::optional<typename Map::mapped_type> found(const Map& map, const QString& key) {
    const auto it = map.constFind(key);
    return it == map.constEnd() ? std::nullopt : std::optional(*it);
}

template <typename Findings>
std::optional<Findings> findingsIn(const std::optional<ToolAnswer<Findings>>& answer) {
    return answer ? answer->findings : std::nullopt;
}

} // namespace

SmartFolderAppFacts factsOf(const AppEntry& app, const BundleFindings& bundle,
                            const BundleAnswers& answers,
                            const std::optional<Instant>& lastUsedBySystem, SmartFolderNeeds pending,
                            const SmartFolderRuntimeFacts& runtime, const QString& home) {
    const QString key = appKey(app);
    const auto signature = findingsIn(answers.signature).value_or(SignatureFindings());
    SmartFolderAppFacts facts{
        .entry = app,
        .developer = isProtected(app)     ? std::optional(systemDeveloper)
                     : bundle.storeArtist ? bundle.storeArtist
                                          : signature.developer,
        .publisher = bundle.publisher,
        .signingTeamID = signature.teamID,
        .version = bundle.version,
        .build = bundle.build,
        .installedDate = bundle.installedDate,
        .firstSeenDate = found(runtime.firstSeenDates, key),
        .applicationLocation = SmartFolderFactsCatalog::location(app, home),
        .distributionChannel = found(runtime.distributionChannels, key),
        .platform = bundle.platform,
        .architectures = findingsIn(answers.architectures),
        .minimumMacOSVersion = bundle.minimumMacOSVersion,
        .lastUsedDate = std::max(found(runtime.lastUsedDates, key), lastUsedBySystem),
        .launchCount = found(runtime.launchCounts, key),
        .hasCustomIcon = runtime.customIconKeys.contains(key),
        .declaredPermissions = bundle.declaredPermissions,
        .pending = pending | runtime.pending,
    };
    if (bundle.exists) {
        facts.installSource = bundle.isFromStore ? SmartFolderInstallSource::macAppStore
                                                 : SmartFolderInstallSource::manual;
        if (!facts.distributionChannel)
            facts.distributionChannel =
                channel(app, bundle, runtime.pending.testFlag(SmartFolderNeed::channels));
    }
    if (facts.lastUsedDate || facts.launchCount.value_or(0) > 0)
        facts.isNeverUsed = false;
    else if (runtime.usageDataIsComplete)
        facts.isNeverUsed = true;
    if (runtime.updateCheckingEnabled) {
        facts.updateStatus = found(runtime.updateStatuses, key);
        if (!facts.updateStatus && !runtime.pending.testFlag(SmartFolderNeed::updates))
            facts.updateStatus = SmartFolderUpdateState::notChecked;
    }
    return facts;
}

SmartFolderApplicationLocation SmartFolderFactsCatalog::location(const AppEntry& app,
                                                                 const QString& home) {
    using enum SmartFolderApplicationLocation;
    if (isNestedInAnotherApplication(app.path))
        return nestedApplication;
    if (app.source == AppSource::system || FileSystem::isWithin(app.path, QStringLiteral("/System")))
        return system;
    if (FileSystem::isWithin(app.path, FileSystem::joined(home, QStringLiteral("Applications"))))
        return userApplications;
    if (FileSystem::isWithin(app.path, QStringLiteral("/Applications")))
        return applications;
    return other;
}

// ---- the system's own record

std::optional<Instant> lastUsedBySystem(const FileSystem& files, const QString& bundle) {
    // Seconds and nanoseconds since 1970, eight bytes each, little-endian.
    constexpr qsizetype length = 16;
    const auto value = extendedAttribute(files, bundle, "com.apple.lastuseddate#PS", length);
    if (!value || value->size() != length)
        return std::nullopt;
    const auto seconds = qFromLittleEndian<qint64>(value->constData());
    const auto nanoseconds = qFromLittleEndian<qint64>(value->constData() + 8);
    constexpr qint64 longest = 253'402'300'800; // the year 10000
    if (seconds <= 0 || seconds >= longest || nanoseconds < 0 || nanoseconds >= 1'000'000'000)
        return std::nullopt;
    return Instant::fromUnixSeconds(static_cast<double>(seconds) +
                                    static_cast<double>(nanoseconds) / 1e9);
}

} // namespace tessellar
