#pragma once

#include "smartfolders/smart_folder_definition.h"
#include "smartfolders/smart_folder_fields.h"

namespace tessellar {

/// A rule of one kind: a field and a predicate. The identifier is unique across definitions.
template <typename K>
struct SmartFolderRuleOf {
    using Kind = K;
    QUuid id;
    SmartFolderField<Kind> field;
    typename Kind::Predicate predicate;

    bool operator==(const SmartFolderRuleOf&) const = default;
};

using SmartFolderTextRule = SmartFolderRuleOf<SmartFolderTextKind>;
using SmartFolderChoiceRule = SmartFolderRuleOf<SmartFolderChoiceKind>;
using SmartFolderNumberRule = SmartFolderRuleOf<SmartFolderNumberKind>;
using SmartFolderVersionRule = SmartFolderRuleOf<SmartFolderVersionKind>;
using SmartFolderDateRule = SmartFolderRuleOf<SmartFolderDateKind>;
using SmartFolderBooleanRule = SmartFolderRuleOf<SmartFolderBooleanKind>;

/// The contents of a `SmartFolderRule`.
struct SmartFolderAnyRule
    : std::variant<SmartFolderTextRule, SmartFolderChoiceRule, SmartFolderNumberRule,
                   SmartFolderVersionRule, SmartFolderDateRule, SmartFolderBooleanRule> {
    using variant::variant;
};

template <typename Kind>
SmartFolderRule::SmartFolderRule(SmartFolderRuleOf<Kind> rule)
    : _value(std::make_shared<const SmartFolderAnyRule>(std::move(rule))) {}

/// A copy of the rule, modified by `change`.
template <typename Change>
SmartFolderRule changed(const SmartFolderRule& rule, Change change) {
    return std::visit(
        [&](auto one) {
            change(one);
            return SmartFolderRule(std::move(one));
        },
        rule.value());
}

} // namespace tessellar
