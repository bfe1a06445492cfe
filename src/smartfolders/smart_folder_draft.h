#pragma once

#include "smartfolders/smart_folder_input_format.h"
#include "smartfolders/smart_folder_rule_parts.h"

#include <QMap>

#include <functional>

namespace tessellar {

/// One of a draft's menus. The last three are of a rule, the last of one of its operands.
struct SmartFolderMenu {
    enum class Kind { matchMode, sortField, sortDirection, field, predicate, operand };
    Kind kind;
    qsizetype rule = -1;
    qsizetype operand = -1;
};

/// One choice in a menu.
struct SmartFolderOption {
    QString word; ///< empty for a separator
    QString title;
    bool isChosen = false;

    bool operator==(const SmartFolderOption&) const = default;
};

/// One value of a predicate, for editing.
struct SmartFolderOperandRow {
    enum class Kind { text, number, date, choice, choices };
    Kind kind = Kind::text;
    QString text; ///< as typed, or the titles of the chosen words
    bool needsInput = false;

    bool operator==(const SmartFolderOperandRow&) const = default;
};

/// A rule, for editing.
struct SmartFolderRuleRow {
    QUuid id;
    QString field; ///< display text, as are the others
    QString predicate;
    QList<SmartFolderOperandRow> operands;

    bool operator==(const SmartFolderRuleRow&) const = default;
};

/// A definition being edited. Driven by the tables of the vocabulary: whatever is declared there can be
/// edited. Untouched rules are preserved exactly, even if the displayed texts omit something.
class SmartFolderDraft {
public:
    SmartFolderDraft(SmartFolderDefinition definition, SmartFolderInputFormat inputFormat, Instant now);

    /// Updates the locale, time zone and current day used for typing and picking.
    void setInputFormat(SmartFolderInputFormat inputFormat, Instant now);

    /// Includes the latest readable input.
    const SmartFolderDefinition& definition() const { return _definition; }
    /// True if some input could not be parsed.
    bool hasUnread() const { return !_unread.isEmpty() || _unreadLimit; }
    /// The definition's issues; numbers and dates that could not be parsed count as missing.
    QList<SmartFolderValidationIssue> issues() const;

    void setName(const QString& name) { _definition.name = name; }
    void setSymbolName(const std::optional<QString>& name) { _definition.customSymbolName = name; }

    /// A menu's choices; empty if there is no such rule, or the operand is typed.
    QList<SmartFolderOption> options(const SmartFolderMenu& menu) const;
    /// Chooses a word, or toggles it if several can be chosen. A new field keeps as much as possible of
    /// the predicate and its values.
    void choose(const SmartFolderMenu& menu, const QString& word);

    bool hasLimit() const { return _definition.resultLimit.has_value(); }
    void setHasLimit(bool hasLimit);
    QString limitText() const;
    void typeLimit(const QString& text);
    void stepLimit(int by);

    // Rules by index; out of range indices have no effect.
    qsizetype ruleCount() const { return _definition.rules.size(); }
    SmartFolderRuleRow row(qsizetype rule) const;
    void insertRule(qsizetype place, const QUuid& id);
    void removeRule(qsizetype rule);
    void type(qsizetype rule, qsizetype operand, const QString& text);
    /// Increments by numbers or days.
    void step(qsizetype rule, qsizetype operand, int by);
    /// The day of a date operand; nullopt for others.
    std::optional<QDate> day(qsizetype rule, qsizetype operand) const;
    void chooseDay(qsizetype rule, qsizetype operand, QDate day);
    /// The month to show in the operand's day picker.
    SmartFolderMonth month(qsizetype rule, qsizetype operand, QDate page) const;

    /// Supplies the facts for suggestions and for words that only applications have.
    void setFacts(const SmartFolderFactsList& facts, const FileSystem& files) {
        _facts = facts;
        _files = &files;
        _words.clear();
    }
    /// For a typed operand: the applications' values, most frequent first.
    QStringList suggestions(qsizetype rule, qsizetype operand) const;
    /// Whether `suggestions` has any.
    bool hasSuggestions(qsizetype rule, qsizetype operand) const;

private:
    /// Calls `visit` with the values until it returns false.
    void visitValues(qsizetype rule, qsizetype operand,
                     const std::function<bool(const QString&)>& visit) const;
    bool has(qsizetype rule) const { return rule >= 0 && rule < ruleCount(); }
    void replace(qsizetype rule, SmartFolderRule with);
    void setOperand(qsizetype rule, qsizetype operand, const SmartFolderOperand& value);
    QList<SmartFolderOption> operandOptions(qsizetype rule, qsizetype operand) const;
    void chooseOperand(qsizetype rule, qsizetype operand, const QString& word);
    QStringList words(const SmartFolderRule& rule) const;
    void forgetTyped(const SmartFolderRule& rule);

    SmartFolderDefinition _definition;
    SmartFolderInputFormat _inputFormat;
    Instant _today;
    SmartFolderFactsList _facts;
    const FileSystem* _files = nullptr;
    mutable QMap<QString, QStringList> _words; ///< by field, filled on demand
    /// Input that could not be parsed, by rule and operand.
    QMap<std::pair<QUuid, qsizetype>, QString> _unread;
    std::optional<QString> _unreadLimit;
};

template <>
struct json::RawValues<SmartFolderMenu::Kind> : json::EnumeratorNames<SmartFolderMenu::Kind::operand> {
};

} // namespace tessellar
