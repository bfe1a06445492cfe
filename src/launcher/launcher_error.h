#pragma once

#include "model/layout_store.h"

namespace tessellar {

/// Why a request of the user was not carried out.
struct LauncherError {
    /// What the alert offers besides closing it.
    enum class Remedy { none, saveAgain, resetLayout };

    QString code;    ///< for programs: the enumerator's name, for example "layoutNotReady" or "noSpace"
    QString message; ///< for people: one sentence
    QString title;   ///< of an alert; empty if a notice suffices
    Remedy remedy = Remedy::none;

    bool operator==(const LauncherError&) const = default;
};

QString code(const FileError& error);
LauncherError launcherError(const LayoutStore::Error& error, const QString& title = {});
LauncherError launcherError(const FileError& error, const QString& title = {});
/// Adds a remedy to the error's alert.
LauncherError offering(LauncherError::Remedy remedy, LauncherError error);
/// The alert's title for a failed save.
QString couldNotSaveLayout();

} // namespace tessellar
