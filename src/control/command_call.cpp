#include "control/command_call.h"

#include "launcher/launcher_history.h"

namespace tessellar {

using Whose = UnsavedEdits::Whose;

QByteArray document(const QJsonValue& json, const CommandOptions& options) {
    return options.oneLine ? json::writeCompact(json) + '\n' : json::write(json);
}

void sayError(const LauncherError& error, const CommandOptions& options, const CommandOutput& output) {
    if (options.json)
        output.out(document(QJsonObject{{QStringLiteral("error"),
                                         QJsonObject{{QStringLiteral("code"), error.code},
                                                     {QStringLiteral("message"), error.message}}}},
                            options));
    output.error(error.message.toUtf8() + '\n');
}

/// Names and versions come from outside: their control characters must not reach the terminal.
static QString printable(QString text, const QString& kept = {}) {
    for (QChar& character : text)
        if (character.category() == QChar::Other_Control && !kept.contains(character))
            character = u' ';
    return text;
}

void CommandCall::warn(const QString& sentence) { _output.error(printable(sentence).toUtf8() + '\n'); }

void CommandCall::print(const QJsonValue& json, const QString& text) {
    if (options.json)
        return _output.out(document(json, options));
    if (text.isEmpty())
        return;
    const QByteArray shown = printable(text, QStringLiteral("\n\t")).toUtf8();
    _output.out(shown.endsWith('\n') ? shown : shown + '\n');
}

void CommandCall::showProgress(const QString& line) {
    constexpr qsizetype width = 78;
    if (!options.showsProgress || line == std::exchange(_progress, line))
        return;
    _output.error("\r\x1b[K" + printable(line.left(width)).toUtf8());
}

void CommandCall::succeed(const QJsonValue& json, const QString& text) {
    onceSaved(Whose::own, [this, json, text] {
        print(json, text);
        end(ExitStatus::done);
    });
}

void CommandCall::answer(const LauncherViewModel::Outcome& outcome, const QString& text) {
    if (outcome)
        succeed(QJsonObject(), text);
    else
        fail(outcome.error());
}

void CommandCall::fail(const LauncherError& error, ExitStatus status) {
    if (std::exchange(_isFinished, true))
        return;
    sayError(error, options, _output);
    end(status);
}

void CommandCall::finish(ExitStatus status) {
    if (status == ExitStatus::done)
        onceSaved(Whose::own, [this] { end(ExitStatus::done); });
    else if (!std::exchange(_isFinished, true))
        end(status);
}

void CommandCall::answerAllSaved() {
    onceSaved(Whose::all, [this] {
        print(QJsonObject(), {});
        end(ExitStatus::done);
    });
}

void CommandCall::onceSaved(Whose whose, std::function<void()> answer) {
    if (std::exchange(_isFinished, true))
        return;
    if (!_launcher)
        return answer();
    _launcher->history().unsaved().whenSaved(
        options.editor, options.answersUnsaved && whose == Whose::own ? Whose::step : whose,
        [self = shared_from_this(), answer = std::move(answer)](const UnsavedEdits::Outcome& saved) {
            if (saved)
                return answer();
            sayError(saved.error(), self->options, self->_output);
            self->end(ExitStatus::refused);
        });
}

void CommandCall::end(ExitStatus status) {
    // Destroyed later: what is held may be the caller.
    machine.workers.mailbox().post([work = std::move(held)] {});
    _output.finished(static_cast<int>(status));
}

} // namespace tessellar
