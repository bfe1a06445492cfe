#pragma once

#include <CLI/CLI.hpp>

#include <string>
#include <vector>

namespace tessellar {

/// A program's interface, extracted from its command-line declarations. Manual pages and completions
/// are generated from it, so they cannot deviate.
struct ProgramOutline {
    struct Option {
        std::vector<std::string> names; ///< with dashes; empty for an operand
        std::string value;              ///< placeholder for its value; empty for a flag
        std::vector<std::string> choices;
        std::string description;
        bool isRequired = false;
        bool isRepeated = false;
    };
    struct Command {
        std::string path; ///< its words, for example "updates check"
        std::string description;
        std::vector<Option> options;
        std::vector<Option> operands;
        bool hasCommands = false; ///< a subcommand must follow
    };

    std::string name;
    std::string description;
    std::vector<Option> options;
    std::vector<Command> commands;
    std::string remarks; ///< paragraphs after the commands
    std::string examples;
};

/// Translates the descriptions of a program's commands and options.
void translateHelp(CLI::App& program);

ProgramOutline::Option outlineOf(const CLI::Option& option);
ProgramOutline outlineOf(const CLI::App& program);

/// The values of the hidden option --generate.
inline const std::vector<std::string> manualForms{"man", "bash", "zsh", "fish"};

/// Generates the manual page or a shell's completions.
std::string writeManual(const ProgramOutline& program, const std::string& form);

} // namespace tessellar
