#pragma once

#include "launcher/launcher_error.h"
#include "launcher/launcher_view_model.h"
#include "launcher/live_layout.h"
#include "launcher/unsaved_edits.h"

#include <QJsonValue>

#include <cstddef>
#include <functional>
#include <memory>
#include <vector>

namespace tessellar {

/// Why nobody waits for a command any more.
enum class Unwanted {
    stopped, ///< the user wants it to end
    left,    ///< whoever began it is gone: a terminal that was closed, a machine that shuts down
};

/// Where the words of a command go as they come.
struct CommandOutput {
    std::function<void(const QByteArray&)> out;
    std::function<void(const QByteArray&)> error;
    std::function<void(int status)> finished; ///< once, last
    /// Takes what is to be called once nobody hears any more: a command that would go on until it is
    /// stopped ends then.
    std::function<void(std::function<void(Unwanted)>)> whenUnwanted = [](const auto&) {};
};

/// How the words of a command are to be understood.
struct CommandOptions {
    bool json = false;
    bool oneLine = false;       ///< JSON documents on one line each, as in a batch
    bool showsProgress = false; ///< standard error is a terminal, on which a line can be drawn anew
    /// Answers do not wait until what was edited is on the disk: in a batch the last command does.
    bool answersUnsaved = false;
    /// For whom edits are made: all commands of a batch have the same. None is the command itself.
    UnsavedEdits::Editor editor;
    std::optional<LauncherWindowMode> mode;
    QString directory;             ///< host folder that relative names of files stand in
    std::optional<Instant> now;    ///< for what asks for the time
    std::optional<QString> locale; ///< for what compares text
};

enum class ExitStatus { done = 0, refused = 1, wrongUsage = 2 };

/// A document as --json has it printed.
QByteArray document(const QJsonValue& json, const CommandOptions& options);
/// Says why a command came to nothing: its sentence on standard error, with --json also the document
/// that stands for an answer.
void sayError(const LauncherError& error, const CommandOptions& options, const CommandOutput& output);

/// One command while it runs: what it may use, and how it says what came of it. Commands that wait for
/// something keep it (it is shared) and answer later.
///
/// A command has succeeded when what it edited is on the disk: the end of its answer waits for that,
/// and where it could not be saved that is the answer, see `UnsavedEdits`. One that edited nothing
/// waits for nobody's edits.
class CommandCall : public std::enable_shared_from_this<CommandCall> {
public:
    CommandCall(Machine& machine_, LauncherViewModel* launcher, CommandOptions options_,
                CommandOutput output)
        : machine(machine_)
        , options(std::move(options_))
        , _launcher(launcher)
        , _output(std::move(output)) {
        if (!options.editor)
            options.editor = std::make_shared<std::byte>();
    }

    Machine& machine;
    CommandOptions options;
    /// Only for commands that asked for it.
    LauncherViewModel& launcher() const { return *_launcher; }
    /// The display mode that the command is about; without one, that which the user sees.
    LauncherWindowMode mode() const { return options.mode.value_or(_launcher->layouts().shownMode()); }
    LiveLayout& layout() const { return _launcher->layout(mode()); }

    /// Part of the answer, before its end: a JSON document, or text.
    void print(const QJsonValue& json, const QString& text);
    /// What is to be known besides the answer, on standard error.
    void warn(const QString& sentence);
    /// How far a long command has come: a line that the next one takes the place of, on a terminal
    /// alone. To be cleared with an empty one before anything else is said.
    void showProgress(const QString& line);
    /// Ends the command: with --json one document, else the text.
    void succeed(const QJsonValue& json, const QString& text);
    void fail(const LauncherError& error, ExitStatus status = ExitStatus::refused);
    /// Ends the command with what an operation came to.
    void answer(const LauncherViewModel::Outcome& outcome, const QString& text = {});
    /// Ends the command after what it printed.
    void finish(ExitStatus status);
    /// Ends the command once all edits are on the disk, whoever made them.
    void answerAllSaved();

    /// Calls back once nobody hears any more, so that waiting for it costs nothing.
    void whenUnwanted(std::function<void()> call) {
        whenUnwanted([call = std::move(call)](Unwanted) { call(); });
    }
    void whenUnwanted(std::function<void(Unwanted)> call) { _output.whenUnwanted(std::move(call)); }

    /// What the command waits for; kept while the command is.
    std::vector<std::shared_ptr<void>> held;

private:
    void end(ExitStatus status);
    void onceSaved(UnsavedEdits::Whose whose, std::function<void()> answer);

    LauncherViewModel* _launcher;
    CommandOutput _output;
    QString _progress;
    bool _isFinished = false;
};

} // namespace tessellar
