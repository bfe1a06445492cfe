#include "smartfolders/bundle_findings.h"

#include "model/app_state.h"
#include "smartfolders/rights_notice.h"

#include <QRegularExpression>

namespace tessellar {

namespace {

using Permission = SmartFolderPermission;

/// The keys by which an application says what it will ask for, and why.
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

/// In the order of the vocabulary, each once.
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

constexpr int timeoutsBeforeGivingUp = 3;
constexpr std::uint64_t maximumToolOutput = 64u << 10;
constexpr qsizetype maximumArchitectures = 16;

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

SignatureFindings parseSignature(const QByteArray& output) {
    static const QByteArray authority = "Authority=Developer ID Application: ";
    static const QByteArray team = "TeamIdentifier=";
    static const QRegularExpression teamSuffix(QStringLiteral(R"(\s*\([0-9A-Z]{10}\)$)"));
    SignatureFindings result;
    for (const QByteArray& line : output.split('\n')) {
        if (!result.developer && line.startsWith(authority)) {
            result.developer =
                QString::fromUtf8(line.sliced(authority.size())).trimmed().remove(teamSuffix);
        } else if (!result.teamID && line.startsWith(team)) {
            const QString identifier = QString::fromUtf8(line.sliced(team.size())).trimmed();
            if (identifier != u"not set")
                result.teamID = identifier;
        }
    }
    return {.developer = nonEmpty(result.developer), .teamID = nonEmpty(result.teamID)};
}

std::optional<QStringList> parseArchitectures(const QByteArray& output) {
    static const QRegularExpression name(QStringLiteral("^[0-9A-Za-z_]{1,32}$"));
    const QStringList words = QString::fromLatin1(output).split(
        QRegularExpression(QStringLiteral("\\s+")), Qt::SkipEmptyParts);
    if (words.isEmpty() || words.size() > maximumArchitectures ||
        !std::ranges::all_of(words, [](const QString& word) { return name.match(word).hasMatch(); }))
        return std::nullopt;
    return words;
}

BundleTools::BundleTools(const Machine& machine)
    : _machine(machine)
    , _lipo{.path = QStringLiteral("/usr/bin/lipo"),
            .timeout = std::chrono::seconds(5),
            .isThere = machine.files.isExecutableFile(QStringLiteral("/usr/bin/lipo"))}
    , _codesign{.path = QStringLiteral("/usr/bin/codesign"),
                .timeout = std::chrono::seconds(10),
                .isThere = machine.files.isExecutableFile(QStringLiteral("/usr/bin/codesign"))} {}

auto BundleTools::run(Tool& tool, QList<QByteArray> arguments, const QString& path,
                      std::stop_token stop) -> Answer<CommandResult> {
    if (!tool.isThere || tool.timeouts >= timeoutsBeforeGivingUp || stop.stop_requested())
        return std::nullopt;
    // The tool follows links on the host; here they have to lead inside the root.
    const auto resolved = _machine.files.resolved(path);
    if (!resolved)
        return Answer<CommandResult>(std::in_place);
    arguments.append(_machine.files.hostPath(*resolved));
    // A line break in a path would let a bundle write lines of its own into the output.
    if (arguments.last().contains('\n') || arguments.last().contains('\r'))
        return Answer<CommandResult>(std::in_place);
    CommandResult result = _machine.commands.run({.executable = _machine.files.hostPath(tool.path),
                                                  .arguments = std::move(arguments),
                                                  .environment = _machine.environment,
                                                  .timeout = tool.timeout,
                                                  .maximumOutput = maximumToolOutput},
                                                 stop);
    if (result.outcome == CommandResult::Outcome::timedOut)
        ++tool.timeouts;
    if (result.outcome == CommandResult::Outcome::cancelled ||
        result.outcome == CommandResult::Outcome::couldNotLaunch)
        return std::nullopt;
    return result.succeeded() && !result.outputTruncated ? Answer<CommandResult>(std::move(result))
                                                         : Answer<CommandResult>(std::in_place);
}

auto BundleTools::architectures(const QString& executablePath, std::stop_token stop)
    -> Answer<QStringList> {
    if (!_machine.files.isRegularFile(executablePath))
        return Answer<QStringList>(std::in_place);
    const auto answer = run(_lipo, {"-archs"}, executablePath, std::move(stop));
    if (!answer)
        return std::nullopt;
    return *answer ? parseArchitectures((*answer)->standardOutput) : std::nullopt;
}

auto BundleTools::signature(const QString& bundlePath, std::stop_token stop)
    -> Answer<SignatureFindings> {
    const auto answer = run(_codesign, {"-dvv"}, bundlePath, std::move(stop));
    if (!answer)
        return std::nullopt;
    return *answer ? std::optional(parseSignature((*answer)->standardError)) : std::nullopt;
}

} // namespace tessellar
