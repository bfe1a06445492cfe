#pragma once

#include "model/json.h"

#include <array>
#include <span>
#include <tuple>
#include <variant>

/// JSON of tagged unions: a one-key object named by the case.
namespace tessellar::json {

/// Specialize for a std::variant with `static constexpr std::array<const char*, N> names{…}`, one name
/// per alternative, in order. The payload is encoded with its own codec.
template <typename V>
struct Cases;

template <typename V>
concept HasCases = requires {
    Cases<V>::names;
};

/// With `static constexpr bool strict = true` in its `Cases`, decoding fails on additional keys;
/// otherwise they are ignored.
template <typename V>
concept IsStrict = requires {
    requires Cases<V>::strict;
};

/// The index of the one case named in an object.
Decoded<std::size_t> decodeCase(const QJsonObject& object, std::span<const char* const> names,
                                bool strict = false);

template <HasCases V>
struct Codec<V> {
    static Decoded<V> decode(const QJsonValue& value) {
        if (!value.isObject())
            return expected("an object");
        const QJsonObject object = value.toObject();
        const auto index = decodeCase(object, Cases<V>::names, IsStrict<V>);
        if (!index)
            return std::unexpected(index.error());
        return decodeAt(*index, object.value(QLatin1StringView(Cases<V>::names[*index])),
                        std::make_index_sequence<std::variant_size_v<V>>());
    }

    static QJsonValue encode(const V& value) {
        QJsonObject object;
        object.insert(QLatin1StringView(Cases<V>::names[value.index()]),
                      std::visit([](const auto& payload) { return json::encode(payload); }, value));
        return object;
    }

private:
    template <std::size_t... I>
    static Decoded<V> decodeAt(std::size_t index, const QJsonValue& payload,
                               std::index_sequence<I...>) {
        Decoded<V> result = expected("a known case");
        (void)((index == I && (assign<I>(result, payload), true)) || ...);
        return result;
    }
    template <std::size_t I>
    static void assign(Decoded<V>& result, const QJsonValue& payload) {
        auto decoded = json::decode<std::variant_alternative_t<I, V>>(payload);
        if (decoded)
            result = V(std::in_place_index<I>, *std::move(decoded));
        else
            result = std::unexpected(
                std::move(decoded.error()).within(QLatin1StringView(Cases<V>::names[I])));
    }
};

/// A string as a template parameter.
template <std::size_t N>
struct Name {
    char text[N];
    consteval Name(const char (&name)[N]) { std::copy_n(name, N, text); }
};

/// One case of a tagged union, declared by its JSON: `Case<"isBetween", double, double>` is
/// {"isBetween": {"_0": 1, "_1": 2}}; a case without values has an empty object. A std::variant of such
/// cases needs no further declaration and is strict.
template <Name name, typename... Values>
struct Case {
    static constexpr const char* key = name.text;
    std::tuple<Values...> values;

    Case() = default;
    Case(Values... carried) requires(sizeof...(Values) > 0) : values(std::move(carried)...) {}

    template <std::size_t I = 0>
    const auto& value() const {
        return std::get<I>(values);
    }
    bool operator==(const Case&) const = default;
};

template <typename T>
inline constexpr bool isCase = false;
template <Name name, typename... Values>
inline constexpr bool isCase<Case<name, Values...>> = true;

template <typename... C>
requires(isCase<C>&&...) struct Cases<std::variant<C...>> {
    static constexpr std::array<const char*, sizeof...(C)> names{C::key...};
    static constexpr bool strict = true;
};

/// The keys of a tagged union's cases, in order.
template <HasCases V>
constexpr std::span<const char* const> caseNames() {
    return Cases<V>::names;
}

template <Name name, typename... Values>
struct Codec<Case<name, Values...>> {
    using T = Case<name, Values...>;
    static Decoded<T> decode(const QJsonValue& value) {
        if (!value.isObject())
            return expected("an object");
        const QJsonObject object = value.toObject();
        T result;
        std::optional<DecodeError> error;
        visit([&]<std::size_t I>(const QString& key) {
            const QJsonValue carried = object.value(key);
            auto decoded = carried.isUndefined()
                               ? Decoded<std::tuple_element_t<I, std::tuple<Values...>>>(
                                     fail(QStringLiteral("Missing key.")))
                               : json::decode<std::tuple_element_t<I, std::tuple<Values...>>>(carried);
            if (decoded)
                std::get<I>(result.values) = *std::move(decoded);
            else
                error = std::move(decoded.error()).within(key);
            return !error;
        });
        if (error)
            return std::unexpected(*std::move(error));
        return result;
    }
    static QJsonValue encode(const T& value) {
        QJsonObject object;
        visit([&]<std::size_t I>(const QString& key) {
            object.insert(key, json::encode(std::get<I>(value.values)));
            return true;
        });
        return object;
    }

private:
    /// Calls `call.operator()<I>("_I")` for each value until it returns false.
    template <typename Call>
    static void visit(Call call) {
        [&]<std::size_t... I>(std::index_sequence<I...>) {
            (void)(call.template operator()<I>(QStringLiteral("_%1").arg(I)) && ...);
        }
        (std::index_sequence_for<Values...>());
    }
};

} // namespace tessellar::json
