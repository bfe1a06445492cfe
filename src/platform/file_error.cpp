#include "platform/file_system.h"

#include "platform/texts.h"

#include <cerrno>

namespace tessellar {

QString message(const FileError& error) {
    using enum FileError::Code;
    const auto sentence = [&] {
        switch (error.code) {
        case notFound:
            return Texts::tr("“%1” does not exist.");
        case permissionDenied:
            return Texts::tr("You do not have permission to use “%1”.");
        case notADirectory:
            return Texts::tr("“%1” is not a folder.");
        case isADirectory:
            return Texts::tr("“%1” is a folder.");
        case notARegularFile:
            return Texts::tr("“%1” is not a regular file.");
        case tooLarge:
            return Texts::tr("“%1” is too large.");
        case noSpace:
            return Texts::tr("There is not enough space on the disk for “%1”.");
        case readOnly:
            return Texts::tr("“%1” is on a volume that cannot be written to.");
        case alreadyExists:
            return Texts::tr("“%1” already exists.");
        case notEmpty:
            return Texts::tr("The folder “%1” is not empty.");
        case otherVolume:
            return Texts::tr("“%1” is on another volume.");
        case linkLoop:
            return Texts::tr("“%1” leads through too many links.");
        case badPath:
            return Texts::tr("“%1” is not a usable path.");
        case damaged:
            return Texts::tr("“%1” is damaged.");
        case io:
            break;
        }
        return Texts::tr("“%1” could not be read or written.");
    };
    return sentence().arg(error.path);
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
