#include "smartfolders/smart_folder_definition.h"

#include "platform/text.h"
#include "platform/texts.h"
#include "smartfolders/smart_folder_rule.h"

namespace tessellar {

namespace {

bool isBlank(const QString& text) { return trimmed(text).isEmpty(); }

struct TemplateRow {
    const char* name;
    const char* symbol;
    SmartFolderMatchMode matchMode;
    QList<SmartFolderRule> (*rules)();
    SmartFolderSortDescriptor sort;
};

using enum SmartFolderSortDirection;

// In the order of SmartFolderTemplate. The rules' identifiers are filled in later.
const std::array templates = std::to_array<TemplateRow>({
    {Texts::noop("Installed This Week"),
     "calendar.badge.plus",
     SmartFolderMatchMode::all,
     [] {
         return QList<SmartFolderRule>{
             SmartFolderDateRule{{}, "installedDate", predicate::IsThisWeek()}};
     },
     {"installedDate", descending}},
    {Texts::noop("Microsoft Apps"),
     "square.grid.2x2.fill",
     SmartFolderMatchMode::any,
     [] {
         const QString vendor = QStringLiteral("Microsoft");
         return QList<SmartFolderRule>{
             SmartFolderTextRule{{}, "developer", predicate::Contains(vendor)},
             SmartFolderTextRule{{}, "publisher", predicate::Contains(vendor)},
             SmartFolderTextRule{
                 {}, "bundleIdentifier", predicate::BeginsWith(QStringLiteral("com.microsoft"))}};
     },
     {"name", ascending}},
    {Texts::noop("Recently Used"),
     "clock.fill",
     SmartFolderMatchMode::all,
     [] {
         return QList<SmartFolderRule>{SmartFolderDateRule{
             {}, "lastUsedDate", predicate::IsWithinLast(7, SmartFolderRelativeDateUnit::days)}};
     },
     {"lastUsedDate", descending}},
    {Texts::noop("Updates Available"),
     "arrow.down.circle.fill",
     SmartFolderMatchMode::all,
     [] {
         return QList<SmartFolderRule>{SmartFolderChoiceRule{
             {}, "updateStatus", predicate::IsValue<QString>(QStringLiteral("updateAvailable"))}};
     },
     {"name", ascending}},
    {Texts::noop("Games"),
     "gamecontroller.fill",
     SmartFolderMatchMode::all,
     [] {
         return QList<SmartFolderRule>{
             SmartFolderTextRule{{}, "category", predicate::Contains(QStringLiteral("games"))}};
     },
     {"name", ascending}},
    {Texts::noop("Mac App Store Apps"),
     "apple.logo",
     SmartFolderMatchMode::all,
     [] {
         return QList<SmartFolderRule>{SmartFolderChoiceRule{
             {}, "installSource", predicate::IsValue<QString>(QStringLiteral("macAppStore"))}};
     },
     {"name", ascending}},
});

const TemplateRow& row(SmartFolderTemplate which) {
    return templates.at(static_cast<std::size_t>(which));
}

} // namespace

bool SmartFolderDefinition::operator==(const SmartFolderDefinition&) const = default;

QList<SmartFolderValidationIssue> validationIssues(const SmartFolderDefinition& definition) {
    QList<SmartFolderValidationIssue> issues;
    if (isBlank(definition.name))
        issues.append(validation::EmptyName());
    if (definition.rules.isEmpty())
        issues.append(validation::NoRules());
    for (const SmartFolderRule& rule : definition.rules)
        if (!rule.isComplete())
            issues.append(validation::InvalidRule{rule.id()});
    if (const auto limit = definition.resultLimit;
        limit && (*limit < SmartFolderDefinition::minimumResultLimit ||
                  *limit > SmartFolderDefinition::maximumResultLimit))
        issues.append(validation::ResultLimitOutOfRange());
    return issues;
}

QString message(const SmartFolderValidationIssue& issue) {
    // In the order of the cases.
    static constexpr std::array texts{Texts::noop("Complete every rule."), Texts::noop("Enter a name."),
                                      Texts::noop("Add at least one rule."),
                                      Texts::noop("Choose a limit from 1 to 500.")};
    return Texts::tr(texts[issue.index()]);
}

QString templateName(SmartFolderTemplate which) { return Texts::tr(row(which).name); }

SmartFolderDefinition templateDefinition(SmartFolderTemplate which, const QUuid& id, Instant modifiedAt,
                                         UuidSource& uuids) {
    const TemplateRow& from = row(which);
    SmartFolderDefinition definition{
        .id = id,
        .name = templateName(which),
        .customSymbolName = QLatin1StringView(from.symbol),
        .modifiedAt = modifiedAt,
        .matchMode = from.matchMode,
        .rules = from.rules(),
        .sort = from.sort,
        .resultLimit = {},
    };
    for (SmartFolderRule& rule : definition.rules)
        rule = rule.withID(uuids.next());
    return definition;
}

SmartFolderDefinition withOwnIdentifiers(SmartFolderDefinition definition,
                                         const QList<SmartFolderDefinition>& others,
                                         UuidSource& uuids) {
    QSet<QUuid> definitions;
    QSet<QUuid> rules;
    for (const SmartFolderDefinition& other : others) {
        definitions.insert(other.id);
        for (const SmartFolderRule& rule : other.rules)
            rules.insert(rule.id());
    }
    if (definitions.contains(definition.id))
        definition.id = uuids.next();
    for (SmartFolderRule& rule : definition.rules) {
        if (rules.contains(rule.id()))
            rule = rule.withID(uuids.next());
        rules.insert(rule.id());
    }
    return definition;
}

SmartFolderNeeds needsOf(const QList<SmartFolderDefinition>& definitions) {
    SmartFolderNeeds needs;
    for (const SmartFolderDefinition& definition : definitions) {
        needs |= std::visit([](auto source) { return source.row().needs; },
                            definition.sort.field.row().source);
        for (const SmartFolderRule& rule : definition.rules)
            needs |= rule.needs();
    }
    return needs;
}

SmartFolderNeeds allNeeds() {
    SmartFolderNeeds needs;
    const auto add = [&]<typename... Rule>(const std::variant<Rule...>*) {
        const auto addKind = [&]<typename Kind>(const SmartFolderRuleOf<Kind>*) {
            for (const auto& row : Kind::fields)
                needs |= row.needs;
        };
        (addKind(static_cast<const Rule*>(nullptr)), ...);
    };
    add(static_cast<const SmartFolderAnyRule::variant*>(nullptr));
    return needs;
}

namespace json {

template <>
struct Fields<SmartFolderSortDescriptor> {
    using S = SmartFolderSortDescriptor;
    static constexpr auto list =
        fields(required("field", &S::field), required("direction", &S::direction));
};

using D = SmartFolderDefinition;

static constexpr auto list =
    fields(required("id", &D::id), required("name", &D::name),
           optional("customSymbolName", &D::customSymbolName), required("modifiedAt", &D::modifiedAt),
           required("matchMode", &D::matchMode), required("rules", &D::rules),
           required("sort", &D::sort), optional("resultLimit", &D::resultLimit));

Decoded<D> Codec<D>::decode(const QJsonValue& value) { return decodeRecord<D>(value, list); }
QJsonValue Codec<D>::encode(const D& definition) { return encodeRecord(definition, list); }

} // namespace json
} // namespace tessellar
