#include "control/manual.h"

#include "platform/texts.h"
#include "platform/version.h"

#include <algorithm>
#include <cctype>

namespace tessellar {

namespace {

using Option = ProgramOutline::Option;
using Command = ProgramOutline::Command;

std::string joined(const std::vector<std::string>& parts, const std::string& separator) {
    std::string text;
    for (const std::string& part : parts)
        text += (text.empty() ? "" : separator) + part;
    return text;
}

std::string replaced(std::string text, const std::string& what, const std::string& with) {
    for (std::size_t at = 0; (at = text.find(what, at)) != std::string::npos; at += with.size())
        text.replace(at, what.size(), with);
    return text;
}

std::string upper(std::string text) {
    std::ranges::transform(text, text.begin(), [](unsigned char c) { return std::toupper(c); });
    return text;
}

/// The values that a CLI11 check allows, parsed from its type name: "TEXT:{a,b}".
std::vector<std::string> choicesOf(const std::string& type) {
    const auto open = type.find('{');
    const auto close = type.find('}');
    if (open == std::string::npos || close == std::string::npos)
        return {};
    return CLI::detail::split(type.substr(open + 1, close - open - 1), ',');
}

void collect(const CLI::App& app, const std::string& path, ProgramOutline& outline) {
    for (const CLI::App* command : app.get_subcommands([](const CLI::App*) { return true; })) {
        Command found{.path = path + command->get_name(),
                      .description = command->get_description(),
                      .options = {},
                      .operands = {},
                      .hasCommands = command->get_require_subcommand_min() > 0};
        for (const CLI::Option* option : command->get_options())
            if (option != command->get_help_ptr())
                (option->nonpositional() ? found.options : found.operands)
                    .push_back(outlineOf(*option));
        outline.commands.push_back(found);
        collect(*command, found.path + ' ', outline);
    }
}

// --- The manual page

std::string roff(std::string text) {
    text = replaced(replaced(std::move(text), "\\", "\\e"), "-", "\\-");
    text = replaced(std::move(text), "\n.", "\n\\&.");
    return text.starts_with('.') || text.starts_with('\'') ? "\\&" + text : text;
}
std::string bold(const std::string& text) { return "\\fB" + roff(text) + "\\fR"; }
std::string italic(const std::string& text) { return "\\fI" + roff(text) + "\\fR"; }

std::string roffOf(const Option& option) {
    if (option.names.empty()) {
        const std::string word = italic(option.value) + (option.isRepeated ? "..." : "");
        return option.isRequired ? word : '[' + word + ']';
    }
    std::vector<std::string> names;
    for (const std::string& name : option.names)
        names.push_back(bold(name));
    return joined(names, ", ") + (option.value.empty() ? "" : ' ' + italic(option.value));
}

std::string withStop(const std::string& sentence) {
    return sentence.empty() || sentence.ends_with('.') ? sentence : sentence + '.';
}

std::string paragraphsOf(const std::vector<Option>& options) {
    std::string text;
    for (const Option& option : options) {
        text += ".TP\n" + roffOf(option) + '\n' + roff(withStop(option.description));
        const bool saysChoices = std::ranges::all_of(option.choices, [&](const std::string& choice) {
            return option.description.find(choice) != std::string::npos;
        });
        if (!saysChoices)
            text += " One of " + roff(joined(option.choices, ", ")) + '.';
        text += '\n';
    }
    return text;
}

std::string manPage(const ProgramOutline& program) {
    std::string text = ".TH " + upper(program.name) + " 1 \"\" \"Tessellar " + roff(versionNumber()) +
                       "\" \"User Commands\"\n.SH NAME\n" + roff(program.name) + " \\- " +
                       roff(program.description) + "\n.SH SYNOPSIS\n.B " + roff(program.name) +
                       "\n[\\fIoption\\fR]...";
    if (!program.commands.empty())
        text += " \\fIcommand\\fR [\\fIword\\fR]...";
    text += "\n.SH OPTIONS\n" + paragraphsOf(program.options);
    if (!program.commands.empty())
        text += ".SH COMMANDS\n";
    for (const Command& command : program.commands) {
        if (command.hasCommands) {
            text += ".SS " + roff(command.path) + '\n' + roff(withStop(command.description)) + '\n';
            continue;
        }
        text += ".TP\n" + bold(command.path);
        for (const Option& operand : command.operands)
            text += ' ' + roffOf(operand);
        for (const Option& option : command.options)
            if (option.isRequired)
                text += ' ' + roffOf(option);
        text += '\n' + roff(withStop(command.description)) + '\n';
        std::vector<Option> explained = command.operands;
        std::ranges::copy(command.options, std::back_inserter(explained));
        if (!explained.empty())
            text += ".RS\n" + paragraphsOf(explained) + ".RE\n";
    }
    if (!program.remarks.empty())
        text += ".SH REMARKS\n" + replaced(roff(program.remarks), "\n\n", "\n.PP\n") + '\n';
    if (!program.examples.empty())
        text += ".SH EXAMPLES\n.nf\n" + roff(program.examples) + ".fi\n";
    const std::string other = program.name == "tessellar" ? "tessellarctl" : "tessellar";
    return text + ".SH SEE ALSO\n.BR " + other + " (1)\n";
}

// --- Completions. Each shell walks over the words as the program does: options before the command may
// take a value, and the words that name a command form its path. What can follow is looked up by that
// path.

std::string quoted(const std::string& text) { return '\'' + replaced(text, "'", "'\\''") + '\''; }

std::string functionName(const ProgramOutline& program) { return '_' + program.name; }

/// The program's options that take a value, as patterns for a shell's `case`.
std::string valued(const ProgramOutline& program) {
    std::vector<std::string> names;
    for (const Option& option : program.options)
        if (!option.value.empty())
            std::ranges::copy(option.names, std::back_inserter(names));
    return joined(names, "|");
}

struct Completion {
    std::string word;
    std::string description;
};

/// What can follow a path.
std::vector<Completion> completions(const ProgramOutline& program, const std::string& path,
                                    const std::vector<Option>& options) {
    std::vector<Completion> found;
    const std::string below = path.empty() ? "" : path + ' ';
    for (const Command& command : program.commands)
        if (command.path.starts_with(below) &&
            command.path.find(' ', below.size()) == std::string::npos && command.path != path)
            found.push_back({command.path.substr(below.size()), command.description});
    for (const Option& option : options)
        for (const std::string& name : option.names)
            found.push_back({name, option.description});
    return found;
}

/// Calls `visit` for each position in a command line, with its path and what can follow.
template <typename Visit>
void visitPlaces(const ProgramOutline& program, Visit visit) {
    visit(std::string(), completions(program, {}, program.options));
    for (const Command& command : program.commands)
        visit(command.path, completions(program, command.path, command.options));
}

/// Calls `visit` for each option that takes one of several words.
template <typename Visit>
void visitChoices(const ProgramOutline& program, Visit visit) {
    const auto all = [&](const std::vector<Option>& options) {
        for (const Option& option : options)
            if (!option.names.empty() && !option.choices.empty())
                visit(joined(option.names, "|"), option.choices);
    };
    all(program.options);
    for (const Command& command : program.commands)
        all(command.options);
}

std::string knownPaths(const ProgramOutline& program) {
    std::vector<std::string> paths;
    for (const Command& command : program.commands)
        paths.push_back('"' + command.path + '"');
    return paths.empty() ? "\"\"" : joined(paths, "|");
}

/// Common to bash and zsh: sets `place` to the words that name the command.
std::string placeFinder(const ProgramOutline& program, const std::string& word,
                        const std::string& before, int first) {
    return "    local place= word i\n    for ((i = " + std::to_string(first) + "; i < " + before +
           "; ++i)); do\n        word=" + word + "\n        case \"$word\" in\n            " +
           valued(program) + ") [ -n \"$place\" ] || ((++i)) ;;\n            -*) ;;\n" +
           "            *)\n                case \"${place:+$place }$word\" in\n                    " +
           knownPaths(program) + ") place=\"${place:+$place }$word\" ;;\n" +
           "                esac ;;\n        esac\n    done\n";
}

std::string bash(const ProgramOutline& program) {
    std::string text = "# bash completion for " + program.name + "\n" + functionName(program) +
                       "() {\n    local current=${COMP_WORDS[COMP_CWORD]} wanted=\n" +
                       placeFinder(program, "${COMP_WORDS[i]}", "COMP_CWORD", 1) +
                       "    case \"${COMP_WORDS[COMP_CWORD - 1]}\" in\n";
    visitChoices(program, [&](const std::string& names, const std::vector<std::string>& choices) {
        text += "        " + names + ") wanted=" + quoted(joined(choices, " ")) + " ;;\n";
    });
    text += "    esac\n    [ -n \"$wanted\" ] || case \"$place\" in\n";
    visitPlaces(program, [&](const std::string& path, const std::vector<Completion>& found) {
        std::vector<std::string> words;
        for (const Completion& one : found)
            words.push_back(one.word);
        text += "        " + quoted(path) + ") wanted=" + quoted(joined(words, " ")) + " ;;\n";
    });
    return text + "    esac\n    COMPREPLY=($(compgen -W \"$wanted\" -- \"$current\"))\n}\n" +
           "complete -o default -F " + functionName(program) + ' ' + program.name + '\n';
}

std::string zsh(const ProgramOutline& program) {
    std::string text = "#compdef " + program.name + "\n\n" + functionName(program) + "() {\n" +
                       placeFinder(program, "${words[i]}", "CURRENT", 2) +
                       "    case \"${words[CURRENT - 1]}\" in\n";
    visitChoices(program, [&](const std::string& names, const std::vector<std::string>& choices) {
        text += "        " + names + ") compadd -- " + joined(choices, " ") + "; return ;;\n";
    });
    text += "    esac\n    local -a wanted\n    case \"$place\" in\n";
    visitPlaces(program, [&](const std::string& path, const std::vector<Completion>& found) {
        text += "        " + quoted(path) + ") wanted=(";
        for (const Completion& one : found)
            text += "\n            " + quoted(replaced(one.word, ":", "\\:") + ':' +
                                              replaced(one.description, ":", "\\:"));
        text += ") ;;\n";
    });
    return text + "    esac\n    _describe word wanted\n    _files\n}\n\n" + functionName(program) +
           " \"$@\"\n";
}

std::string fish(const ProgramOutline& program) {
    const std::string place = "_" + program.name + "_place";
    std::string text = "# fish completion for " + program.name + "\nfunction " + place +
                       "\n    set -l place\n    set -l skips 0\n" +
                       "    for word in (commandline -opc)[2..]\n        if test $skips = 1\n" +
                       "            set skips 0\n            continue\n        end\n" +
                       "        switch $word\n            case " + replaced(valued(program), "|", " ") +
                       "\n                test -z \"$place\"; and set skips 1\n" +
                       "            case '-*'\n            case '*'\n" +
                       "                set -l longer (string trim \"$place $word\")\n" +
                       "                contains $longer " + replaced(knownPaths(program), "|", " ") +
                       "; and set place $longer\n        end\n    end\n    echo $place\nend\n\n";
    const auto at = [&](const std::string& path) {
        return quoted("test \"$(" + place + ")\" = \"" + path + '"');
    };
    const auto add = [&](const std::string& path, const Option& option) {
        text += "complete -c " + program.name + " -n " + at(path);
        for (const std::string& name : option.names)
            text += name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1);
        if (!option.choices.empty())
            text += " -xa " + quoted(joined(option.choices, " "));
        else if (!option.value.empty())
            text += " -r";
        text += " -d " + quoted(option.description) + '\n';
    };
    for (const Option& option : program.options)
        add({}, option);
    for (const Command& command : program.commands) {
        const auto space = command.path.rfind(' ');
        const bool isTop = space == std::string::npos;
        text += "complete -c " + program.name + " -n " +
                at(isTop ? "" : command.path.substr(0, space)) + " -fa " +
                quoted(isTop ? command.path : command.path.substr(space + 1)) + " -d " +
                quoted(command.description) + '\n';
        for (const Option& option : command.options)
            add(command.path, option);
    }
    return text;
}

} // namespace

