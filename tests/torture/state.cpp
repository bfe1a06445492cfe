#include "torture/state.h"

#include "model/json.h"

#include <QRegularExpression>

#include <algorithm>

namespace tessellar::torture {

using namespace Qt::Literals::StringLiterals;

namespace {

/// "H" stands for a hexadecimal digit.
QRegularExpression patternOf(QString text) {
    return QRegularExpression(text.replace(u'H', u"[0-9A-Fa-f]"_s));
}
const QString identifier = u"(?<!H)H{8}(-H{4}){3}-H{12}"_s;

/// Identifiers, and the tags at the end of stamped names. Bytes count as characters.
QRegularExpressionMatchIterator identifiers(const QByteArray& text) {
    static const QRegularExpression pattern = patternOf(identifier + u"|(?<=-)H{8}(?=[.]json)"_s);
    return pattern.globalMatch(QString::fromLatin1(text));
}

} // namespace

State withoutPlaces(State state) {
    state.removeIf([](const auto& entry) { return entry.key().contains("/remembered-places"); });
    return state;
}

QByteArray shortened(const QByteArray& text) { return text.simplified().left(300); }

QSet<QByteArray> identifiersIn(const QByteArray& text) {
    QSet<QByteArray> all;
    for (auto found = identifiers(text); found.hasNext();)
        all.insert(found.next().captured().toLatin1());
    return all;
}

QByteArray withNumberedIdentifiers(const QByteArray& text, const QSet<QByteArray>& known,
                                   QMap<QByteArray, QByteArray>& numbers) {
    QByteArray result;
    qsizetype end = 0;
    for (auto found = identifiers(text); found.hasNext();) {
        const QRegularExpressionMatch match = found.next();
        const QByteArray one = match.captured().toLatin1();
        if (!known.contains(one) && !numbers.contains(one))
            numbers.insert(one, "new-" + QByteArray::number(numbers.size() + 1));
        result += text.sliced(end, match.capturedStart() - end) + numbers.value(one, one);
        end = match.capturedEnd();
    }
    return result + text.sliced(end);
}

QByteArray withoutStamps(const QByteArray& name) {
    static const QRegularExpression pattern = patternOf(identifier + u"|(?<![^-/])H{8}(?!H)"_s);
    return QString::fromLatin1(name).replace(pattern, u"#"_s).toLatin1();
}

QByteArray withoutIdentities(const QByteArray& bytes) {
    static const QRegularExpression identity(u"\"identity\": [{][^}]*[}]"_s);
    const auto value = json::parse(bytes);
    return value && !value->isNull() ? QString::fromUtf8(json::write(*value)).remove(identity).toUtf8()
                                     : bytes;
}

QByteArray difference(const State& expected, const State& actual) {
    QByteArrayList all;
    for (const auto& [path, before] : expected.asKeyValueRange()) {
        const QByteArray now = actual.value(path);
        if (!actual.contains(path))
            all.append(path + " is gone");
        else if (now != before && !all.isEmpty())
            all.append(path);
        else if (now != before) {
            const qsizetype at = std::ranges::mismatch(now, before).in1 - now.begin();
            const qsizetype from = std::max<qsizetype>(0, at - 60);
            all.append(path + " differs: …" + now.mid(from, 160).simplified() + "… instead of …" +
                       before.mid(from, 160).simplified() + "…");
        }
    }
    for (const QByteArray& path : actual.keys())
        if (!expected.contains(path))
            all.append(path + " is new");
    return all.isEmpty() ? "nothing" : all.join(", ");
}

} // namespace tessellar::torture
