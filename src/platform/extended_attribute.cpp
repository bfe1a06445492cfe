#include "platform/extended_attribute.h"

#include <string>

#include <sys/xattr.h>

namespace tessellar {

std::optional<QByteArray> extendedAttribute(const FileSystem& files, const QString& path,
                                            const char* name, std::size_t maximumBytes) {
    const QByteArray host = files.hostPath(path);
    QByteArray value(static_cast<qsizetype>(maximumBytes), Qt::Uninitialized);
#ifdef __APPLE__
    const auto size = ::getxattr(host.constData(), name, value.data(), maximumBytes, 0, 0);
#else
    const auto size =
        ::getxattr(host.constData(), (std::string("user.") + name).c_str(), value.data(), maximumBytes);
#endif
    if (size < 0)
        return std::nullopt;
    value.truncate(size);
    return value;
}

} // namespace tessellar
