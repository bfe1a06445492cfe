#pragma once

#include "platform/descriptor.h"

#include <QByteArray>
#include <QList>

#include <expected>

// Resolves paths inside a root folder, as after chroot: absolute links start at the root and ".."
// cannot leave it. All errors are errno values.

namespace tessellar {

enum class LastLink { follow, keep };

/// An entry, as a name in an open folder; "." for the root itself. With `LastLink::follow`, the name
/// was not a link when checked.
struct Place {
    Descriptor directory;
    QByteArray name;
    QList<QByteArray> trail; ///< the folder's components, links resolved
};

/// Resolves component by component in user space. The last component need not exist. Follows at most 40
/// links.
std::expected<Place, int> locate(int root, const QByteArray& path, LastLink last);

/// The target of a link.
std::expected<QByteArray, int> readLink(int directory, const QByteArray& name);

/// Opens an existing file or folder, following links (the last one unless O_NOFOLLOW is given). Uses
/// the kernel's resolution where available (Linux 5.6), else `locate`. Never creates.
std::expected<Descriptor, int> openInRoot(int root, const QByteArray& path, int flags);

/// The fallback of `openInRoot` for kernels that cannot resolve inside a root.
std::expected<Descriptor, int> openInRootByComponent(int root, const QByteArray& path, int flags);

/// Opens an entry below a folder; any link in the path is an error. `path` is relative, without ".."
/// and shorter than PATH_MAX. Without `crossMounts`, anything on another volume gives EXDEV.
std::expected<Descriptor, int> openBelow(int directory, const QByteArray& path, int flags,
                                         bool crossMounts);

/// Atomically renames within one volume, never replacing: EEXIST if the new name is taken, and EINVAL,
/// ENOSYS or ENOTSUP if the file system cannot guarantee that.
int renameExclusively(int fromDirectory, const QByteArray& from, int toDirectory, const QByteArray& to);

} // namespace tessellar
