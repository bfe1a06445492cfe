#pragma once

#include "platform/instant.h"

#include <QByteArray>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>
#include <QList>
#include <QMap>
#include <QString>
#include <QUuid>

#include <algorithm>
#include <array>
#include <concepts>
#include <expected>
#include <optional>
#include <source_location>
#include <string_view>
#include <utility>

/// JSON encoding and decoding from one declaration.
///
/// A record lists its fields once:
///
///     template <> struct json::Fields<Point> {
///         static constexpr auto list =
///             fields(required("x", &Point::x), optional("name", &Point::name));
///     };
///
/// Enumerations declare raw values, tagged unions (see json_unions.h) the keys of their cases;
/// `decode<T>` and `encode` then work both ways. A decode error has the path of the offending value.
/// Unknown keys are ignored; each field declares whether a missing key is an error, nullopt or a
/// default.
namespace tessellar::json {

struct DecodeError {
    QString path; ///< for example "pages[0][3].app._0.id"; empty for the document itself
    QString message;

    bool operator==(const DecodeError&) const = default;
    DecodeError within(const QString& step) && {
        path = path.isEmpty() || path.startsWith(u'[') ? step + path : step + u'.' + path;
        return std::move(*this);
    }
};

/// One line for people: the message, and the path if there is one.
QString message(const DecodeError& error);

template <typename T>
using Decoded = std::expected<T, DecodeError>;

inline std::unexpected<DecodeError> fail(const QString& message) {
    return std::unexpected(DecodeError{{}, message});
}
inline std::unexpected<DecodeError> expected(const char* what) {
    return fail(QStringLiteral("Expected %1.").arg(QLatin1StringView(what)));
}

/// Parses a document; fails on nesting deeper than 1,024 and on trailing content.
Decoded<QJsonValue> parse(const QByteArray& bytes);
/// Pretty-printed, keys sorted, with a final newline.
QByteArray write(const QJsonValue& value);
/// As `write`, but on a single line.
QByteArray writeCompact(const QJsonValue& value);

/// How a type is encoded; specialized below and beside the types themselves.
template <typename T>
struct Codec;

template <typename T>
Decoded<T> decode(const QJsonValue& value) {
    return Codec<T>::decode(value);
}
template <typename T>
QJsonValue encode(const T& value) {
    return Codec<T>::encode(value);
}

template <typename T>
Decoded<T> decodeDocument(const QByteArray& bytes) {
    const auto value = parse(bytes);
    if (!value)
        return std::unexpected(value.error());
    return decode<T>(*value);
}

// ---- plain values

template <>
struct Codec<bool> {
    static Decoded<bool> decode(const QJsonValue& value) {
        if (!value.isBool())
            return expected("a boolean");
        return value.toBool();
    }
    static QJsonValue encode(bool value) { return value; }
};

template <std::signed_integral T>
struct Codec<T> {
    static Decoded<T> decode(const QJsonValue& value) {
        // Comparing two defaults detects fractions and values out of range.
        if (!value.isDouble() || value.toInteger(0) != value.toInteger(1) ||
            !std::in_range<T>(value.toInteger()))
            return expected("an integer");
        return static_cast<T>(value.toInteger());
    }
    static QJsonValue encode(T value) { return static_cast<qint64>(value); }
};

template <>
struct Codec<double> {
    static Decoded<double> decode(const QJsonValue& value) {
        if (!value.isDouble())
            return expected("a number");
        return value.toDouble();
    }
    static QJsonValue encode(double value) { return value; }
};

template <>
struct Codec<QString> {
    static Decoded<QString> decode(const QJsonValue& value) {
        if (!value.isString())
            return expected("a string");
        return value.toString();
    }
    static QJsonValue encode(const QString& value) { return value; }
};

/// 36 characters with hyphens; decoded in either case, encoded in upper case.
template <>
struct Codec<QUuid> {
    static Decoded<QUuid> decode(const QJsonValue& value);
    static QJsonValue encode(const QUuid& value);
};

/// Seconds since 1 January 2001: the default for dates.
template <>
struct Codec<Instant> {
    static Decoded<Instant> decode(const QJsonValue& value) {
        if (!value.isDouble())
            return expected("a date as seconds since 2001");
        return Instant{value.toDouble()};
    }
    static QJsonValue encode(const Instant& value) { return value.secondsSince2001; }
};

/// Field codec: ISO 8601 text.
struct Iso8601 {
    static Decoded<Instant> decode(const QJsonValue& value);
    static QJsonValue encode(const Instant& value) { return value.toIso8601(); }
};

// ---- collections

template <typename T>
struct Codec<QList<T>> {
    static Decoded<QList<T>> decode(const QJsonValue& value) {
        if (!value.isArray())
            return expected("an array");
        const QJsonArray array = value.toArray();
        QList<T> result;
        result.reserve(array.size());
        for (qsizetype i = 0; i < array.size(); ++i) {
            auto element = json::decode<T>(array.at(i));
            if (!element)
                return std::unexpected(
                    std::move(element.error()).within(QStringLiteral("[%1]").arg(i)));
            result.append(*std::move(element));
        }
        return result;
    }
    static QJsonValue encode(const QList<T>& list) {
        QJsonArray array;
        for (const T& element : list)
            array.append(json::encode(element));
        return array;
    }
};

/// An object with arbitrary keys.
template <typename T>
struct Codec<QMap<QString, T>> {
    static Decoded<QMap<QString, T>> decode(const QJsonValue& value) {
        if (!value.isObject())
            return expected("an object");
        const QJsonObject object = value.toObject();
        QMap<QString, T> result;
        for (auto it = object.begin(); it != object.end(); ++it) {
            auto element = json::decode<T>(it.value());
            if (!element)
                return std::unexpected(std::move(element.error()).within(it.key()));
            result.insert(it.key(), *std::move(element));
        }
        return result;
    }
    static QJsonValue encode(const QMap<QString, T>& map) {
        QJsonObject object;
        for (auto it = map.begin(); it != map.end(); ++it)
            object.insert(it.key(), json::encode(it.value()));
        return object;
    }
};

// ---- enumerations: raw values in declaration order

/// Specialize with `static constexpr std::array values{std::pair{E::a, "a"}, …}`.
template <typename E>
struct RawValues;

namespace detail {

template <auto value>
consteval std::string_view enumeratorName() {
    // One compiler gives "… [with auto value = tessellar::Kind::name; …]", the other "… [value = …]".
    std::string_view text = std::source_location::current().function_name();
    text.remove_prefix(text.rfind("value = ") + 8);
    text = text.substr(0, text.find_first_of(";]"));
    return text.substr(text.rfind(':') + 1);
}

template <auto value>
inline constexpr auto enumeratorText = [] {
    std::array<char, enumeratorName<value>().size() + 1> text{};
    std::ranges::copy(enumeratorName<value>(), text.begin());
    return text;
}();

} // namespace detail

/// Raw values equal to the enumerators' names, for an enumeration numbered from 0 to `last`: `template
/// <> struct RawValues<E> : EnumeratorNames<E::last> {};`
template <auto last>
struct EnumeratorNames {
    using E = decltype(last);
    static constexpr auto values = []<std::size_t... I>(std::index_sequence<I...>) {
        return std::array{std::pair{E(I), detail::enumeratorText<E(I)>.data()}...};
    }
    (std::make_index_sequence<static_cast<std::size_t>(last) + 1>());
};

template <typename E>
concept HasRawValues = std::is_enum_v<E> && requires {
    RawValues<E>::values;
};

template <HasRawValues E>
QString rawValue(E value) {
    for (const auto& [candidate, text] : RawValues<E>::values)
        if (candidate == value)
            return QString::fromLatin1(text);
    return {};
}

template <HasRawValues E>
std::optional<E> fromRawValue(QStringView text) {
    for (const auto& [candidate, raw] : RawValues<E>::values)
        if (text == QLatin1StringView(raw))
            return candidate;
    return std::nullopt;
}

template <HasRawValues E>
struct Codec<E> {
    static Decoded<E> decode(const QJsonValue& value) {
        if (!value.isString())
            return expected("a string");
        if (const auto found = fromRawValue<E>(value.toString()))
            return *found;
        return fail(QStringLiteral("Unknown value “%1”.").arg(value.toString().left(80)));
    }
    static QJsonValue encode(E value) { return rawValue(value); }
};

// ---- records

enum class Presence {
    required,  ///< a missing key is an error
    optional,  ///< a std::optional; missing or null decodes to nullopt, which is not encoded
    defaulted, ///< missing or null leaves the member's default
};

template <Presence P, typename C, typename Owner, typename Member>
struct Field {
    static constexpr Presence presence = P;
    using Coding = C;
    const char* key;
    Member Owner::*member;
};

/// `required<Iso8601>("at", &T::at)` overrides the member's codec.
template <typename C = void, typename Owner, typename Member>
constexpr auto required(const char* key, Member Owner::*member) {
    using Coding = std::conditional_t<std::is_void_v<C>, Codec<Member>, C>;
    return Field<Presence::required, Coding, Owner, Member>{key, member};
}
template <typename C = void, typename Owner, typename Member>
constexpr auto optional(const char* key, std::optional<Member> Owner::*member) {
    using Coding = std::conditional_t<std::is_void_v<C>, Codec<Member>, C>;
    return Field<Presence::optional, Coding, Owner, std::optional<Member>>{key, member};
}
template <typename C = void, typename Owner, typename Member>
constexpr auto defaulted(const char* key, Member Owner::*member) {
    using Coding = std::conditional_t<std::is_void_v<C>, Codec<Member>, C>;
    return Field<Presence::defaulted, Coding, Owner, Member>{key, member};
}

/// A list of fields, which calls its argument with all of them. Not a std::tuple: checking its
/// constructibility took the compiler 3 s in each source that included a table.
template <typename... F>
constexpr auto fields(F... field) {
    return [=](auto&& call) { return call(field...); };
}

/// Specialize with `static constexpr auto list = fields(required(…), …)`.
template <typename T>
struct Fields;

template <typename T>
concept HasFields = requires {
    Fields<T>::list;
};

namespace detail {

template <typename T, typename F>
bool decodeField(const QJsonObject& object, const F& field, T& result,
                 std::optional<DecodeError>& error) {
    const QLatin1StringView key(field.key);
    const QJsonValue value = object.value(key);
    if constexpr (F::presence == Presence::required) {
        if (value.isUndefined()) {
            error = DecodeError{key, QStringLiteral("Missing key.")};
            return false;
        }
    } else if (value.isUndefined() || value.isNull()) {
        return true;
    }
    auto decoded = F::Coding::decode(value);
    if (!decoded) {
        error = std::move(decoded.error()).within(key);
        return false;
    }
    result.*field.member = *std::move(decoded);
    return true;
}

template <typename T, typename F>
void encodeField(QJsonObject& object, const F& field, const T& record) {
    if constexpr (F::presence == Presence::optional) {
        if (const auto& member = record.*field.member)
            object.insert(QLatin1StringView(field.key), F::Coding::encode(*member));
    } else {
        object.insert(QLatin1StringView(field.key), F::Coding::encode(record.*field.member));
    }
}

} // namespace detail

/// For codecs that do more than their field list.
template <typename T, typename List>
Decoded<T> decodeRecord(const QJsonValue& value, const List& list) {
    if (!value.isObject())
        return expected("an object");
    const QJsonObject object = value.toObject();
    T result{};
    std::optional<DecodeError> error;
    list([&](const auto&... field) {
        (void)(detail::decodeField(object, field, result, error) && ...);
    });
    if (error)
        return std::unexpected(*std::move(error));
    return result;
}

template <typename T, typename List>
QJsonValue encodeRecord(const T& record, const List& list) {
    QJsonObject object;
    list([&](const auto&... field) { (void)(detail::encodeField(object, field, record), ...); });
    return object;
}

template <HasFields T>
struct Codec<T> {
    static Decoded<T> decode(const QJsonValue& value) {
        return decodeRecord<T>(value, Fields<T>::list);
    }
    static QJsonValue encode(const T& record) { return encodeRecord(record, Fields<T>::list); }
};

} // namespace tessellar::json
