#pragma once

#include "model/layout_store.h"

namespace tessellar {

/// Why something that the user asked for was not done.
struct LauncherError {
    /// What an alert about it offers besides being closed.
    enum class Remedy { none, saveAgain, resetLayout };

    QString code;    ///< for programs: the case's name, such as "layoutNotReady" or "noSpace"
    QString message; ///< for people: one sentence
    QString title;   ///< of an alert about it; empty where a notice is enough
    Remedy remedy = Remedy::none;

    bool operator==(const LauncherError&) const = default;
};

QString code(const FileError& error);
LauncherError launcherError(const LayoutStore::Error& error, const QString& title = {});
LauncherError launcherError(const FileError& error, const QString& title = {});
/// The same error in an alert that offers a way out.
LauncherError offering(LauncherError::Remedy remedy, LauncherError error);
/// The title of the alert about a save that failed.
QString couldNotSaveLayout();

} // namespace tessellar
