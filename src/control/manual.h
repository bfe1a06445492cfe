#pragma once

#include <CLI/CLI.hpp>

#include <string>
#include <vector>

namespace tessellar {

/// What a program can be asked for, read from the declarations that its command line is parsed by:
/// manual pages and completions are written from it, so that they never say anything else.
struct ProgramOutline {
    struct Option {
        std::vector<std::string> names; ///< with their dashes; none for an operand
        std::string value;              ///< what stands for its value; empty for a flag
        std::vector<std::string> choices;
        std::string description;
        bool isRequired = false;
        bool isRepeated = false;
    };
    struct Command {
        std::string path; ///< its words, such as "updates check"
        std::string description;
        std::vector<Option> options;
        std::vector<Option> operands;
        bool hasCommands = false; ///< one of further words must follow
    };

    std::string name;
    std::string description;
    std::vector<Option> options;
    std::vector<Command> commands;
    std::string remarks; ///< paragraphs after the commands
    std::string examples;
};

/// Gives what a program says of its commands and options in the language of its texts.
void translateHelp(CLI::App& program);

ProgramOutline::Option outlineOf(const CLI::Option& option);
ProgramOutline outlineOf(const CLI::App& program);

/// A program's hidden option --generate takes one of these.
inline const std::vector<std::string> manualForms{"man", "bash", "zsh", "fish"};

/// The manual page or the completions of a shell.
std::string writeManual(const ProgramOutline& program, const std::string& form);

} // namespace tessellar
