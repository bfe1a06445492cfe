#pragma once

#include <QString>

#include <functional>

namespace tessellar {

/// Something that the user is to decide before it is done.
struct LauncherQuestion {
    QString title;
    QString text;
    QString accept;             ///< what the button that does it says
    bool isDestructive = false; ///< that button is not the one for haste

    bool operator==(const LauncherQuestion&) const = default;
};

/// How the user is asked: by the window, or by the words of a command. `answer` is called once,
/// possibly at once.
using LauncherAsker =
    std::function<void(const LauncherQuestion& question, std::function<void(bool accepted)> answer)>;

} // namespace tessellar
