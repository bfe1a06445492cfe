#pragma once

#include "smartfolders/smart_folder_app_facts.h"
#include "smartfolders/smart_folder_definition.h"

#include <functional>
#include <variant>

namespace tessellar {

class FileSystem;

// Rules by their parts and words, for who edits them: what the tables of the vocabulary declare can be
// edited, whatever its kind.

/// A value that a predicate carries, whatever rule it belongs to.
using SmartFolderOperand =
    std::variant<QString, QStringList, double, qint64, bool, Instant, SmartFolderRelativeDateUnit>;

/// The fields' names, by kind of rule, in the order of the vocabulary.
QList<QStringList> smartFolderFieldNames();
/// The names of what can be asked of the rule's field.
QStringList predicateNames(const SmartFolderRule& rule);
QString predicateName(const SmartFolderRule& rule);
QList<SmartFolderOperand> operandsOf(const SmartFolderRule& rule);
/// What can be chosen as the field's values; empty for those that are typed.
QStringList wordsOf(const SmartFolderRule& rule);
/// The same with the words that applications have besides, where the vocabulary is open.
QStringList wordsOf(const SmartFolderRule& rule, const SmartFolderFactsList& facts,
                    const FileSystem& files);
/// Calls `visit` with the field's fact of each application that has one, if it is a text, until it
/// returns false.
void visitTexts(const SmartFolderRule& rule, const SmartFolderFactsList& facts, const FileSystem& files,
                const std::function<bool(const QString&)>& visit);

/// A rule that still needs its text.
SmartFolderRule newRule(const QUuid& id);
/// With another field, which takes over what it can of the predicate and its values. Like the next two
/// it changes nothing when there is no such word. `today` is the date to begin with.
SmartFolderRule withField(const SmartFolderRule& rule, const QString& name, Instant today);
SmartFolderRule withPredicate(const SmartFolderRule& rule, const QString& name, Instant today);
/// With the value of one operand; one of another type than the operand's changes nothing.
SmartFolderRule withOperand(const SmartFolderRule& rule, qsizetype place,
                            const SmartFolderOperand& value);

} // namespace tessellar
