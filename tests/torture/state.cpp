#include "torture/state.h"

#include <QJsonArray>
#include <QJsonObject>

#include <algorithm>
#include <array>

namespace tessellar::torture {
namespace {

bool isHexadecimal(char c) {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'F') || (c >= 'a' && c <= 'f');
}

/// How long an identifier is that begins here, or the tag at the end of a stamped name; 0 where none
/// does.
qsizetype identifierLength(const QByteArray& text, qsizetype at) {
    static constexpr std::array groups{8, 4, 4, 4, 12};
    static constexpr qsizetype tagLength = 8;
    if (at > 0 && isHexadecimal(text[at - 1]))
        return 0;
    if (at > 0 && text[at - 1] == '-' && text.mid(at + tagLength, 5) == ".json" &&
        std::all_of(text.begin() + at, text.begin() + at + tagLength, isHexadecimal))
        return tagLength;
    qsizetype end = at;
    for (std::size_t group = 0; group < groups.size(); ++group) {
        if (group > 0 && (end >= text.size() || text[end++] != '-'))
            return 0;
        for (int digit = 0; digit < groups[group]; ++digit, ++end)
            if (end >= text.size() || !isHexadecimal(text[end]))
                return 0;
    }
    return end - at;
}

} // namespace

QSet<QByteArray> identifiersIn(const QByteArray& text) {
    QSet<QByteArray> all;
    for (qsizetype at = 0; at < text.size(); ++at)
        if (const qsizetype length = identifierLength(text, at))
            all.insert(text.sliced(at, length));
    return all;
}

QByteArray withNumberedIdentifiers(const QByteArray& text, const QSet<QByteArray>& known,
                                   QMap<QByteArray, QByteArray>& numbers) {
    QByteArray result;
    for (qsizetype at = 0; at < text.size();) {
        const qsizetype length = identifierLength(text, at);
        const QByteArray found = text.sliced(at, length);
        if (length == 0) {
            result += text[at++];
            continue;
        }
        if (!known.contains(found) && !numbers.contains(found))
            numbers.insert(found, "new-" + QByteArray::number(numbers.size() + 1));
        result += numbers.value(found, found);
        at += length;
    }
    return result;
}

QByteArray withoutStamps(const QByteArray& name) {
    QByteArray result;
    for (qsizetype at = 0; at < name.size();) {
        const qsizetype length = identifierLength(name, at);
        qsizetype digits = 0;
        while (at + digits < name.size() && isHexadecimal(name[at + digits]))
            ++digits;
        const bool isTag = digits == 8 && (at == 0 || name[at - 1] == '-' || name[at - 1] == '/');
        if (length > 0 || isTag) {
            result += '#';
            at += std::max(length, digits);
        } else {
            result += name[at++];
        }
    }
    return result;
}

QJsonValue withoutIdentities(const QJsonValue& value) {
    if (value.isArray()) {
        QJsonArray array;
        for (const QJsonValue& item : value.toArray())
            array.append(withoutIdentities(item));
        return array;
    }
    if (!value.isObject())
        return value;
    QJsonObject object = value.toObject();
    object.remove(QStringLiteral("identity"));
    for (auto member = object.begin(); member != object.end(); ++member)
        *member = withoutIdentities(*member);
    return object;
}

QByteArray difference(const State& expected, const State& actual) {
    QByteArrayList all;
    for (auto entry = expected.begin(); entry != expected.end(); ++entry) {
        const QByteArray now = actual.value(entry.key());
        if (!actual.contains(entry.key()))
            all.append(entry.key() + " is gone");
        else if (now != *entry && !all.isEmpty())
            all.append(entry.key());
        else if (now != *entry) {
            qsizetype at = 0;
            while (at < now.size() && at < entry->size() && now[at] == entry->at(at))
                ++at;
            const qsizetype from = std::max<qsizetype>(0, at - 60);
            all.append(entry.key() + " differs: …" + now.mid(from, 160).simplified() +
                       "… instead of …" + entry->mid(from, 160).simplified() + "…");
        }
    }
    for (const QByteArray& path : actual.keys())
        if (!expected.contains(path))
            all.append(path + " is new");
    return all.isEmpty() ? "nothing" : all.join(", ");
}

} // namespace tessellar::torture
