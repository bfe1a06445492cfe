#pragma once

#include <QByteArray>
#include <QDebug>
#include <QString>
#include <QUuid>

#include <ostream>

// How Google Test prints Qt's values: as text, not as bytes of memory. Found by argument-dependent
// lookup in the global namespace, where Qt's types live.

inline void PrintTo(const QString& value, std::ostream* out) {
    *out << '"' << value.toStdString() << '"';
}
inline void PrintTo(const QByteArray& value, std::ostream* out) {
    *out << '"' << value.toStdString() << '"';
}
inline void PrintTo(const QUuid& value, std::ostream* out) { *out << value.toString().toStdString(); }
