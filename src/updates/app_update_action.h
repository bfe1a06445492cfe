#pragma once

#include "updates/app_update_candidate.h"
#include "updates/app_update_records.h"

namespace tessellar {

/// An application supported by Microsoft's common updater, and the updater's tool.
struct MicrosoftAutoUpdateTarget {
    QString applicationIdentifier; ///< the updater's code for it, for example "XCEL2019"
    QString executableURL;         ///< path of the tool

    static inline const QString toolPath =
        QStringLiteral("/Library/Application Support/Microsoft/MAU2.0/Microsoft AutoUpdate.app/"
                       "Contents/MacOS/msupdate");

    /// The updater's code for a bundle identifier, ignoring case; nullopt if unsupported.
    static std::optional<QString> code(const QString& bundleIdentifier);
    /// nullopt unless the tool is installed.
    static std::optional<MicrosoftAutoUpdateTarget> find(const FileSystem& files,
                                                         const QString& bundleIdentifier);
    bool operator==(const MicrosoftAutoUpdateTarget&) const = default;
};

// The ways to update an application, in order of preference.
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

/// The menu title of an action.
QString label(AppUpdateActionKind action);

/// The updater's name and command, for actions that run one.
struct AppUpdateCommand {
    QString updaterName;
    QString executable; ///< path under the machine's root
    QList<QByteArray> arguments;
    std::map<QByteArray, QByteArray> furtherEnvironment;

    bool operator==(const AppUpdateCommand&) const = default;
};
std::optional<AppUpdateCommand> command(const AppUpdateAction& action);

/// The outcome of running an update command.
enum class AppUpdateOutcome { completed, failed, timedOut, cancelled, couldNotLaunch, alreadyRunning };
QString message(AppUpdateOutcome outcome);

/// The state of an application's update action, kept after it ends.
struct AppUpdateActionState {
    enum class Kind {
        waiting, ///< queued behind others
        running,
        succeeded,
        failed,
        cancelled,
    };
    /// What a running command is doing, if it says.
    enum class Phase { none, starting, updatingItself, downloading, installing, password, verifying };
    Kind kind = Kind::running;
    QString message;
    Phase phase = Phase::none;
    QString detail; ///< from the command's output: one line while running, several after a failure

    bool isOver() const { return kind > Kind::running; }
    bool operator==(const AppUpdateActionState&) const = default;
};
/// "Updating…", with the phase if known.
QString text(AppUpdateActionState::Phase phase);
/// The phase alone, for tight spaces: "Downloading…".
QString shortText(AppUpdateActionState::Phase phase);
/// Derives the phase from the last lines of an updater's output.
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
