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

/// Why a command is cancelled.
enum class Cancellation {
    stopped,      ///< by the user
    disconnected, ///< the client is gone: its terminal was closed, or the machine shuts down
};

/// Receives a command's output as it is written.
struct CommandOutput {
    std::function<void(const QByteArray&)> out;
    std::function<void(const QByteArray&)> error;
    std::function<void(int status)> finished; ///< called once, last
    /// Sets the function that is called on cancellation; commands that run until stopped end then.
    std::function<void(std::function<void(Cancellation)>)> whenCancelled = [](const auto&) {};
};

/// The global options of a command.
struct CommandOptions {
    bool json = false;
    bool oneLine = false;       ///< one JSON document per line, as in a batch
    bool showsProgress = false; ///< standard error is a terminal
    /// Commands finish before their edits are saved, apart from steps that are saved as a unit. In a
    /// batch, only the last command waits.
    bool answersUnsaved = false;
    /// Who makes the edits: shared by all commands of a batch; null for the command itself.
    UnsavedEdits::Editor editor;
    std::optional<LauncherWindowMode> mode;
    QString directory;             ///< host folder that relative file names refer to
    std::optional<Instant> now;    ///< replaces the current time
    std::optional<QString> locale; ///< replaces the locale for comparing text
};

enum class ExitStatus { done = 0, refused = 1, wrongUsage = 2 };

/// Formats a document for --json.
QByteArray document(const QJsonValue& json, const CommandOptions& options);
/// Prints an error: the message on standard error, and with --json also a document on standard output.
void sayError(const LauncherError& error, const CommandOptions& options, const CommandOutput& output);

/// A running command: its context and its output. Asynchronous commands keep a shared pointer to it and
/// finish later.
///
/// A command succeeds once its edits are saved: it waits for that before finishing, and fails if saving
/// fails; see `UnsavedEdits`. Commands without edits do not wait for others' edits.
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
    /// Only for commands that declared to need it.
    LauncherViewModel& launcher() const { return *_launcher; }
    /// The display mode the command applies to; by default the one shown.
    LauncherWindowMode mode() const { return options.mode.value_or(_launcher->layouts().shownMode()); }
    LiveLayout& layout() const { return _launcher->layout(mode()); }

    /// Prints a partial result without finishing: a JSON document or text.
    void print(const QJsonValue& json, const QString& text);
    /// Prints a warning on standard error.
    void warn(const QString& sentence);
    /// Shows progress in one line that each call replaces; on terminals only. Clear it with an empty
    /// line before printing anything else.
    void showProgress(const QString& line);
    /// Finishes with a document if --json is given, otherwise with the text.
    void succeed(const QJsonValue& json, const QString& text);
    void fail(const LauncherError& error, ExitStatus status = ExitStatus::refused);
    /// Finishes with the outcome of an operation.
    void answer(const LauncherViewModel::Outcome& outcome, const QString& text = {});
    /// Finishes without further output.
    void finish(ExitStatus status);
    /// Finishes once all edits are saved, no matter who made them.
    void answerAllSaved();

    /// Sets the function that is called on cancellation.
    void whenCancelled(std::function<void()> call) {
        whenCancelled([call = std::move(call)](Cancellation) { call(); });
    }
    void whenCancelled(std::function<void(Cancellation)> call) {
        _output.whenCancelled(std::move(call));
    }

    /// Keeps subscriptions and tasks alive as long as the command.
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
