#include "privileged/numbered_name.h"

#include <QString>
#include <QTextBoundaryFinder>

namespace tessellar {
namespace {

constexpr qsizetype longestExtension = 32;

/// Truncates to whole characters; bytes that are not UTF-8 may be cut anywhere.
QByteArray cut(const QByteArray& stem, qsizetype bytes) {
    if (stem.size() <= bytes)
        return stem;
    const QString text = QString::fromUtf8(stem);
    if (text.toUtf8() != stem)
        return stem.left(bytes);
    QTextBoundaryFinder characters(QTextBoundaryFinder::Grapheme, text);
    QByteArray kept;
    for (qsizetype end = characters.toNextBoundary(); end >= 0; end = characters.toNextBoundary()) {
        const QByteArray longer = QStringView(text).first(end).toUtf8();
        if (longer.size() > bytes)
            break;
        kept = longer;
    }
    return kept;
}

} // namespace

QByteArray numberedName(const QByteArray& name, int number, qsizetype mostBytes) {
    if (number == 1 && name.size() <= mostBytes)
        return name;
    const qsizetype dot = name.lastIndexOf('.');
    const bool hasExtension = dot > 0 && name.size() - dot <= longestExtension;
    const QByteArray stem = hasExtension ? name.first(dot) : name;
    const QByteArray end = (number == 1 ? QByteArray() : ' ' + QByteArray::number(number)) +
                           (hasExtension ? name.sliced(dot) : QByteArray());
    return cut(stem, mostBytes - end.size()) + end;
}

} // namespace tessellar
