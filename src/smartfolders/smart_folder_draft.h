#pragma once

#include "smartfolders/smart_folder_rule_parts.h"
#include "smartfolders/smart_folder_typing.h"

#include <QMap>

#include <functional>

namespace tessellar {

/// A word to choose, as a menu shows it.
struct SmartFolderWord {
    QString word; ///< empty for a line between groups
    QString title;
    bool isChosen = false;

    bool operator==(const SmartFolderWord&) const = default;
};

/// One of the values behind a predicate, as it is edited.
struct SmartFolderOperandRow {
    enum class Kind { text, number, date, choice, choices };
    Kind kind = Kind::text;
    QString text; ///< what was typed, or the titles of what is chosen
    bool needsInput = false;

    bool operator==(const SmartFolderOperandRow&) const = default;
};

/// A rule, as it is edited.
struct SmartFolderRuleRow {
    QUuid id;
    QString field; ///< as people read it, as are the others
    QString predicate;
    QList<SmartFolderOperandRow> operands;

    bool operator==(const SmartFolderRuleRow&) const = default;
};

/// A definition while it is edited, made of the vocabulary's own tables: what is declared there can be
/// edited here. Rules that are not touched stay as they are to the last bit, whatever the texts that
/// are shown of them leave out.
class SmartFolderDraft {
public:
    SmartFolderDraft(SmartFolderDefinition definition, SmartFolderTyping typing, Instant now);

    /// The day, the zone or the locale may be another: what is typed and picked from now on follows.
    void follow(SmartFolderTyping typing, Instant now);

    /// With what was typed last wherever that can be read.
    const SmartFolderDefinition& definition() const { return _definition; }
    /// Something was typed that cannot be read.
    bool hasUnread() const { return !_unread.isEmpty() || _unreadLimit; }
    /// Those of the definition; a number or a date that cannot be read counts as missing.
    QList<SmartFolderValidationIssue> issues() const;

    void setName(const QString& name) { _definition.name = name; }
    void setSymbolName(const std::optional<QString>& name) { _definition.customSymbolName = name; }

    QList<SmartFolderWord> matchModes() const;
    void setMatchMode(const QString& word);
    QList<SmartFolderWord> sortFields() const;
    void setSortField(const QString& word);
    QList<SmartFolderWord> sortDirections() const;
    void setSortDirection(const QString& word);

    bool hasLimit() const { return _definition.resultLimit.has_value(); }
    void setHasLimit(bool hasLimit);
    QString limitText() const;
    void typeLimit(const QString& text);
    void stepLimit(int by);

    // Rules by their place; there is none at a place out of range.
    qsizetype ruleCount() const { return _definition.rules.size(); }
    SmartFolderRuleRow row(qsizetype rule) const;
    void insertRule(qsizetype place, const QUuid& id);
    void removeRule(qsizetype rule);
    QList<SmartFolderWord> fields(qsizetype rule) const;
    /// Another kind of field takes over what it can of the predicate and its values.
    void setField(qsizetype rule, const QString& word);
    QList<SmartFolderWord> predicates(qsizetype rule) const;
    void setPredicate(qsizetype rule, const QString& word);
    /// What an operand is chosen from; empty for one that is typed.
    QList<SmartFolderWord> choices(qsizetype rule, qsizetype operand) const;
    /// Chooses a word; where several can be chosen, takes it in or out.
    void choose(qsizetype rule, qsizetype operand, const QString& word);
    void type(qsizetype rule, qsizetype operand, const QString& text);
    /// A number or a day more or less.
    void step(qsizetype rule, qsizetype operand, int by);
    /// The day of an operand that is a date; nothing for others.
    std::optional<QDate> day(qsizetype rule, qsizetype operand) const;
    void chooseDay(qsizetype rule, qsizetype operand, QDate day);
    /// The month around a day, to pick the operand's from.
    SmartFolderMonth month(qsizetype rule, qsizetype operand, QDate page) const;

    /// What is known of applications, for what follows and for words that only they have.
    void setFacts(const SmartFolderFactsList& facts, const FileSystem& files) {
        _facts = facts;
        _files = &files;
        _words.clear();
    }
    /// For an operand that is typed: the values that applications have, most frequent first.
    QStringList suggestions(qsizetype rule, qsizetype operand) const;
    /// Whether there are any.
    bool hasSuggestions(qsizetype rule, qsizetype operand) const;

private:
    /// Calls `visit` with those values until it returns false.
    void visitValues(qsizetype rule, qsizetype operand,
                     const std::function<bool(const QString&)>& visit) const;
    bool has(qsizetype rule) const { return rule >= 0 && rule < ruleCount(); }
    void replace(qsizetype rule, SmartFolderRule with);
    void setOperand(qsizetype rule, qsizetype operand, const SmartFolderOperand& value);
    QStringList words(const SmartFolderRule& rule) const;
    void forgetTyped(const SmartFolderRule& rule);

    SmartFolderDefinition _definition;
    SmartFolderTyping _typing;
    Instant _today;
    SmartFolderFactsList _facts;
    const FileSystem* _files = nullptr;
    mutable QMap<QString, QStringList> _words; ///< by field, as they are asked for
    /// What was typed and cannot be read, by rule and operand.
    QMap<std::pair<QUuid, qsizetype>, QString> _unread;
    std::optional<QString> _unreadLimit;
};

} // namespace tessellar