void translateHelp(CLI::App& program) {
    (void)Texts::noop("Print this help message and exit"); // from CLI11
    const auto inLanguage = [](const std::string& text) {
        return text.empty() ? text : Texts::tr(text.c_str()).toStdString();
    };
    program.description(inLanguage(program.get_description()));
    // CLI11's own words.
    for (const char* word :
         {Texts::noop("Usage"), Texts::noop("OPTIONS"), Texts::noop("SUBCOMMAND"),
          Texts::noop("SUBCOMMANDS"), Texts::noop("Positionals"), Texts::noop("REQUIRED")})
        program.get_formatter()->label(word, inLanguage(word));
    for (CLI::Option* option : program.get_options()) {
        option->description(inLanguage(option->get_description()));
        if (option->get_group() == "Options")
            option->group(inLanguage(Texts::noop("Options")));
    }
    for (CLI::App* command : program.get_subcommands({})) {
        if (command->get_group() == "Subcommands")
            command->group(inLanguage(Texts::noop("Subcommands")));
        translateHelp(*command);
    }
}

Option outlineOf(const CLI::Option& option) {
    Option found{.names = {},
                 .value = {},
                 .choices = choicesOf(option.get_type_name()),
                 .description = option.get_description(),
                 .isRequired = option.get_required(),
                 .isRepeated = option.get_items_expected_max() > 1};
    if (!option.nonpositional()) {
        found.value = option.get_name();
        return found;
    }
    for (const std::string& name : option.get_snames())
        found.names.push_back('-' + name);
    for (const std::string& name : option.get_lnames())
        found.names.push_back("--" + name);
    if (option.get_items_expected_max() > 0 && !option.get_lnames().empty())
        found.value = upper(option.get_lnames().front());
    return found;
}

ProgramOutline outlineOf(const CLI::App& program) {
    ProgramOutline outline{.name = program.get_name(),
                           .description = program.get_description(),
                           .options = {},
                           .commands = {},
                           .remarks = {},
                           .examples = {}};
    for (const CLI::Option* option : program.get_options())
        if (!option->get_group().empty()) // hidden ones have no group
            outline.options.push_back(outlineOf(*option));
    collect(program, {}, outline);
    return outline;
}

std::string writeManual(const ProgramOutline& program, const std::string& form) {
    return form == "bash"   ? bash(program)
           : form == "zsh"  ? zsh(program)
           : form == "fish" ? fish(program)
                            : manPage(program);
}

} // namespace tessellar
