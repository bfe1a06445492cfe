#include "control/command_interpreter.h"

#include "launcher/launcher_history.h"

namespace tessellar {

void CommandInterpreter::refuse(const CommandSet::Failure& failure, const CommandOptions& options,
                                const CommandOutput& output) {
    const QString text = failure.text.trimmed();
    const QString code = failure.status == ExitStatus::wrongUsage ? QStringLiteral("wrongUsage")
                                                                  : QStringLiteral("noMachine");
    if (failure.status == ExitStatus::done)
        output.out(text.toUtf8() + '\n');
    else
        sayError({code, text, {}}, options, output);
    output.finished(static_cast<int>(failure.status));
}

void CommandInterpreter::runWithoutLauncher(Machine& machine, const CommandSet::Run& run,
                                            const CommandOptions& options, CommandOutput output) {
    run(std::make_shared<CommandCall>(machine, nullptr, options, std::move(output)));
}

void CommandInterpreter::run(const QStringList& words, const CommandOptions& options,
                             CommandOutput output) {
    const auto parsed = CommandSet().parse(words);
    if (!parsed)
        return refuse(parsed.error(), options, output);
    if (parsed->needs != CommandNeeds::window && !_launcher.isBootstrapped()) {
        _early.emplace_back(
            [this, words, options, output = std::move(output)] { run(words, options, output); });
        // Through the mailbox, so that all other subscribers learn of the first load first.
        _bootstrapped = _launcher.bootstrapped.connect([this] {
            _machine.workers.mailbox().post(_lifetime.guard([this] {
                for (const auto& command : std::exchange(_early, {}))
                    command();
            }));
        });
        return;
    }
    const auto call = std::make_shared<CommandCall>(_machine, &_launcher, options, std::move(output));
    _launcher.history().unsaved().editAs(call->options.editor, [&] { parsed->run(call); });
}

} // namespace tessellar
