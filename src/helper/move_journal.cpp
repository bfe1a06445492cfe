#include "helper/move_journal.h"

#include "platform/atomic_file.h"

#include <QFile>

namespace tessellar {
namespace {

constexpr qint64 maximumBytes = 32 << 20;

QByteArray pathIn(const QByteArray& folder) { return folder + "/moves.json"; }

} // namespace

std::optional<QList<MoveRecord>> MoveJournal::read() const {
    QFile file(QString::fromUtf8(pathIn(_folder)));
    if (!file.exists())
        return QList<MoveRecord>();
    if (!file.open(QIODevice::ReadOnly) || file.size() > maximumBytes)
        return std::nullopt;
    auto records = json::decodeDocument<QList<MoveRecord>>(file.readAll());
    if (!records)
        return std::nullopt;
    return *std::move(records);
}

bool MoveJournal::write(QList<MoveRecord> records) const {
    if (records.size() > mostRecords)
        records.remove(0, records.size() - mostRecords);
    return replaceFile(pathIn(_folder), json::write(json::encode(records))).has_value();
}

} // namespace tessellar
