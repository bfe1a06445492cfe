#include "launcher/smart_folder_editing.h"

#include "launcher/launcher_editor.h"
#include "launcher/smart_folder_library.h"
#include "platform/texts.h"
#include "smartfolders/smart_folder_fields.h"

namespace tessellar {

SmartFolderEditing::SmartFolderEditing(Machine& machine, SmartFolderLibrary& library,
                                       LauncherEditor& editor)
    : _machine(machine), _library(library), _editor(editor) {}

void SmartFolderEditing::openNew(LauncherWindowMode mode) {
    SmartFolderDefinition definition;
    definition.id = _machine.uuids.next();
    definition.sort.field = "name";
    _isNew = true;
    begin(mode, std::move(definition));
    insertRule(0);
    _before = _draft->definition();
}

void SmartFolderEditing::open(LauncherWindowMode mode, const SmartFolderDefinition& definition) {
    _isNew = false;
    begin(mode, definition);
    renewPreview();
}

void SmartFolderEditing::begin(LauncherWindowMode mode, SmartFolderDefinition definition) {
    close();
    _mode = mode;
    _before = definition;
    _draft.emplace(std::move(definition),
                   SmartFolderInputFormat(_machine.locale, Calendar::system(_machine.locale)),
                   _machine.clock.now());
    _saved = saved();
}

/// The definition that is currently saved.
std::optional<SmartFolderDefinition> SmartFolderEditing::saved() const {
    const SmartFolderDefinition* found = _library.definition(_before.id);
    return found ? std::optional(*found) : std::nullopt;
}

void SmartFolderEditing::close() {
    if (!_draft)
        return;
    _library.endPreview();
    _draft.reset();
    _preview.reset();
    changed.notify();
}

void SmartFolderEditing::change(const std::function<void(SmartFolderDraft&)>& change) {
    if (!_draft)
        return;
    _draft->setInputFormat(SmartFolderInputFormat(_machine.locale, Calendar::system(_machine.locale)),
                           _machine.clock.now());
    change(*_draft);
    renewPreview();
}

void SmartFolderEditing::insertRule(qsizetype place) {
    change([&](SmartFolderDraft& draft) { draft.insertRule(place, _machine.uuids.next()); });
}

// ---- preview

void SmartFolderEditing::renewPreview() {
    SmartFolderDefinition previewed = _draft->definition();
    // Rules can be previewed before there is a name.
    previewed.name = QStringLiteral("preview");
    SmartFolderDraft named = *_draft;
    named.setName(previewed.name);
    const bool isPossible = named.issues().isEmpty();
    if (!isPossible) {
        _preview.reset();
        previewed.name.clear();
    }
    // If the draft cannot be evaluated, the facts still serve for suggestions.
    _library.preview(
        previewed, _mode,
        [this, isPossible](SmartFolderEvaluation evaluation, const SmartFolderFactsList& facts) {
            _draft->setFacts(facts, _machine.files);
            if (isPossible)
                _preview = std::move(evaluation);
            changed.notify();
        });
    changed.notify();
}

QString SmartFolderEditing::notice() const {
    return _draft && _preview ? _library.notice(_draft->definition(), *_preview) : QString();
}

QStringList SmartFolderEditing::suggestions(qsizetype rule, qsizetype operand) const {
    return _draft ? _draft->suggestions(rule, operand) : QStringList();
}

bool SmartFolderEditing::hasSuggestions(qsizetype rule, qsizetype operand) const {
    return _draft && _draft->hasSuggestions(rule, operand);
}

// ---- saving

QString SmartFolderEditing::issue() const {
    const auto issues = _draft ? _draft->issues() : QList<SmartFolderValidationIssue>();
    return issues.isEmpty() ? QString() : message(issues.first());
}

/// Opens the draft as it is now.
std::function<void()> SmartFolderEditing::reopening() {
    return _lifetime.guard(
        [this, draft = *_draft, mode = _mode, before = _before, saved = _saved, isNew = _isNew] {
            if (_draft)
                return;
            _draft = draft;
            _mode = mode;
            _before = before;
            _saved = saved;
            _isNew = isNew;
            renewPreview();
            reopened.notify();
        });
}

SmartFolderEditing::Outcome SmartFolderEditing::save() {
    if (!_draft)
        return {};
    if (const QString why = issue(); !why.isEmpty())
        return std::unexpected(LauncherError{QStringLiteral("invalidDefinition"), why, {}});
    if (_isNew || isChanged()) {
        const auto now = saved();
        if (std::exchange(_saved, now) != now)
            return std::unexpected(LauncherError{
                QStringLiteral("changedElsewhere"),
                (now ? Texts::tr("“%1” was changed elsewhere while you edited it. Saving again "
                                 "replaces that change.")
                     : Texts::tr("“%1” was deleted elsewhere while you edited it. Saving again "
                                 "re-creates it."))
                    .arg(_before.name),
                Texts::tr("Could not save Smart Folders")});
        SmartFolderDefinition definition = _draft->definition();
        definition.modifiedAt = _machine.clock.now();
        if (auto done = now ? _editor.changeSmartFolder(_mode, definition, reopening())
                            : _editor.addSmartFolder(_mode, definition, {}, reopening());
            !done)
            return done;
    }
    close();
    return {};
}

} // namespace tessellar
