#pragma once

#include "smartfolders/smart_folder_app_facts.h"
#include "smartfolders/smart_folder_field.h"
#include "smartfolders/smart_folder_needs.h"
#include "smartfolders/smart_folder_predicates.h"

namespace tessellar {

class FileSystem;

/// The input for reading a field: an application's facts, and the machine for the one field that checks
/// whether a file exists.
struct SmartFolderSubject {
    const SmartFolderAppFacts& facts;
    const FileSystem& files;
};

/// One row of a table of fields: its name in files, how to read its fact, and what must be gathered
/// first. To add a field, add a row: nothing else refers to fields by name.
template <typename Fact>
struct SmartFolderFieldRow {
    const char* rawValue;
    std::optional<Fact> (*read)(const SmartFolderSubject&);
    SmartFolderNeeds needs = {};
    // For choices only.
    QStringList (*words)() = nullptr;           ///< offered by the editor
    int (*rank)(const QString& word) = nullptr; ///< used for sorting
    bool isOpen = false;                        ///< applications may have other words too
};

/// The sort rank of a choice: declaration order, except that update states needing attention come
/// first.
template <typename E>
constexpr int sortRank(E value) {
    return static_cast<int>(value);
}
template <>
constexpr int sortRank(SmartFolderUpdateState state) {
    using enum SmartFolderUpdateState;
    constexpr std::array order{updateAvailable, upToDate, failed, unsupported, notChecked};
    return static_cast<int>(std::ranges::find(order, state) - order.begin());
}

namespace detail {

using enum SmartFolderNeed;
using Subject = const SmartFolderSubject&;

template <auto member>
auto fact(Subject subject) {
    return subject.facts.*member;
}

/// The raw value, or list of raw values, of a choice's fact.
template <auto member>
std::optional<QStringList> choice(Subject subject) {
    const auto& value = subject.facts.*member;
    if constexpr (requires { value.begin(); }) {
        QStringList result;
        for (const auto element : value)
            result.append(json::rawValue(element));
        return result;
    } else {
        return value ? std::optional(QStringList{json::rawValue(*value)}) : std::nullopt;
    }
}

template <auto member>
QStringList words() {
    using Value = std::remove_cvref_t<decltype(std::declval<SmartFolderAppFacts>().*member)>;
    QStringList result;
    for (const auto& [value, word] : json::RawValues<typename Value::value_type>::values)
        result.append(QLatin1StringView(word));
    return result;
}

template <auto member>
int rank(const QString& word) {
    using Value = std::remove_cvref_t<decltype(std::declval<SmartFolderAppFacts>().*member)>;
    const auto value = json::fromRawValue<typename Value::value_type>(word);
    return value ? sortRank(*value) : 0;
}

template <auto member>
constexpr SmartFolderFieldRow<QStringList> choiceRow(const char* rawValue, SmartFolderNeeds needs) {
    return {rawValue, choice<member>, needs, words<member>, rank<member>};
}

} // namespace detail

struct SmartFolderTextKind {
    using Fact = QString;
    using Predicate = SmartFolderTextPredicate;
    using F = SmartFolderAppFacts;
    static constexpr std::array fields = std::to_array<SmartFolderFieldRow<Fact>>({
        {"displayName", [](detail::Subject s) { return std::optional(s.facts.entry.name); }},
        {"originalName", [](detail::Subject s) { return std::optional(s.facts.entry.originalName); }},
        {"bundleIdentifier", [](detail::Subject s) { return s.facts.entry.bundleIdentifier; }},
        {"developer", detail::fact<&F::developer>, detail::bundle | detail::signature},
        {"publisher", detail::fact<&F::publisher>, detail::bundle},
        {"signingTeamID", detail::fact<&F::signingTeamID>, detail::bundle | detail::signature},
        {"category", [](detail::Subject s) { return s.facts.entry.category; }},
        {"path", [](detail::Subject s) { return std::optional(s.facts.entry.path); }},
    });
};

struct SmartFolderChoiceKind {
    using Fact = QStringList;
    using Predicate = SmartFolderChoicePredicate;
    using F = SmartFolderAppFacts;
    static constexpr std::array fields =
        std::to_array<SmartFolderFieldRow<Fact>>({
            detail::choiceRow<&F::applicationLocation>("applicationLocation", {}),
            detail::choiceRow<&F::installSource>("installSource", detail::bundle),
            detail::choiceRow<&F::distributionChannel>("distributionChannel",
                                                       detail::bundle | detail::channels),
            detail::choiceRow<&F::platform>("platform", detail::bundle),
            // Executables may name anything; these words have been common on Macs.
            {"architecture", detail::fact<&F::architectures>, detail::bundle | detail::architectures,
             [] {
                 return QStringList{QStringLiteral("arm64"), QStringLiteral("x86_64"),
                                    QStringLiteral("i386"), QStringLiteral("ppc")};
             },
             nullptr, true},
            detail::choiceRow<&F::updateStatus>("updateStatus", detail::updates),
            detail::choiceRow<&F::declaredPermissions>("permission", detail::bundle),
        });
};

struct SmartFolderNumberKind {
    using Fact = double;
    using Predicate = SmartFolderNumberPredicate;
    static constexpr std::array fields = std::to_array<SmartFolderFieldRow<Fact>>({
        {"launchCount", [](detail::Subject s) -> std::optional<double> { return s.facts.launchCount; },
         detail::usage},
    });
};

struct SmartFolderVersionKind {
    using Fact = QString;
    using Predicate = SmartFolderVersionPredicate;
    using F = SmartFolderAppFacts;
    static constexpr std::array fields = std::to_array<SmartFolderFieldRow<Fact>>({
        {"version", detail::fact<&F::version>, detail::bundle},
        {"build", detail::fact<&F::build>, detail::bundle},
        {"minimumMacOSVersion", detail::fact<&F::minimumMacOSVersion>, detail::bundle},
    });
};

struct SmartFolderDateKind {
    using Fact = Instant;
    using Predicate = SmartFolderDatePredicate;
    using F = SmartFolderAppFacts;
    static constexpr std::array fields = std::to_array<SmartFolderFieldRow<Fact>>({
        {"installedDate", detail::fact<&F::installedDate>, detail::bundle},
        {"firstSeenDate", detail::fact<&F::firstSeenDate>, detail::usage},
        {"lastUsedDate", detail::fact<&F::lastUsedDate>, detail::usage},
    });
};

/// In "/System" or "/Library/Apple": part of the system, not removable.
bool isProtected(const AppEntry& entry);
/// Neither protected nor nested in another application; an entry of a legacy import must also exist.
bool isRemovable(const AppEntry& entry, const FileSystem& files);

struct SmartFolderBooleanKind {
    using Fact = bool;
    using Predicate = SmartFolderBooleanPredicate;
    using F = SmartFolderAppFacts;
    static constexpr std::array fields = std::to_array<SmartFolderFieldRow<Fact>>({
        {"isProtected", [](detail::Subject s) { return std::optional(isProtected(s.facts.entry)); }},
        {"isRemovable",
         [](detail::Subject s) { return std::optional(isRemovable(s.facts.entry, s.files)); }},
        {"isNestedInsideApplicationBundle",
         [](detail::Subject s) {
             return std::optional(isNestedInAnotherApplication(s.facts.entry.path));
         }},
        {"isNeverUsed", detail::fact<&F::isNeverUsed>, detail::usage},
        {"hasCustomName",
         [](detail::Subject s) {
             return std::optional(s.facts.entry.name != s.facts.entry.originalName);
         }},
        {"hasCustomIcon", detail::fact<&F::hasCustomIcon>, detail::icons},
    });
};

using SmartFolderTextField = SmartFolderField<SmartFolderTextKind>;
using SmartFolderChoiceField = SmartFolderField<SmartFolderChoiceKind>;
using SmartFolderNumberField = SmartFolderField<SmartFolderNumberKind>;
using SmartFolderVersionField = SmartFolderField<SmartFolderVersionKind>;
using SmartFolderDateField = SmartFolderField<SmartFolderDateKind>;
using SmartFolderBooleanField = SmartFolderField<SmartFolderBooleanKind>;

/// What a sort compares: a field of any kind except boolean. Texts compare loosely in the user's
/// language, versions numerically, numbers and dates by value, choices by rank.
using SmartFolderSortSource =
    std::variant<SmartFolderTextField, SmartFolderChoiceField, SmartFolderNumberField,
                 SmartFolderVersionField, SmartFolderDateField>;

struct SmartFolderSortRow {
    const char* rawValue;
    SmartFolderSortSource source;
};

struct SmartFolderSortKind {
    static constexpr std::array fields = std::to_array<SmartFolderSortRow>({
        {"name", SmartFolderTextField("displayName")},
        {"originalName", SmartFolderTextField("originalName")},
        {"developer", SmartFolderTextField("developer")},
        {"category", SmartFolderTextField("category")},
        {"installedDate", SmartFolderDateField("installedDate")},
        {"firstSeenDate", SmartFolderDateField("firstSeenDate")},
        {"lastUsedDate", SmartFolderDateField("lastUsedDate")},
        {"launchCount", SmartFolderNumberField("launchCount")},
        {"version", SmartFolderVersionField("version")},
        {"build", SmartFolderVersionField("build")},
        {"updateStatus", SmartFolderChoiceField("updateStatus")},
    });
};
using SmartFolderSortField = SmartFolderField<SmartFolderSortKind>;

namespace json {

template <typename Kind>
struct Codec<SmartFolderField<Kind>> {
    static Decoded<SmartFolderField<Kind>> decode(const QJsonValue& value) {
        if (!value.isString())
            return expected("a string");
        if (const auto field = SmartFolderField<Kind>::named(value.toString()))
            return *field;
        return fail(QStringLiteral("Unknown value “%1”.").arg(value.toString().left(80)));
    }
    static QJsonValue encode(const SmartFolderField<Kind>& field) { return field.rawValue(); }
};

} // namespace json
} // namespace tessellar
