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

/// One condition of a definition. Copies share it. Who keeps, compares or saves rules needs no more
/// than this; their kinds, fields and predicates stand in smart_folder_rule.h.
class SmartFolderRule {
public:
    template <typename Kind>
    SmartFolderRule(SmartFolderRuleOf<Kind> rule);

    const SmartFolderAnyRule& value() const { return *_value; }
    QUuid id() const;
    SmartFolderRule withID(const QUuid& id) const;
    QString fieldName() const;
    SmartFolderNeeds needs() const;
    /// True when the predicate's values can be used; a rule that is not complete still needs input.
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

    bool operator==(const SmartFolderDefinition&) const;
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

/// The definition to add beside others: identifiers that one of them has, its own or a rule's, are
/// exchanged for fresh ones.
SmartFolderDefinition withOwnIdentifiers(SmartFolderDefinition definition,
                                         const QList<SmartFolderDefinition>& others, UuidSource& uuids);

/// What has to be gathered before the rules and sorts of these definitions can be decided.
SmartFolderNeeds needsOf(const QList<SmartFolderDefinition>& definitions);
/// Every fact's needs.
SmartFolderNeeds allNeeds();

template <>
struct json::Codec<SmartFolderRule> {
    static Decoded<SmartFolderRule> decode(const QJsonValue& value);
    static QJsonValue encode(const SmartFolderRule& rule);
};
/// Strict: there are no defaults, and one unknown word refuses the whole definition.
template <>
struct json::Codec<SmartFolderDefinition> {
    static Decoded<SmartFolderDefinition> decode(const QJsonValue& value);
    static QJsonValue encode(const SmartFolderDefinition& definition);
};

} // namespace tessellar
