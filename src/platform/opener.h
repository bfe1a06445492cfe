#pragma once

#include "platform/machine.h"

namespace tessellar {

/// What is handed to the system to open: applications, and addresses of pages or settings. Through the
/// Mac's own /usr/bin/open, looked for inside the file system's root.
class Opener {
public:
    using Done =
        std::function<void(std::expected<void, QString>)>; ///< the tool's words, or why there are none

    explicit Opener(Machine& machine) : _machine(machine) {}

    /// Starts a bundle, on a worker; `done` is called on the main thread.
    [[nodiscard]] Task openApplication(const QString& path, Done done) const;
    /// Opens an address with whatever the user has for it.
    [[nodiscard]] Task openUrl(const QString& url, Done done) const;
    /// Shows an item in its folder; on a desktop that is not a Mac's, the folder.
    [[nodiscard]] Task reveal(const QString& path, Done done) const;

private:
    Task open(QList<QByteArray> arguments, Done done,
              std::optional<QByteArray> forDesktop = std::nullopt) const;

    Machine& _machine;
};

} // namespace tessellar
