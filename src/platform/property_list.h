#pragma once

#include "platform/instant.h"

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QString>

#include <cstdint>
#include <expected>
#include <optional>
#include <variant>

namespace tessellar {

/// A property list, or a node of one. Looking up what is not there, or has another type, gives an
/// absent value: callers ask for what they need and never check shapes.
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

    bool isAbsent() const;
    std::optional<bool> boolean() const;
    std::optional<qint64> integer() const;
    std::optional<double> number() const; ///< an integer or a real
    std::optional<QString> text() const;
    std::optional<QByteArray> data() const;
    std::optional<Instant> date() const;
    /// Present only when every element is a string.
    std::optional<QStringList> texts() const;
    /// True for the boolean true, a number other than 0, and "1", "true" and "yes" in any case, as the
    /// system reads flags of bundles.
    bool isTruthy() const;
    const Array& array() const;           ///< empty when it is none
    const Dictionary& dictionary() const; ///< empty when it is none
    PropertyValue operator[](const QString& key) const;

    bool operator==(const PropertyValue&) const = default;

private:
    std::variant<std::monostate, bool, qint64, double, QString, QByteArray, Instant, Array, Dictionary>
        _value;
};

struct PropertyListLimits {
    std::uint64_t bytes = 16u << 20;
    int depth = 128;
    /// Nodes after expansion: a binary list whose arrays share one child counts it each time.
    std::uint64_t nodes = 1'000'000;
};

enum class PropertyListError { notAPropertyList, damaged, tooLarge, tooDeep, tooManyNodes };
QString message(PropertyListError error);

/// Reads the XML form (through pugixml) and the binary form "bplist00" (through a small bounded reader
/// of our own: libplist 2.2 crashes on deep nesting and runs for seconds on shared references, and a
/// downloaded application must not be able to do that to the launcher). Time is bounded by the limits:
/// the work is linear in bytes and expanded nodes. Keyed archives are read as the plain values they are.
std::expected<PropertyValue, PropertyListError> parsePropertyList(const QByteArray& bytes,
                                                                  const PropertyListLimits& limits = {});

} // namespace tessellar
