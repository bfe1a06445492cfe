#include "updates/app_update_candidate.h"

#include "platform/bundle.h"

namespace tessellar {

bool hasStoreReceipt(const FileSystem& files, const QString& bundlePath) {
    for (const auto* place : {u"Contents/_MASReceipt/receipt", u"_MASReceipt/receipt"})
        if (files.isRegularFile(FileSystem::joined(bundlePath, QString::fromUtf16(place))))
            return true;
    return false;
}

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

/// Spotlight's answer about a bundle, by the Mac's own tool.
static std::optional<qint64> askSpotlight(const AppUpdateInspection& machine, const QString& path,
                                          const std::stop_token& stop) {
    const CommandResult result = machine.commands.run(
        {.executable = machine.files.hostPath(QStringLiteral("/usr/bin/mdls")),
         .arguments = {"-raw", "-name", "kMDItemAppStoreAdamID", machine.files.hostPath(path)},
         .environment = machine.environment,
         .timeout = std::chrono::seconds(10),
         .maximumOutput = 4'096,
         .input = {}},
        stop);
    return result.succeeded() ? storeItemIdentifier(result.standardOutput) : std::nullopt;
}

static bool isNativeMacApp(const FileSystem& files, const Bundle& bundle) {
    const QString platform =
        bundle.info[QStringLiteral("DTPlatformName")].text().value_or(QString()).toLower();
    if (platform == u"macosx" || platform == u"iphoneos")
        return platform == u"macosx";
    return files.isRegularFile(FileSystem::joined(bundle.path, QStringLiteral("Contents/Info.plist")));
}

AppUpdateCandidate inspectForUpdates(const AppUpdateInspection& machine, const AppEntry& entry,
                                     const AppUpdateCandidate* before, std::stop_token stop) {
    const FileSystem& files = machine.files;
    const Bundle bundle = readBundle(files, entry.path);
    AppUpdateCandidate result{
        .appKey = appKey(entry),
        .name = entry.name,
        .path = entry.path,
        .resolvedPath = files.resolved(entry.path).value_or(FileSystem::standardized(entry.path)),
        .bundleIdentifier = entry.bundleIdentifier ? entry.bundleIdentifier : bundle.identifier(),
        .version = bundle.version(),
        .build = bundle.build(),
        .isNativeMacApp = isNativeMacApp(files, bundle),
        .hasStoreReceipt = hasStoreReceipt(files, entry.path),
        .sparkleFeedUrl = bundle.info[QStringLiteral("SUFeedURL")].text(),
        .hasSparkleFramework = files.isDirectory(
            FileSystem::joined(entry.path, QStringLiteral("Contents/Frameworks/Sparkle.framework"))),
        .hasKeystone = !bundle.info[QStringLiteral("KSUpdateURL")].isAbsent()};
    if (!result.hasStoreReceipt)
        return result;
    const bool isTheSame = before && before->path == result.path && before->version == result.version &&
                           before->build == result.build &&
                           before->bundleIdentifier == result.bundleIdentifier;
    result.storeItemIdentifier = isTheSame && before->storeItemIdentifier
                                     ? before->storeItemIdentifier
                                     : askSpotlight(machine, entry.path, stop);
    return result;
}

} // namespace tessellar
