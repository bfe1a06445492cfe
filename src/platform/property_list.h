#pragma once

#include "platform/instant.h"

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QString>

#include <cstdint>
#include <expected>
#include <memory>
#include <optional>
#include <variant>

namespace tessellar {

struct PropertyListDocument;

/// A property list, or a node of one. Looking up what is not there, or has another type, gives an
/// absent value: callers ask for what they need and never check shapes.
///
/// A list that was read stays in the compact form of its document, which its nodes share; text, data
/// and containers are made when they are asked for. Of a bundle's hundred keys the launcher wants five,
/// and making strings and maps of all took three times as long as the parsing. So values are cheap
/// to copy and to move, `array` and `dictionary` cost the length of that one container, and looking up
/// a key compares bytes. Any thread may read a value that others read.
class PropertyValue {
public:
    using Array = QList<PropertyValue>;
    using Dictionary = QMap<QString, PropertyValue>;

    PropertyValue() = default;
    explicit PropertyValue(bool value);
    explicit PropertyValue(qint64 value);
    explicit PropertyValue(double value);
    explicit PropertyValue(QString value);
    explicit PropertyValue(QByteArray value);
    explicit PropertyValue(Instant value);
    explicit PropertyValue(Array value);
    explicit PropertyValue(Dictionary value);
    /// Of a document that was read: the value of its node `index`.
    PropertyValue(const std::shared_ptr<const PropertyListDocument>& document, quint32 index);

    bool isAbsent() const;
    std::optional<bool> boolean() const;
    std::optional<qint64> integer() const;
    std::optional<double> number() const; ///< an integer or a real
    std::optional<QString> text() const;
    std::optional<QByteArray> data() const;
    std::optional<Instant> date() const;
    /// Present only when it is an array and every element is a string.
    std::optional<QStringList> texts() const;
    /// True for the boolean true, a number other than 0, and "1", "true" and "yes" in any case, as the
    /// system reads flags of bundles.
    bool isTruthy() const;
    bool isArray() const;
    bool isDictionary() const;
    Array array() const;           ///< empty when it is none
    Dictionary dictionary() const; ///< empty when it is none; the last of equal keys counts
    PropertyValue operator[](const QString& key) const;

    bool operator==(const PropertyValue& other) const;

private:
    /// Text, data or a container of a document.
    struct Node {
        std::shared_ptr<const PropertyListDocument> document;
        quint32 index = 0;

        bool operator==(const Node&) const = default;
    };

    PropertyValue materialized() const;

    std::variant<std::monostate, bool, qint64, double, QString, QByteArray, Instant, Array, Dictionary,
                 Node>
        _value;
};

struct PropertyListLimits {
    std::uint64_t bytes = 16u << 20; ///< of the list, and of its text and data after expansion
    int depth = 128;                 ///< of containers within each other; 512 at most
    /// Nodes after expansion, keys among them: a child that a binary list shares counts each time.
    std::uint64_t nodes = 1'000'000;
};

enum class PropertyListError { notAPropertyList, damaged, tooLarge, tooDeep, tooManyNodes };
QString message(PropertyListError error);

/// Reads the XML form (through pugixml) and the binary form "bplist00" (through a small bounded reader
/// of our own: libplist 2.2 crashes on deep nesting and runs for seconds on shared references, and a
/// downloaded application must not be able to do that to the launcher). Time is bounded by the limits:
/// the work is linear in bytes and expanded nodes. Entities that a DTD declares are not expanded.
///
/// An integer beyond 64 bits signed is read as a real; a null, or a date that is no number, as an
/// absent value; a set as an array. Keyed archives are read as the plain values they are: a UID is a
/// dictionary with the integer "CF$UID", in either form. Text that is not well formed gets U+FFFD in
/// its place.
std::expected<PropertyValue, PropertyListError>
parsePropertyList(const QByteArray& bytes, const PropertyListLimits& limits = {});

} // namespace tessellar
