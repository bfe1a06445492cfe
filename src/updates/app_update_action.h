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

/// What can be said of an update whose command was begun, or was to be.
enum class AppUpdateOutcome { completed, failed, timedOut, cancelled, couldNotLaunch, alreadyRunning };
QString message(AppUpdateOutcome outcome);

/// Of an application's action while it runs and after.
struct AppUpdateActionState {
    enum class Kind {
        waiting, ///< for those before it
        running,
        succeeded,
        failed,
        cancelled,
    };
    /// What a running command does, as far as it says.
    enum class Phase { none, starting, updatingItself, downloading, installing, password, verifying };
    Kind kind = Kind::running;
    QString message;
    Phase phase = Phase::none;
    QString detail; ///< the command's own last words: a line while it runs, some where it failed

    bool isOver() const { return kind > Kind::running; }
    bool operator==(const AppUpdateActionState&) const = default;
};
/// "Updating…", and what is being done where that is known.
QString text(AppUpdateActionState::Phase phase);
/// That alone, where there is little room: "Downloading…".
QString shortText(AppUpdateActionState::Phase phase);
/// What the last lines of an updater say that it does.
AppUpdateActionState::Phase phaseOf(const QList<QByteArray>& lines);

namespace json {

template <>
struct RawValues<AppUpdateActionKind> : EnumeratorNames<AppUpdateActionKind::openApp> {};
template <>
struct RawValues<AppUpdateActionState::Kind> : EnumeratorNames<AppUpdateActionState::Kind::cancelled> {
};
template <>
struct RawValues<AppUpdateActionState::Phase>
    : EnumeratorNames<AppUpdateActionState::Phase::verifying> {};

} // namespace json
} // namespace tessellar
