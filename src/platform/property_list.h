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

/// A property list, or a node of one. Looking up a missing value, or one of another type, gives an
/// absent value, so callers never check shapes.
///
/// A parsed list stays in its document's compact form, shared by its nodes; strings, data and
/// containers are built on demand: the launcher needs five of a bundle's hundred keys, and building all
/// of them took three times as long as parsing. So values are cheap to copy and move, `array` and
/// `dictionary` cost the length of that one container, and key look-up compares bytes. Concurrent reads
/// are safe.
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
    /// Node `index` of a parsed document.
    PropertyValue(const std::shared_ptr<const PropertyListDocument>& document, quint32 index);

    bool isAbsent() const;
    std::optional<bool> boolean() const;
    std::optional<qint64> integer() const;
    std::optional<double> number() const; ///< an integer or a real
    std::optional<QString> text() const;
    std::optional<QByteArray> data() const;
    std::optional<Instant> date() const;
    /// nullopt unless it is an array of strings only.
    std::optional<QStringList> texts() const;
    /// True for the boolean true, a non-zero number, and "1", "true" or "yes" ignoring case, as macOS
    /// reads the flags of bundles.
    bool isTruthy() const;
    bool isArray() const;
    bool isDictionary() const;
    Array array() const;           ///< empty if not an array
    Dictionary dictionary() const; ///< empty if not a dictionary; the last of duplicate keys wins
    PropertyValue operator[](const QString& key) const;

    bool operator==(const PropertyValue& other) const;

private:
    /// A string, data or container in a document.
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
    std::uint64_t bytes = 16u << 20; ///< of the list itself, and of its expanded text and data
    int depth = 128;                 ///< nesting of containers; 512 at most
    /// Nodes after expansion, including keys; a shared child of a binary list counts each time.
    std::uint64_t nodes = 1'000'000;
};

enum class PropertyListError { notAPropertyList, damaged, tooLarge, tooDeep, tooManyNodes };
QString message(PropertyListError error);

/// Parses XML (with pugixml) and binary property lists ("bplist00"; with our own bounded reader, as
/// libplist 2.2 crashes on deep nesting and runs for seconds on shared references, so a downloaded
/// application could hang or crash the launcher). Linear in bytes and expanded nodes, both limited.
/// Entities declared in a DTD are not expanded.
///
/// Integers beyond signed 64 bits become reals; nulls and NaN dates become absent values; sets become
/// arrays. Keyed archives are not decoded: a UID is a dictionary with the integer "CF$UID", in both
/// forms. Malformed text is replaced by U+FFFD.
std::expected<PropertyValue, PropertyListError>
parsePropertyList(const QByteArray& bytes, const PropertyListLimits& limits = {});

} // namespace tessellar
