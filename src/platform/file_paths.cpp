// The part of `FileSystem` that treats paths as text, without touching a disk.

#include "platform/file_system.h"

#include <QStringList>

#include <algorithm>

namespace tessellar {
namespace {

bool isSurrogate(QChar c) { return c.isSurrogate(); }

/// Stands for a byte in a path that is not UTF-8.
constexpr char16_t strayByte = 0xDC00;

} // namespace

QString FileSystem::fromHostBytes(QByteArrayView bytes) {
    if (bytes.isValidUtf8())
        return QString::fromUtf8(bytes);
    QString text;
    while (!bytes.isEmpty()) {
        const auto lead = static_cast<unsigned char>(bytes.front());
        const qsizetype length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
        if (length <= bytes.size() && bytes.first(length).isValidUtf8()) {
            text += QString::fromUtf8(bytes.first(length));
            bytes = bytes.sliced(length);
        } else {
            text += QChar(static_cast<char16_t>(strayByte + lead));
            bytes = bytes.sliced(1);
        }
    }
    return text;
}

std::optional<QByteArray> FileSystem::toHostBytes(const QString& text) {
    if (text.contains(QChar(u'\0')))
        return std::nullopt;
    if (std::none_of(text.cbegin(), text.cend(), isSurrogate))
        return text.toUtf8();
    QByteArray bytes;
    for (qsizetype at = 0; at < text.size(); ++at) {
        const QStringView rest = QStringView(text).sliced(at);
        if (!rest.front().isSurrogate()) {
            bytes += rest.first(1).toUtf8();
        } else if (rest.front().isHighSurrogate() && rest.size() > 1 && rest[1].isLowSurrogate()) {
            bytes += rest.first(2).toUtf8();
            ++at;
        } else if (rest.front() >= QChar(strayByte + 0x80) && rest.front() <= QChar(strayByte + 0xFF)) {
            bytes += static_cast<char>(rest.front().unicode() - strayByte);
        } else {
            return std::nullopt;
        }
    }
    return bytes;
}

QString FileSystem::standardized(const QString& path) {
    // Nearly every path is clean already, but for a trailing slash.
    const auto beginsOddPart = [](QChar slash, QChar next) {
        return slash == u'/' && (next == u'/' || next == u'.');
    };
    if (path.startsWith(u'/') && path.size() > 1 &&
        std::ranges::adjacent_find(path, beginsOddPart) == path.end())
        return path.endsWith(u'/') ? path.chopped(1) : path;
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

bool FileSystem::isWithin(const QString& path, const QString& directory) {
    return directory == u"/" || path == directory ||
           (path.size() > directory.size() && path.startsWith(directory) &&
            path[directory.size()] == u'/');
}

QString FileSystem::joined(const QString& directory, const QString& name) {
    QString path;
    path.reserve(directory.size() + 1 + name.size());
    path += directory;
    if (!directory.endsWith(u'/'))
        path += u'/';
    path += name;
    return path;
}

QString FileSystem::fileName(const QString& path) { return path.sliced(path.lastIndexOf(u'/') + 1); }

QString FileSystem::parent(const QString& path) {
    const qsizetype slash = path.lastIndexOf(u'/');
    return slash <= 0 ? QStringLiteral("/") : path.first(slash);
}

QString FileSystem::extension(const QString& path) {
    const qsizetype dot = path.lastIndexOf(u'.');
    return dot <= path.lastIndexOf(u'/') + 1 ? QString() : path.sliced(dot + 1);
}

} // namespace tessellar
