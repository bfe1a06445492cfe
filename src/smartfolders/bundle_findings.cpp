#include "smartfolders/bundle_findings.h"

#include "model/app_state.h"
#include "smartfolders/rights_notice.h"

namespace tessellar {

namespace {

using Permission = SmartFolderPermission;

/// The keys by which an application declares a permission, with the reason.
const std::array permissionKeys = std::to_array<std::pair<Permission, const char*>>({
    {Permission::camera, "NSCameraUsageDescription"},
    {Permission::microphone, "NSMicrophoneUsageDescription"},
    {Permission::location, "NSLocationUsageDescription"},
    {Permission::location, "NSLocationWhenInUseUsageDescription"},
    {Permission::location, "NSLocationAlwaysUsageDescription"},
    {Permission::location, "NSLocationAlwaysAndWhenInUseUsageDescription"},
    {Permission::location, "NSLocationTemporaryUsageDescriptionDictionary"},
    {Permission::photos, "NSPhotoLibraryUsageDescription"},
    {Permission::photos, "NSPhotoLibraryAddUsageDescription"},
    {Permission::contacts, "NSContactsUsageDescription"},
    {Permission::calendar, "NSCalendarsUsageDescription"},
    {Permission::calendar, "NSCalendarsFullAccessUsageDescription"},
    {Permission::calendar, "NSCalendarsWriteOnlyAccessUsageDescription"},
    {Permission::reminders, "NSRemindersUsageDescription"},
    {Permission::reminders, "NSRemindersFullAccessUsageDescription"},
    {Permission::bluetooth, "NSBluetoothAlwaysUsageDescription"},
    {Permission::bluetooth, "NSBluetoothPeripheralUsageDescription"},
    {Permission::automation, "NSAppleEventsUsageDescription"},
    {Permission::speech, "NSSpeechRecognitionUsageDescription"},
    {Permission::mediaLibrary, "NSAppleMusicUsageDescription"},
    {Permission::localNetwork, "NSLocalNetworkUsageDescription"},
    {Permission::documents, "NSDocumentsFolderUsageDescription"},
});

/// In the vocabulary's order, without duplicates.
QList<Permission> declaredPermissions(const PropertyValue& info) {
    QList<Permission> result;
    for (const auto& [permission, key] : permissionKeys) {
        const QString name = QLatin1StringView(key);
        const PropertyValue value = info[name];
        const bool isDeclared =
            name.endsWith(u"Dictionary") ? value.isDictionary() : value.text().has_value();
        if (isDeclared && (result.isEmpty() || result.last() != permission))
            result.append(permission);
    }
    return result;
}

std::optional<QString> nonEmpty(const std::optional<QString>& text) {
    return text && !text->trimmed().isEmpty() ? text : std::nullopt;
}

} // namespace

BundleFindings readBundleFindings(const FileSystem& files, const Bundle& bundle) {
    const auto status = files.status(bundle.path);
    if (!status)
        return {};
    const auto info = [&](const char* key) { return bundle.info[QLatin1StringView(key)]; };
    const bool isWrapped = isWrappedApplication(files, bundle.path);
    const bool isForPhones = isWrapped || info("LSRequiresIPhoneOS").isTruthy() ||
                             info("DTPlatformName").text() == u"iphoneos";
    const auto notice = info("NSHumanReadableCopyright").text();
    return {
        .exists = true,
        .isFromStore = installKind(files, bundle.path) == AppInstallKind::appStore,
        .hasSparkle =
            info("SUFeedURL").text().has_value() ||
            files.isDirectory(bundle.path + QStringLiteral("/Contents/Frameworks/Sparkle.framework")),
        .hasKeystone = info("KSUpdateURL").text().has_value(),
        .storeArtist = isWrapped ? nonEmpty(bundle.storeMetadata[QStringLiteral("artistName")].text())
                                 : std::nullopt,
        .publisher = notice ? publisherInNotice(*notice) : std::nullopt,
        .version = nonEmpty(bundle.version()),
        .build = nonEmpty(bundle.build()),
        .minimumMacOSVersion = nonEmpty(bundle.minimumSystemVersion()),
        .installedDate = status->created.value_or(status->modified),
        .platform = isForPhones ? SmartFolderPlatform::iOSOnMac : SmartFolderPlatform::macOS,
        .declaredPermissions = declaredPermissions(bundle.info),
        .executablePath = bundle.executablePath(),
    };
}

} // namespace tessellar
