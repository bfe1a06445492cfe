#pragma once

#include "platform/descriptor.h"

#include <QByteArray>
#include <QList>

#include <expected>

// Paths that resolve inside a root folder, as a process would see them after chroot: absolute links
// begin at the root and ".." does not lead out of it. All errors are errno values.

namespace tessellar {

enum class LastLink { follow, keep };

/// Where an entry lies: a name in an open folder. The name is "." for the root itself. With
/// `LastLink::follow` the name was no link when it was looked at.
struct Place {
    Descriptor directory;
    QByteArray name;
    QList<QByteArray> trail; ///< the components of the folder, without links
};

/// Resolves component by component, without help from the kernel. The last component need not exist.
/// 40 links are followed at most.
std::expected<Place, int> locate(int root, const QByteArray& path, LastLink last);

/// The bytes of a link.
std::expected<QByteArray, int> readLink(int directory, const QByteArray& name);

/// Opens an existing file or folder, following links (the last one unless O_NOFOLLOW is given), by the
/// kernel's own resolution where it has one (Linux 5.6) and else through `locate`. Never creates.
std::expected<Descriptor, int> openInRoot(int root, const QByteArray& path, int flags);

/// The way of `openInRoot` on kernels that do not resolve inside a root.
std::expected<Descriptor, int> openInRootByComponent(int root, const QByteArray& path, int flags);

/// Opens what lies below a folder, following no link on the way and none at the end. `path` is
/// relative, without ".." and shorter than the system's longest path. Where `crossMounts` is false,
/// what lies on another volume is EXDEV.
std::expected<Descriptor, int> openBelow(int directory, const QByteArray& path, int flags,
                                         bool crossMounts);

/// Renames within one volume and replaces nothing, as one step of the file system: EEXIST when the new
/// name is taken, and an error (EINVAL, ENOSYS, ENOTSUP) where the file system cannot promise that.
int renameExclusively(int fromDirectory, const QByteArray& from, int toDirectory, const QByteArray& to);

} // namespace tessellar
