#pragma once

#include <QDir>
#include <QTemporaryDir>

#include <cstdlib>

namespace tessellar::fuzz {

/// A folder for those who read files rather than bytes, in memory where there is such a place.
class MemoryFolder {
public:
    QString hostPath() const { return _folder.path(); }
    QString hostPath(const QString& name) const { return _folder.filePath(name); }
    void clear() const {
        const QDir folder(_folder.path());
        for (const QString& name : folder.entryList(QDir::Files | QDir::Hidden))
            QFile::remove(folder.filePath(name));
    }
    void write(const QString& name, const QByteArray& bytes) const {
        QFile file(hostPath(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            std::abort();
    }

private:
    QTemporaryDir _folder{QDir(QStringLiteral("/dev/shm")).exists()
                              ? QStringLiteral("/dev/shm/tessellar-fuzz-XXXXXX")
                              : QDir::temp().filePath(QStringLiteral("tessellar-fuzz-XXXXXX"))};
};

} // namespace tessellar::fuzz
