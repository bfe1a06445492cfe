#include "smartfolders/smart_folder_rule.h"

#include "platform/text.h"

namespace tessellar {

namespace {

template <typename... Calls>
struct Overloaded : Calls... {
    using Calls::operator()...;
};

bool isBlank(const QString& text) { return trimmed(text).isEmpty(); }

// One answer for each case of a predicate, whatever kind of rule contains it.
const Overloaded completeness{
    [](const predicate::IsAnyOf& p) {
        return !p.value().isEmpty() && std::ranges::none_of(p.value(), isBlank);
    },
    [](const predicate::IsBetween<double>& p) { return p.value<0>() <= p.value<1>(); },
    [](const predicate::IsBetween<Instant>& p) { return p.value<0>() <= p.value<1>(); },
    [](const predicate::IsBetween<QString>& p) {
        const QString low = trimmed(p.value<0>());
        const QString high = trimmed(p.value<1>());
        return !low.isEmpty() && !high.isEmpty() && compareNumeric(low, high) <= 0;
    },
    [](const predicate::IsWithinLast& p) { return p.value<0>() > 0; },
    []<json::Name name>(const json::Case<name, QString>& p) { return !isBlank(p.value()); },
    [](const auto&) { return true; },
};

} // namespace

QUuid SmartFolderRule::id() const {
    return std::visit([](const auto& rule) { return rule.id; }, value());
}

SmartFolderRule SmartFolderRule::withID(const QUuid& id) const {
    return changed(*this, [&](auto& rule) { rule.id = id; });
}

QString SmartFolderRule::fieldName() const {
    return std::visit([](const auto& rule) { return rule.field.rawValue(); }, value());
}

SmartFolderNeeds SmartFolderRule::needs() const {
    return std::visit([](const auto& rule) { return rule.field.row().needs; }, value());
}

bool SmartFolderRule::isComplete() const {
    return std::visit([](const auto& rule) { return std::visit(completeness, rule.predicate); },
                      value());
}

bool SmartFolderRule::operator==(const SmartFolderRule& other) const {
    return _value == other._value || *_value == *other._value;
}

namespace json {

template <typename Kind>
struct Fields<SmartFolderRuleOf<Kind>> {
    using R = SmartFolderRuleOf<Kind>;
    static constexpr auto list = fields(required("id", &R::id), required("field", &R::field),
                                        required("predicate", &R::predicate));
};
template <>
struct Cases<SmartFolderAnyRule::variant> {
    static constexpr std::array names{"text", "choice", "number", "version", "date", "boolean"};
    static constexpr bool strict = true;
};

Decoded<SmartFolderRule> Codec<SmartFolderRule>::decode(const QJsonValue& value) {
    auto any = json::decode<SmartFolderAnyRule::variant>(value);
    if (!any)
        return std::unexpected(std::move(any.error()));
    return std::visit([](auto& rule) { return SmartFolderRule(std::move(rule)); }, *any);
}

QJsonValue Codec<SmartFolderRule>::encode(const SmartFolderRule& rule) {
    return json::encode<SmartFolderAnyRule::variant>(rule.value());
}

} // namespace json
} // namespace tessellar
