#include "platform/file_system.h"

namespace tessellar {

QString FileSystem::standardized(const QString& path)
{
    QStringList kept;
    for (const QString& part : path.split(u'/', Qt::SkipEmptyParts)) {
        if (part == u"..") {
            if (!kept.isEmpty())
                kept.removeLast();
        } else if (part != u".") {
            kept.append(part);
        }
    }
    return u'/' + kept.join(u'/');
}

bool FileSystem::isWithin(const QString& path, const QString& directory)
{
    return directory == u"/" || path == directory ||
           (path.size() > directory.size() && path.startsWith(directory) && path[directory.size()] == u'/');
}

QString FileSystem::joined(const QString& directory, const QString& name)
{
    return directory.endsWith(u'/') ? directory + name : directory + u'/' + name;
}

QString FileSystem::fileName(const QString& path) { return path.sliced(path.lastIndexOf(u'/') + 1); }

QString FileSystem::parent(const QString& path)
{
    const qsizetype slash = path.lastIndexOf(u'/');
    return slash <= 0 ? QStringLiteral("/") : path.first(slash);
}

QString FileSystem::extension(const QString& path)
{
    const QString name = fileName(path);
    const qsizetype dot = name.lastIndexOf(u'.');
    return dot <= 0 ? QString() : name.sliced(dot + 1);
}

} // namespace tessellar
