#pragma once

#include "updates/app_update_candidate.h"
#include "updates/app_update_records.h"

namespace tessellar {

/// An application that the vendor's common updater knows, and that updater's tool.
struct MicrosoftAutoUpdateTarget {
    QString applicationIdentifier; ///< the updater's own code, such as "XCEL2019"
    QString executableURL;         ///< path of the tool

    static inline const QString toolPath =
        QStringLiteral("/Library/Application Support/Microsoft/MAU2.0/Microsoft AutoUpdate.app/"
                       "Contents/MacOS/msupdate");

    /// The updater's code of a bundle identifier in any case, if it has one.
    static std::optional<QString> code(const QString& bundleIdentifier);
    /// Only where the tool is present.
    static std::optional<MicrosoftAutoUpdateTarget> find(const FileSystem& files,
                                                         const QString& bundleIdentifier);
    bool operator==(const MicrosoftAutoUpdateTarget&) const = default;
};

// The update routes that can be offered, in their order.
struct HomebrewAction {
    QString token;
    QString brewExecutablePath;
    bool operator==(const HomebrewAction&) const = default;
};
struct SparkleAction {
    bool operator==(const SparkleAction&) const = default;
};
struct AppStoreAction {
    QString storeUrl;
    bool operator==(const AppStoreAction&) const = default;
};
struct SystemSoftwareUpdateAction {
    bool operator==(const SystemSoftwareUpdateAction&) const = default;
};
struct VendorUpdaterAction {
    bool operator==(const VendorUpdaterAction&) const = default;
};
struct OpenAppAction {
    bool operator==(const OpenAppAction&) const = default;
};
using AppUpdateAction =
    std::variant<HomebrewAction, SparkleAction, MicrosoftAutoUpdateTarget, AppStoreAction,
                 SystemSoftwareUpdateAction, VendorUpdaterAction, OpenAppAction>;
enum class AppUpdateActionKind {
    homebrew,
    sparkle,
    microsoftAutoUpdate,
    appStore,
    systemSoftwareUpdate,
    vendorUpdater,
    openApp,
};

inline AppUpdateActionKind kindOf(const AppUpdateAction& action) {
    return static_cast<AppUpdateActionKind>(action.index());
}

/// What a menu says of an action.
QString label(AppUpdateActionKind action);

/// The updater's name and its command, for the two actions that run one.
struct AppUpdateCommand {
    QString updaterName;
    QString executable; ///< path under the machine's root
    QList<QByteArray> arguments;
    std::map<QByteArray, QByteArray> furtherEnvironment;

    bool operator==(const AppUpdateCommand&) const = default;
};
std::optional<AppUpdateCommand> command(const AppUpdateAction& action);

/// How an external update command ended.
struct AppUpdateCommandResult {
    enum class Outcome { completed, timedOut, cancelled, couldNotLaunch };
    Outcome outcome = Outcome::couldNotLaunch;
    int exitStatus = -1; ///< of `completed`; 0 is success, a signal is not
    QByteArray output;

    static AppUpdateCommandResult of(const CommandResult& result);
    bool succeeded() const { return outcome == Outcome::completed && exitStatus == 0; }
};
/// The sentence that the user is shown.
QString message(const AppUpdateCommandResult& result);

/// Of an application's action while it runs and after.
struct AppUpdateActionState {
    enum class Kind { running, succeeded, failed };
    Kind kind = Kind::running;
    QString message;

    bool operator==(const AppUpdateActionState&) const = default;
};

namespace json {

template <>
struct RawValues<AppUpdateActionKind> : EnumeratorNames<AppUpdateActionKind::openApp> {};
template <>
struct RawValues<AppUpdateActionState::Kind> : EnumeratorNames<AppUpdateActionState::Kind::failed> {};

} // namespace json
} // namespace tessellar
