#include "control/command_interpreter.h"

namespace tessellar {

void CommandInterpreter::refuse(const CommandSet::Failure& failure, const CommandOptions& options,
                                const CommandOutput& output) {
    const QByteArray text = failure.text.trimmed().toUtf8() + '\n';
    if (failure.status == ExitStatus::done) {
        output.out(text);
    } else {
        if (options.json) {
            const bool isUsage = failure.status == ExitStatus::wrongUsage;
            const QJsonObject error{{QStringLiteral("code"), isUsage ? QStringLiteral("wrongUsage")
                                                                     : QStringLiteral("noMachine")},
                                    {QStringLiteral("message"), failure.text.trimmed()}};
            const QJsonObject document{{QStringLiteral("error"), error}};
            output.out(options.oneLine ? json::writeCompact(document) + '\n' : json::write(document));
        }
        output.error(text);
    }
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
    // A command for the other mode turns to it for as long as it runs.
    const LauncherWindowMode shown = _launcher.mode();
    if (options.mode && *options.mode != shown) {
        _launcher.setMode(*options.mode);
        output.finished = [this, shown, finished = std::move(output.finished)](int status) {
            _launcher.setMode(shown);
            finished(status);
        };
    }
    parsed->run(std::make_shared<CommandCall>(_machine, &_launcher, options, std::move(output)));
}

} // namespace tessellar
