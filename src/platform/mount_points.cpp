#include "platform/mount_points.h"

#include <QFile>

namespace tessellar {

/// Octal escapes such as "\040" stand for the separators of columns.
static QByteArray unescaped(const QByteArray& word) {
    QByteArray text;
    for (qsizetype i = 0; i < word.size(); ++i) {
        bool isNumber = false;
        const int code = word[i] == '\\' ? word.mid(i + 1, 3).toInt(&isNumber, 8) : 0;
        text += isNumber ? static_cast<char>(code) : word[i];
        i += isNumber ? 3 : 0;
    }
    return text;
}

QList<QByteArray> mountPoints() {
    QList<QByteArray> points;
    QFile table(QStringLiteral("/proc/self/mountinfo"));
    if (table.open(QIODevice::ReadOnly))
        for (const QByteArray& line : table.readAll().split('\n'))
            if (const QList<QByteArray> columns = line.split(' '); columns.size() > 4)
                points.append(unescaped(columns[4]));
    return points;
}

} // namespace tessellar
