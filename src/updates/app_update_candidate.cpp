#include "updates/app_update_candidate.h"

#include "platform/bundle.h"
#include "updates/untrusted_text.h"

namespace tessellar {

/// Versions come from bundles and are shown and stored. No real one is longer.
constexpr qsizetype longestInstalledVersion = 100;

bool hasStoreReceipt(const FileSystem& files, const QString& bundlePath) {
    for (const auto* place : {u"Contents/_MASReceipt/receipt", u"_MASReceipt/receipt"})
        if (files.isRegularFile(FileSystem::joined(bundlePath, QString::fromUtf16(place))))
            return true;
    return false;
}

static bool isNativeMacApp(const FileSystem& files, const Bundle& bundle) {
    const QString platform =
        bundle.info[QStringLiteral("DTPlatformName")].text().value_or(QString()).toLower();
    if (platform == u"macosx" || platform == u"iphoneos")
        return platform == u"macosx";
    return files.isRegularFile(FileSystem::joined(bundle.path, QStringLiteral("Contents/Info.plist")));
}

static std::optional<QString> installed(const std::optional<QString>& version) {
    const QString shown = toSingleLine(version.value_or(QString()), longestInstalledVersion);
    return shown.isEmpty() ? std::nullopt : std::optional(shown);
}

QString AppUpdateCandidate::fingerprint() const {
    return resolvedPath + u'|' + bundleIdentifier.value_or(QString());
}

AppUpdateCandidate inspectForUpdates(const FileSystem& files, const AppEntry& entry) {
    const Bundle bundle = readBundle(files, entry.path);
    return {.appKey = appKey(entry),
            .name = entry.name,
            .path = entry.path,
            .resolvedPath = files.resolved(entry.path).value_or(FileSystem::standardized(entry.path)),
            .bundleIdentifier = entry.bundleIdentifier ? entry.bundleIdentifier : bundle.identifier(),
            .version = installed(bundle.version()),
            .build = installed(bundle.build()),
            .isNativeMacApp = isNativeMacApp(files, bundle),
            .hasStoreReceipt = hasStoreReceipt(files, entry.path),
            .sparkleFeedUrl = bundle.info[QStringLiteral("SUFeedURL")].text(),
            .hasSparkleFramework = files.isDirectory(FileSystem::joined(
                entry.path, QStringLiteral("Contents/Frameworks/Sparkle.framework"))),
            .hasKeystone = !bundle.info[QStringLiteral("KSUpdateURL")].isAbsent()};
}

} // namespace tessellar
