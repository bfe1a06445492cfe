#pragma once

#include "model/json_unions.h"
#include "smartfolders/smart_folder_raw_values.h"

namespace tessellar {

/// A rule's predicates. The cases are declared by their JSON names and shared by several kinds of
/// rules.
namespace predicate {

using IsExactly = json::Case<"isExactly", QString>;
using Contains = json::Case<"contains", QString>;
using DoesNotContain = json::Case<"doesNotContain", QString>;
using BeginsWith = json::Case<"beginsWith", QString>;
using EndsWith = json::Case<"endsWith", QString>;
template <typename T>
using IsValue = json::Case<"isValue", T>;
template <typename T>
using IsNot = json::Case<"isNot", T>;
using IsAnyOf = json::Case<"isAnyOf", QStringList>;
template <typename T>
using IsEqualTo = json::Case<"isEqualTo", T>;
template <typename T>
using IsAbove = json::Case<"isAbove", T>;
template <typename T>
using IsBelow = json::Case<"isBelow", T>;
template <typename T>
using IsBetween = json::Case<"isBetween", T, T>; ///< inclusive
using IsBefore = json::Case<"isBefore", Instant>;
using IsAfter = json::Case<"isAfter", Instant>;
using IsToday = json::Case<"isToday">;
using IsThisWeek = json::Case<"isThisWeek">;
using IsThisMonth = json::Case<"isThisMonth">;
using IsThisYear = json::Case<"isThisYear">;
using IsWithinLast = json::Case<"isWithinLast", qint64, SmartFolderRelativeDateUnit>;
/// Holds exactly for applications whose fact is missing.
using IsUnknown = json::Case<"isUnknown">;

} // namespace predicate

using SmartFolderTextPredicate =
    std::variant<predicate::IsExactly, predicate::IsNot<QString>, predicate::Contains,
                 predicate::DoesNotContain, predicate::BeginsWith, predicate::EndsWith,
                 predicate::IsUnknown>;
using SmartFolderChoicePredicate = std::variant<predicate::IsValue<QString>, predicate::IsNot<QString>,
                                                predicate::IsAnyOf, predicate::IsUnknown>;
using SmartFolderNumberPredicate =
    std::variant<predicate::IsEqualTo<double>, predicate::IsAbove<double>, predicate::IsBelow<double>,
                 predicate::IsBetween<double>, predicate::IsUnknown>;
using SmartFolderVersionPredicate =
    std::variant<predicate::IsEqualTo<QString>, predicate::IsAbove<QString>,
                 predicate::IsBelow<QString>, predicate::IsBetween<QString>, predicate::IsUnknown>;
using SmartFolderDatePredicate =
    std::variant<predicate::IsBefore, predicate::IsAfter, predicate::IsBetween<Instant>,
                 predicate::IsToday, predicate::IsThisWeek, predicate::IsThisMonth,
                 predicate::IsThisYear, predicate::IsWithinLast, predicate::IsUnknown>;
using SmartFolderBooleanPredicate =
    std::variant<predicate::IsValue<bool>, predicate::IsNot<bool>, predicate::IsUnknown>;

} // namespace tessellar
