#include "platform/file_system.h"

#include <cerrno>

namespace tessellar {

QString message(const FileError& error) {
    using enum FileError::Code;
    const auto sentence = [&] {
        switch (error.code) {
        case notFound:
            return u"“%1” does not exist.";
        case permissionDenied:
            return u"You do not have permission to use “%1”.";
        case notADirectory:
            return u"“%1” is not a folder.";
        case isADirectory:
            return u"“%1” is a folder.";
        case notARegularFile:
            return u"“%1” is not a regular file.";
        case tooLarge:
            return u"“%1” is too large.";
        case noSpace:
            return u"There is not enough space on the disk for “%1”.";
        case readOnly:
            return u"“%1” is on a volume that cannot be written to.";
        case alreadyExists:
            return u"“%1” already exists.";
        case notEmpty:
            return u"The folder “%1” is not empty.";
        case otherVolume:
            return u"“%1” is on another volume.";
        case linkLoop:
            return u"“%1” leads through too many links.";
        case badPath:
            return u"“%1” is not a usable path.";
        case damaged:
            return u"“%1” is damaged.";
        case io:
            break;
        }
        return u"“%1” could not be read or written.";
    };
    return QString::fromUtf16(sentence()).arg(error.path);
}

FileError fileError(int error, const QString& path) {
    using enum FileError::Code;
    switch (error) {
    case ENOENT:
        return {notFound, path};
    case EACCES:
    case EPERM:
        return {permissionDenied, path};
    case ENOTDIR:
        return {notADirectory, path};
    case EISDIR:
        return {isADirectory, path};
    case EFBIG:
        return {tooLarge, path};
    case ENOSPC:
    case EDQUOT:
        return {noSpace, path};
    case EROFS:
        return {readOnly, path};
    case EEXIST:
        return {alreadyExists, path};
    case ENOTEMPTY:
        return {notEmpty, path};
    case EXDEV:
        return {otherVolume, path};
    case ELOOP:
        return {linkLoop, path};
    case EINVAL:
    case ENAMETOOLONG:
        return {badPath, path};
    case ENXIO: // a socket
        return {notARegularFile, path};
    default:
        return {io, path};
    }
}

} // namespace tessellar
