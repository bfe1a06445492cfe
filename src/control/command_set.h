#pragma once

#include "control/command_call.h"

#include <CLI/CLI.hpp>

#include <string>

namespace tessellar {

/// What a command needs of the launcher to run.
enum class CommandNeeds {
    machine,              ///< files and settings alone
    launcher,             ///< the launcher, started: its answer is what the window shows
    launcherUntilStopped, ///< the same, and it goes on until nobody hears any more
};

/// The commands of tessellarctl, declared once: their words for CLI11, and what they do. One set reads
/// one command: CLI11 keeps what it read in the variables that its options are bound to.
class CommandSet {
public:
    using Run = std::function<void(const std::shared_ptr<CommandCall>&)>;

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

    /// The list of all commands.
    QString help() const { return QString::fromStdString(_parser.help()); }

private:
    CLI::App _parser;
    std::optional<Parsed> _parsed;
};

// The families of commands, each in a file of its own.
void addLayoutCommands(CommandSet& set);
void addEditingCommands(CommandSet& set);
void addLibraryCommands(CommandSet& set);
void addSettingsCommands(CommandSet& set);
void addSmartFolderCommands(CommandSet& set);
void addUpdateCommands(CommandSet& set);
void addCleanupCommands(CommandSet& set);

/// A value as people read it: texts bare, all else as JSON.
QString valueText(const QJsonValue& value);

/// A place for a word that CLI11 reads, kept by the commands that capture it.
inline std::shared_ptr<std::string> word(CLI::App* command, const std::string& name,
                                         const std::string& description) {
    auto value = std::make_shared<std::string>();
    command->add_option(name, *value, description)->required();
    return value;
}
/// An option that must be given.
inline std::shared_ptr<std::string> requiredOption(CLI::App* command, const std::string& name,
                                                   const std::string& description) {
    return word(command, name, description);
}
/// The same for several words.
inline std::shared_ptr<std::vector<std::string>> words(CLI::App* command, const std::string& name,
                                                       const std::string& description) {
    auto value = std::make_shared<std::vector<std::string>>();
    command->add_option(name, *value, description)->required();
    return value;
}
inline QString text(const std::shared_ptr<std::string>& value) {
    return QString::fromStdString(*value);
}

} // namespace tessellar
