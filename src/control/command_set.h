#pragma once

#include "control/command_call.h"
#include "platform/texts.h"

#include <CLI/CLI.hpp>

#include <span>
#include <string>

namespace tessellar {

// Commands share the context they run in, and the words that CLI11 parses into.
using Call = std::shared_ptr<CommandCall>;
using Word = std::shared_ptr<std::string>;
using Words = std::shared_ptr<std::vector<std::string>>;
using Flag = std::shared_ptr<bool>;

/// What a command needs in order to run.
enum class CommandNeeds {
    machine,              ///< files and settings only
    launcher,             ///< a started launcher, with the state that the window shows
    launcherUntilStopped, ///< the same; takes long, so other commands are served meanwhile
    window,               ///< a launcher, even if it is still starting
    launcherReadOnly,     ///< read-only: the running launcher, or one that takes no lock
};

/// A global option of tessellarctl, given before the command.
struct GlobalOption {
    const char* name;
    const char* value; ///< placeholder for its value; null for a flag
    const char* description;
};
std::span<const GlobalOption> globalOptions();

/// The commands of tessellarctl, each declared once: arguments for CLI11, and the action. A set parses
/// a single command line, as CLI11 stores results in the bound variables.
class CommandSet {
public:
    using Run = std::function<void(const Call&)>;

    CommandSet();

    /// Adds a command below `parent`, or at the top level.
    CLI::App* add(const char* name, const char* description, CLI::App* parent = nullptr);
    /// Adds a command that requires a subcommand.
    CLI::App* addGroup(const char* name, const char* description);
    void onRun(CLI::App* command, CommandNeeds needs, Run run);

    struct Parsed {
        CommandNeeds needs = CommandNeeds::machine;
        Run run;
    };
    struct Failure {
        ExitStatus status = ExitStatus::wrongUsage; ///< `done` if help was requested
        QString text;
    };
    std::expected<Parsed, Failure> parse(const QStringList& words);

    const CLI::App& commands() const { return _parser; }
    /// The list of all commands.
    QString help() const { return QString::fromStdString(_parser.help()); }

private:
    /// Why the first words do not name a command; nullopt if they do.
    std::optional<QString> nameFailure(const QStringList& words) const;

    CLI::App _parser;
    std::optional<Parsed> _parsed;
};

// The groups of commands, each in its own file.
void addActionCommands(CommandSet& set);
void addArrangementCommands(CommandSet& set);
void addLayoutCommands(CommandSet& set);
void addEditingCommands(CommandSet& set);
void addInformationCommands(CommandSet& set);
void addLibraryCommands(CommandSet& set);
void addMemoryCommands(CommandSet& set);
void addSettingsCommands(CommandSet& set);
void addSmartFolderCommands(CommandSet& set);
void addUpdateCommands(CommandSet& set);
void addCleanupCommands(CommandSet& set);

/// A value for display: strings bare, anything else as JSON.
QString valueText(const QJsonValue& value);

/// Help text for the argument `appkey`.
inline constexpr auto appKeyHelp =
    Texts::noop("The application's bundle identifier, or the path of one of several copies");

/// An optional argument or option; empty if not given.
inline Word optionalWord(CLI::App* command, const std::string& name, const std::string& description) {
    auto value = std::make_shared<std::string>();
    command->add_option(name, *value, description);
    return value;
}
/// A required argument.
inline Word word(CLI::App* command, const std::string& name, const std::string& description) {
    auto value = std::make_shared<std::string>();
    command->add_option(name, *value, description)->required();
    return value;
}
/// A required option.
inline Word requiredOption(CLI::App* command, const std::string& name, const std::string& description) {
    return word(command, name, description);
}
/// One or more arguments.
inline Words words(CLI::App* command, const std::string& name, const std::string& description) {
    auto value = std::make_shared<std::vector<std::string>>();
    command->add_option(name, *value, description)->required();
    return value;
}
inline Flag flag(CLI::App* command, const std::string& name, const std::string& description) {
    auto value = std::make_shared<bool>(false);
    command->add_flag(name, *value, description);
    return value;
}
inline QString text(const Word& value) { return QString::fromStdString(*value); }

} // namespace tessellar
