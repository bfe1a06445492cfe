#pragma once

#include "platform/uuid_source.h"
#include "smartfolders/smart_folder_fields.h"

#include <QSet>

namespace tessellar {

/// One condition: a field and what is asked of it. The identifier is unique among all definitions.
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

using SmartFolderRule =
    std::variant<SmartFolderTextRule, SmartFolderChoiceRule, SmartFolderNumberRule,
                 SmartFolderVersionRule, SmartFolderDateRule, SmartFolderBooleanRule>;

QUuid ruleID(const SmartFolderRule& rule);
/// True when the predicate's values can be used; a rule that is not complete still needs input.
bool isComplete(const SmartFolderRule& rule);

struct SmartFolderSortDescriptor {
    SmartFolderSortField field;
    SmartFolderSortDirection direction = SmartFolderSortDirection::ascending;

    bool operator==(const SmartFolderSortDescriptor&) const = default;
};

/// A saved smart folder: which applications it shows, in which order. Tiles refer to it by its `id`.
struct SmartFolderDefinition {
    static constexpr qint64 minimumResultLimit = 1;
    static constexpr qint64 maximumResultLimit = 500;

    QUuid id;
    QString name; ///< as typed; white space alone is no name
    std::optional<QString> customSymbolName;
    Instant modifiedAt;
    SmartFolderMatchMode matchMode = SmartFolderMatchMode::all;
    QList<SmartFolderRule> rules; ///< in the user's order
    SmartFolderSortDescriptor sort;
    std::optional<qint64> resultLimit; ///< shows at most so many

    bool operator==(const SmartFolderDefinition&) const = default;
};

/// By identity, which equal values share.
inline std::size_t qHash(const SmartFolderDefinition& definition, std::size_t seed = 0) {
    return qHash(definition.id, seed);
}

/// Why a definition may not be saved; at most one of each but `InvalidRule`.
namespace validation {
struct InvalidRule {
    QUuid ruleID;
    bool operator==(const InvalidRule&) const = default;
};
struct EmptyName {
    bool operator==(const EmptyName&) const = default;
};
struct NoRules {
    bool operator==(const NoRules&) const = default;
};
struct ResultLimitOutOfRange {
    bool operator==(const ResultLimitOutOfRange&) const = default;
};
} // namespace validation

using SmartFolderValidationIssue = std::variant<validation::InvalidRule, validation::EmptyName,
                                                validation::NoRules, validation::ResultLimitOutOfRange>;

/// Name, presence of rules, each rule in order, result limit; empty when the definition may be saved.
QList<SmartFolderValidationIssue> validationIssues(const SmartFolderDefinition& definition);
/// What the editor says of an issue; it shows the first one.
QString message(const SmartFolderValidationIssue& issue);

/// A fresh definition from a template; its rules get identifiers from `uuids`.
SmartFolderDefinition templateDefinition(SmartFolderTemplate which, const QUuid& id, Instant modifiedAt,
                                         UuidSource& uuids);
QString templateName(SmartFolderTemplate which);

/// What has to be inspected before the rules and sorts of these definitions can be decided.
QSet<SmartFolderInspection> inspectionsNeeded(const QList<SmartFolderDefinition>& definitions);

namespace json {

template <typename Kind>
struct Fields<SmartFolderRuleOf<Kind>> {
    using R = SmartFolderRuleOf<Kind>;
    static constexpr auto list = fields(required("id", &R::id), required("field", &R::field),
                                        required("predicate", &R::predicate));
};
template <>
struct Cases<SmartFolderRule> {
    static constexpr std::array names{"text", "choice", "number", "version", "date", "boolean"};
    static constexpr bool strict = true;
};
template <>
struct Fields<SmartFolderSortDescriptor> {
    using S = SmartFolderSortDescriptor;
    static constexpr auto list =
        fields(required("field", &S::field), required("direction", &S::direction));
};
/// Strict: there are no defaults, and one unknown word refuses the whole definition.
template <>
struct Fields<SmartFolderDefinition> {
    using D = SmartFolderDefinition;
    static constexpr auto list = fields(
        required("id", &D::id), required("name", &D::name),
        optional("customSymbolName", &D::customSymbolName), required("modifiedAt", &D::modifiedAt),
        required("matchMode", &D::matchMode), required("rules", &D::rules), required("sort", &D::sort),
        optional("resultLimit", &D::resultLimit));
};

} // namespace json
} // namespace tessellar
