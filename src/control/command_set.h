#pragma once

#include "control/command_call.h"
#include "platform/texts.h"

#include <CLI/CLI.hpp>

#include <span>
#include <string>

namespace tessellar {

// Commands share what they run with, and the words that CLI11 reads for them.
using Call = std::shared_ptr<CommandCall>;
using Word = std::shared_ptr<std::string>;
using Words = std::shared_ptr<std::vector<std::string>>;
using Flag = std::shared_ptr<bool>;

/// What a command needs of the launcher to run.
enum class CommandNeeds {
    machine,              ///< files and settings alone
    launcher,             ///< the launcher, started: its answer is what the window shows
    launcherUntilStopped, ///< the same, and it goes on until nobody hears any more
    window,               ///< the launcher, however far its start has come
    launcherToLook,       ///< the same, but it changes nothing and is in nobody's way
};

/// An option of tessellarctl itself, which stands before the command.
struct GlobalOption {
    const char* name;
    const char* value; ///< what stands for its value; none for a flag
    const char* description;
};
std::span<const GlobalOption> globalOptions();

/// The commands of tessellarctl, declared once: their words for CLI11, and what they do. One set reads
/// one command: CLI11 keeps what it read in the variables that its options are bound to.
class CommandSet {
public:
    using Run = std::function<void(const Call&)>;

    CommandSet();

    /// Below `parent`, or at the top.
    CLI::App* add(const char* name, const char* description, CLI::App* parent = nullptr);
    /// A command of which one of several words must follow.
    CLI::App* addGroup(const char* name, const char* description);
    void onRun(CLI::App* command, CommandNeeds needs, Run run);

    struct Parsed {
        CommandNeeds needs = CommandNeeds::machine;
        Run run;
    };
    struct Failure {
        ExitStatus status = ExitStatus::wrongUsage; ///< `done` when help was asked for
        QString text;
    };
    std::expected<Parsed, Failure> parse(const QStringList& words);

    const CLI::App& commands() const { return _parser; }
    /// The list of all commands.
    QString help() const { return QString::fromStdString(_parser.help()); }

private:
    /// Why the first words name no command, where they do not.
    std::optional<QString> nameFailure(const QStringList& words) const;

    CLI::App _parser;
    std::optional<Parsed> _parsed;
};

// The families of commands, each in a file of its own.
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

/// A value as people read it: texts bare, all else as JSON.
QString valueText(const QJsonValue& value);

/// What the help says of the word `appkey`.
inline constexpr auto appKeyHelp =
    Texts::noop("The application's bundle identifier, or the path of one of several copies");

/// An optional word or option; empty when it was not given.
inline Word optionalWord(CLI::App* command, const std::string& name, const std::string& description) {
    auto value = std::make_shared<std::string>();
    command->add_option(name, *value, description);
    return value;
}
/// A word that must be given.
inline Word word(CLI::App* command, const std::string& name, const std::string& description) {
    auto value = std::make_shared<std::string>();
    command->add_option(name, *value, description)->required();
    return value;
}
/// An option that must be given.
inline Word requiredOption(CLI::App* command, const std::string& name, const std::string& description) {
    return word(command, name, description);
}
/// One word or several.
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
