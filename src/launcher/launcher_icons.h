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

/// The custom icons of applications, and notifications of all icons that changed.
///
/// Files are read, validated and written on workers, one request at a time; which applications have an
/// icon is cached. Main thread only.
class LauncherIcons {
public:
    using Outcome = std::expected<void, LauncherError>;
    using Done = std::function<void(const Outcome&)>;

    LauncherIcons(Machine& machine, const LiveLayouts& layouts, InstalledApplications& applications,
                  SmartFolderLibrary& smartFolders);

    /// Gives an application the icon in an `.icns` file, which is copied. Fails if the application is
    /// neither installed nor arranged. `files` is the file's file system; null for the machine's.
    void set(const QString& appKey, const QString& file, Done done = {},
             const FileSystem* files = nullptr);
    /// Removes the custom icon, if there is one.
    void remove(const QString& appKey, Done done = {});

    bool has(const QString& appKey) const { return path(appKey).has_value(); }
    /// The path of the custom icon, from the cache.
    std::optional<QString> path(const QString& appKey) const { return _store->knownIconPath(appKey); }
    /// Installed and arranged applications with a custom icon, sorted.
    QStringList appKeys() const;

    Signal<QSet<QString>> changed; ///< app keys whose icons must be reloaded

private:
    struct Request {
        QString appKey;
        std::optional<QString> file; ///< nullopt removes the icon
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
    std::shared_ptr<CustomAppIconStore> _store; ///< shared with workers, which may outlive a request
    std::list<Request> _requests;               ///< the first is being processed
    QHash<QString, QString> _keysToChange;      ///< deferred by the running request
    Task _task;
    bool _isUnderWay = false;
    QSet<QString> _toAnnounce;
    Subscription _scanned;
    Subscription _keysChanged;
};

} // namespace tessellar
