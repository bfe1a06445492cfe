#pragma once

#include "model/json.h"
#include "platform/uuid_source.h"
#include "smartfolders/smart_folder_field.h"
#include "smartfolders/smart_folder_needs.h"
#include "smartfolders/smart_folder_vocabulary.h"

#include <QSet>

#include <memory>

namespace tessellar {

struct SmartFolderSortKind;
using SmartFolderSortField = SmartFolderField<SmartFolderSortKind>;

template <typename Kind>
struct SmartFolderRuleOf;
struct SmartFolderAnyRule;

/// One condition of a definition. Copies share it. Enough to store, compare or save rules; kinds,
/// fields and predicates are in smart_folder_rule.h.
class SmartFolderRule {
public:
    template <typename Kind>
    SmartFolderRule(SmartFolderRuleOf<Kind> rule);

    const SmartFolderAnyRule& value() const { return *_value; }
    QUuid id() const;
    SmartFolderRule withID(const QUuid& id) const;
    QString fieldName() const;
    SmartFolderNeeds needs() const;
    /// True if all of the predicate's values are usable; otherwise the rule still needs input.
    bool isComplete() const;

    bool operator==(const SmartFolderRule& other) const;

private:
    std::shared_ptr<const SmartFolderAnyRule> _value;
};

struct SmartFolderSortDescriptor {
    SmartFolderSortField field;
    SmartFolderSortDirection direction = SmartFolderSortDirection::ascending;

    bool operator==(const SmartFolderSortDescriptor&) const = default;
};

/// A saved smart folder: which applications it shows, in which order. Tiles refer to its `id`.
struct SmartFolderDefinition {
    static constexpr qint64 minimumResultLimit = 1;
    static constexpr qint64 maximumResultLimit = 500;

    QUuid id;
    QString name; ///< as typed; invalid if blank
    std::optional<QString> customSymbolName;
    Instant modifiedAt;
    SmartFolderMatchMode matchMode = SmartFolderMatchMode::all;
    QList<SmartFolderRule> rules; ///< in the user's order
    SmartFolderSortDescriptor sort;
    std::optional<qint64> resultLimit; ///< maximum number of applications shown

    bool operator==(const SmartFolderDefinition&) const;
};

/// Hashes the identity, which equal values share.
inline std::size_t qHash(const SmartFolderDefinition& definition, std::size_t seed = 0) {
    return qHash(definition.id, seed);
}

/// Why a definition must not be saved; at most one of each except `InvalidRule`.
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

/// In order: name, presence of rules, each rule, result limit. Empty if the definition is valid.
QList<SmartFolderValidationIssue> validationIssues(const SmartFolderDefinition& definition);
/// The editor's message; it shows the first issue only.
QString message(const SmartFolderValidationIssue& issue);

/// A new definition from a template; its rules' identifiers are from `uuids`.
SmartFolderDefinition templateDefinition(SmartFolderTemplate which, const QUuid& id, Instant modifiedAt,
                                         UuidSource& uuids);
QString templateName(SmartFolderTemplate which);

/// The definition with new identifiers wherever its own, or a rule's, is already used in `others`.
SmartFolderDefinition withOwnIdentifiers(SmartFolderDefinition definition,
                                         const QList<SmartFolderDefinition>& others, UuidSource& uuids);

/// What must be gathered to decide the rules and sort orders of these definitions.
SmartFolderNeeds needsOf(const QList<SmartFolderDefinition>& definitions);
/// The needs of all facts.
SmartFolderNeeds allNeeds();

template <>
struct json::Codec<SmartFolderRule> {
    static Decoded<SmartFolderRule> decode(const QJsonValue& value);
    static QJsonValue encode(const SmartFolderRule& rule);
};
/// Strict: no defaults, and any unknown value is an error.
template <>
struct json::Codec<SmartFolderDefinition> {
    static Decoded<SmartFolderDefinition> decode(const QJsonValue& value);
    static QJsonValue encode(const SmartFolderDefinition& definition);
};

} // namespace tessellar
