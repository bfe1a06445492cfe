#include "control/command_set.h"

#include "control/manual.h"
#include "control/usage_error.h"
#include "platform/texts.h"

namespace tessellar {

std::span<const GlobalOption> globalOptions() {
    static constexpr GlobalOption options[] = {
        {"--root", "DIR", Texts::noop("The machine is the folder DIR, which holds a Mac's layout")},
        {"--home", "PATH", Texts::noop("The user's home, if the machine has several")},
        {"--mode", "MODE", Texts::noop("The display mode: fullScreen (the default) or windowed")},
        {"--locale", "ID", Texts::noop("The user's locale, such as de_DE")},
        {"--now", "DATE", Texts::noop("The time to use instead of now, such as 2026-11-14T21:05:40Z")},
        {"--json", nullptr, Texts::noop("Answer with a JSON document")},
        {"--version", nullptr, Texts::noop("Print the version and exit")},
        {"--help", nullptr, Texts::noop("List the commands and exit")},
    };
    return options;
}

static std::string beforeTheCommand() {
    std::string text = Texts::tr("Before the command:").toStdString() + '\n';
    for (const GlobalOption& option : globalOptions()) {
        std::string line = std::string("  ") + option.name;
        if (option.value)
            line += std::string(" ") + option.value;
        line.resize(30, ' ');
        text += line + Texts::tr(option.description).toStdString() + '\n';
    }
    return text + '\n' +
           Texts::tr("batch FILE takes one command a line from a file, or with - from standard input.\n"
                     "The exit status is 0 when it was done, 1 when it was refused or failed, "
                     "2 for wrong usage.")
               .toStdString();
}

CommandSet::CommandSet()
    : _parser(Texts::noop("Everything that the launcher can do without a pointer."), "tessellarctl") {
    _parser.require_subcommand(1);
    addLayoutCommands(*this);
    addArrangementCommands(*this);
    addEditingCommands(*this);
    addActionCommands(*this);
    addInformationCommands(*this);
    addLibraryCommands(*this);
    addMemoryCommands(*this);
    addSettingsCommands(*this);
    addSmartFolderCommands(*this);
    addUpdateCommands(*this);
    addCleanupCommands(*this);
    translateHelp(_parser);
    _parser.footer(beforeTheCommand()); // last: subcommands would inherit it
}

QString valueText(const QJsonValue& value) {
    if (value.isString())
        return value.toString();
    const QByteArray list = json::writeCompact(QJsonArray{value});
    return QString::fromUtf8(list.sliced(1, list.size() - 2));
}

CLI::App* CommandSet::add(const char* name, const char* description, CLI::App* parent) {
    return (parent ? parent : &_parser)->add_subcommand(name, description);
}

CLI::App* CommandSet::addGroup(const char* name, const char* description) {
    CLI::App* group = add(name, description);
    group->require_subcommand(1);
    return group;
}

void CommandSet::onRun(CLI::App* command, CommandNeeds needs, Run run) {
    command->callback([this, needs, run = std::move(run)] { _parsed = Parsed{needs, run}; });
}

static const CLI::App* commandNamed(const CLI::App& parent, const QString& name) {
    const auto found = parent.get_subcommands([wanted = name.toStdString()](const CLI::App* command) {
        return command->get_name() == wanted;
    });
    return found.empty() ? nullptr : found.front();
}

std::optional<QString> CommandSet::nameFailure(const QStringList& words) const {
    if (words.isEmpty())
        return Texts::tr("Name a command; tessellarctl --help lists them.");
    const QString& name = words.first();
    if (name.startsWith(u'-'))
        return std::nullopt;
    const CLI::App* command = commandNamed(_parser, name);
    if (!command)
        return Texts::tr("There is no command “%1”; tessellarctl --help lists them.")
            .arg(name.left(80));
    const QString next = words.value(1);
    if (command->get_require_subcommand_min() == 0 || commandNamed(*command, next) ||
        next == u"--help" || next == u"-h")
        return std::nullopt;
    QStringList names;
    for (const CLI::App* one : command->get_subcommands({}))
        names.append(QString::fromStdString(one->get_name()));
    return Texts::tr("“%1” takes one of these words: %2.").arg(name, names.join(QStringLiteral(", ")));
}

std::expected<CommandSet::Parsed, CommandSet::Failure> CommandSet::parse(const QStringList& words) {
    if (const auto failure = nameFailure(words))
        return std::unexpected(Failure{ExitStatus::wrongUsage, *failure});
    std::vector<std::string> reversed; // the order that CLI11 expects
    for (auto it = words.rbegin(); it != words.rend(); ++it)
        reversed.push_back(it->toStdString());
    try {
        _parser.parse(std::move(reversed));
    } catch (const CLI::CallForHelp&) {
        return std::unexpected(Failure{ExitStatus::done, help()});
    } catch (const CLI::ParseError& error) {
        return std::unexpected(
            Failure{ExitStatus::wrongUsage, usageSentence(QString::fromUtf8(error.what()))});
    }
    if (!_parsed)
        return std::unexpected(Failure{ExitStatus::wrongUsage, help()});
    return *std::move(_parsed);
}

} // namespace tessellar
