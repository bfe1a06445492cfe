#pragma once

#include "platform/machine.h"

namespace tessellar {

/// Opens applications, web pages and settings panes through macOS's /usr/bin/open, looked up inside the
/// file system's root.
class Opener {
public:
    using Done = std::function<void(std::expected<void, QString>)>; ///< the error is the tool's, or why
                                                                    ///< it did not run

    explicit Opener(Machine& machine) : _machine(machine) {}

    /// Launches a bundle from a worker; `done` is called on the main thread.
    [[nodiscard]] Task openApplication(const QString& path, Done done) const;
    /// Opens a URL with the user's default application.
    [[nodiscard]] Task openUrl(const QString& url, Done done) const;
    /// Shows an item in its folder; outside macOS, opens the folder.
    [[nodiscard]] Task reveal(const QString& path, Done done) const;

private:
    Task open(QList<QByteArray> arguments, Done done,
              std::optional<QByteArray> forDesktop = std::nullopt) const;

    Machine& _machine;
};

} // namespace tessellar
