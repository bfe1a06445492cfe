#pragma once

#include "smartfolders/smart_folder_app_facts.h"
#include "smartfolders/smart_folder_definition.h"

#include <functional>
#include <variant>

namespace tessellar {

class FileSystem;

// Rules by parts and words, for editors: anything declared in the vocabulary's tables can be edited,
// whatever its kind.

/// A value of a predicate, in any kind of rule.
using SmartFolderOperand =
    std::variant<QString, QStringList, double, qint64, bool, Instant, SmartFolderRelativeDateUnit>;

/// The names of all fields, by kind of rule, in declaration order.
QList<QStringList> smartFolderFieldNames();
/// The names of the predicates for the rule's field.
QStringList predicateNames(const SmartFolderRule& rule);
QString predicateName(const SmartFolderRule& rule);
QList<SmartFolderOperand> operandsOf(const SmartFolderRule& rule);
/// The choices for the field's values; empty if they are typed.
QStringList wordsOf(const SmartFolderRule& rule);
/// The same, plus the applications' other words if the vocabulary is open.
QStringList wordsOf(const SmartFolderRule& rule, const SmartFolderFactsList& facts,
                    const FileSystem& files);
/// Calls `visit` with each application's value of the field, if it is a text field, until it returns
/// false.
void visitTexts(const SmartFolderRule& rule, const SmartFolderFactsList& facts, const FileSystem& files,
                const std::function<bool(const QString&)>& visit);

/// A rule that still needs its text.
SmartFolderRule newRule(const QUuid& id);
/// Replaces the field, keeping as much as possible of the predicate and its values. Like the next two,
/// returns the rule unchanged if the name is unknown. `today` is the initial date.
SmartFolderRule withField(const SmartFolderRule& rule, const QString& name, Instant today);
SmartFolderRule withPredicate(const SmartFolderRule& rule, const QString& name, Instant today);
/// Replaces one operand; unchanged if `value` has another type.
SmartFolderRule withOperand(const SmartFolderRule& rule, qsizetype place,
                            const SmartFolderOperand& value);

} // namespace tessellar
