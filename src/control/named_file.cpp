#include "control/named_file.h"

#include <QDir>
#include <QFileInfo>

namespace tessellar {

NamedFile namedFile(const CommandCall& call, const QString& name) {
    static const FileSystem host;
    const FileSystem& files = call.machine.files;
    const QString path = QDir::cleanPath(QDir(call.options.directory).absoluteFilePath(name));
    if (const auto onMachine = files.pathFromHost(FileSystem::toHostBytes(path).value_or(QByteArray())))
        return {*onMachine, &files};
    if (!QFileInfo::exists(path) && name.startsWith(u'/') && files.exists(name))
        return {name, &files};
    return {path, &host};
}

} // namespace tessellar
