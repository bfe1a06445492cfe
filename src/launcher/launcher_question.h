#pragma once

#include <QString>

#include <functional>

namespace tessellar {

/// A decision for the user.
struct LauncherQuestion {
    QString title;
    QString text;
    QString accept;             ///< label of the confirming button
    bool isDestructive = false; ///< that button is not the default

    bool operator==(const LauncherQuestion&) const = default;
};

/// Asks the user: in the window, or on the command line. `answer` is called once, possibly
/// synchronously.
using LauncherAsker =
    std::function<void(const LauncherQuestion& question, std::function<void(bool accepted)> answer)>;

} // namespace tessellar
