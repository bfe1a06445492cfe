#pragma once

#include "icons/custom_app_icon_store.h"
#include "launcher/launcher_error.h"
#include "platform/machine.h"
#include "platform/signal.h"

#include <functional>
#include <list>
#include <memory>

namespace tessellar {

class InstalledApplications;
class LiveLayouts;
class SmartFolderLibrary;

/// The icons that the user gave to applications, and word of every icon that looks different now.
///
/// Files are read, checked and written on workers, one request after the other; which applications have
/// an icon is known without asking the disk. Main thread only.
class LauncherIcons {
public:
    using Outcome = std::expected<void, LauncherError>;
    using Done = std::function<void(const Outcome&)>;

    LauncherIcons(Machine& machine, const LiveLayouts& layouts, InstalledApplications& applications,
                  SmartFolderLibrary& smartFolders);

    /// Gives an application the icon in an `.icns` file, of which a copy is kept. One that is neither
    /// installed nor arranged is refused. `files` is where the file lies when not on the machine.
    void set(const QString& appKey, const QString& file, Done done = {},
             const FileSystem* files = nullptr);
    /// Back to the application's own icon; no failure when it has that.
    void remove(const QString& appKey, Done done = {});

    bool has(const QString& appKey) const { return path(appKey).has_value(); }
    /// The file of the user's icon, by what is known in memory.
    std::optional<QString> path(const QString& appKey) const { return _store->knownIconPath(appKey); }
    /// The installed and arranged applications that have one, sorted.
    QStringList appKeys() const;

    Signal<QSet<QString>> changed; ///< the app keys whose icons are to be read anew

private:
    struct Request {
        QString appKey;
        std::optional<QString> file; ///< nothing removes the icon
        const FileSystem* files = nullptr;
        Done done;
    };

    void startNext();
    void changeKeys(const QHash<QString, QString>& changedKeys);
    void scanned();
    void announce();
    void tellSmartFolders();
    QSet<QString> knownKeys() const;

    Machine& _machine;
    const LiveLayouts& _layouts;
    InstalledApplications& _applications;
    SmartFolderLibrary& _smartFolders;
    std::shared_ptr<CustomAppIconStore> _store; ///< shared with workers, which outlive a request
    std::list<Request> _requests;               ///< the first one is being carried out
    QHash<QString, QString> _keysToChange;      ///< of the request under way
    Task _task;
    bool _isUnderWay = false;
    QSet<QString> _toAnnounce;
    Subscription _scanned;
    Subscription _keysChanged;
};

} // namespace tessellar
