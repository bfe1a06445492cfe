#include "smartfolders/smart_folder_definition.h"

#include "platform/text.h"

namespace tessellar {

namespace {

template <typename... Calls>
struct Overloaded : Calls... {
    using Calls::operator()...;
};

bool isBlank(const QString& text) { return trimmed(text).isEmpty(); }

// One answer for each case of a predicate, whatever kind of rule has it.
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
    {"Installed This Week",
     "calendar.badge.plus",
     SmartFolderMatchMode::all,
     [] {
         return QList<SmartFolderRule>{
             SmartFolderDateRule{{}, "installedDate", predicate::IsThisWeek()}};
     },
     {"installedDate", descending}},
    {"Microsoft Apps",
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
    {"Recently Used",
     "clock.fill",
     SmartFolderMatchMode::all,
     [] {
         return QList<SmartFolderRule>{SmartFolderDateRule{
             {}, "lastUsedDate", predicate::IsWithinLast(7, SmartFolderRelativeDateUnit::days)}};
     },
     {"lastUsedDate", descending}},
    {"Updates Available",
     "arrow.down.circle.fill",
     SmartFolderMatchMode::all,
     [] {
         return QList<SmartFolderRule>{SmartFolderChoiceRule{
             {}, "updateStatus", predicate::IsValue<QString>(QStringLiteral("updateAvailable"))}};
     },
     {"name", ascending}},
    {"Games",
     "gamecontroller.fill",
     SmartFolderMatchMode::all,
     [] {
         return QList<SmartFolderRule>{
             SmartFolderTextRule{{}, "category", predicate::Contains(QStringLiteral("games"))}};
     },
     {"name", ascending}},
    {"Mac App Store Apps",
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

QUuid ruleID(const SmartFolderRule& rule) {
    return std::visit([](const auto& r) { return r.id; }, rule);
}

bool isComplete(const SmartFolderRule& rule) {
    return std::visit([](const auto& r) { return std::visit(completeness, r.predicate); }, rule);
}

QList<SmartFolderValidationIssue> validationIssues(const SmartFolderDefinition& definition) {
    QList<SmartFolderValidationIssue> issues;
    if (isBlank(definition.name))
        issues.append(validation::EmptyName());
    if (definition.rules.isEmpty())
        issues.append(validation::NoRules());
    for (const SmartFolderRule& rule : definition.rules)
        if (!isComplete(rule))
            issues.append(validation::InvalidRule{ruleID(rule)});
    if (const auto limit = definition.resultLimit;
        limit && (*limit < SmartFolderDefinition::minimumResultLimit ||
                  *limit > SmartFolderDefinition::maximumResultLimit))
        issues.append(validation::ResultLimitOutOfRange());
    return issues;
}

QString message(const SmartFolderValidationIssue& issue) {
    // In the order of the cases.
    static constexpr std::array texts{"Complete every rule.", "Enter a name.", "Add at least one rule.",
                                      "Choose a limit from 1 to 500."};
    return QLatin1StringView(texts[issue.index()]);
}

QString templateName(SmartFolderTemplate which) { return QLatin1StringView(row(which).name); }

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
        std::visit([&](auto& r) { r.id = uuids.next(); }, rule);
    return definition;
}

QSet<SmartFolderInspection> inspectionsNeeded(const QList<SmartFolderDefinition>& definitions) {
    QSet<SmartFolderInspection> needed;
    for (const SmartFolderDefinition& definition : definitions) {
        needed.insert(std::visit([](auto source) { return source.row().needs; },
                                 definition.sort.field.row().source));
        for (const SmartFolderRule& rule : definition.rules)
            needed.insert(std::visit([](const auto& r) { return r.field.row().needs; }, rule));
    }
    needed.remove(SmartFolderInspection::none);
    return needed;
}

} // namespace tessellar
