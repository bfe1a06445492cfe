#include "cleanup/apple_script_interpreter.h"

#include <QRegularExpression>

namespace tessellar {
namespace {

const QString tool = QStringLiteral("/usr/bin/osascript");
/// Long enough for the user to answer the system's prompts.
constexpr std::chrono::minutes longestRun{10};
constexpr std::uint64_t maximumOutput = 4u << 20;

/// The compiler's error numbers.
bool isOfCompiler(int number) { return number <= -2740 && number >= -2763; }

AppleScriptInterpreter::Error errorIn(const QByteArray& standardError) {
    static const QRegularExpression numberAtEnd(QStringLiteral("\\((-?\\d{1,9})\\)\\s*$"));
    AppleScriptInterpreter::Error error{.words = trimmed(QString::fromUtf8(standardError.right(4096)))};
    if (const auto match = numberAtEnd.match(error.words); match.hasMatch()) {
        error.number = match.captured(1).toInt();
        if (isOfCompiler(*error.number))
            error.kind = AppleScriptInterpreter::Error::Kind::notCompiled;
    }
    return error;
}

} // namespace

OsascriptInterpreter::OsascriptInterpreter(Machine& machine)
    : _files(machine.files), _commands(machine.commands), _environment(machine.environment) {}

bool OsascriptInterpreter::isAvailable() const { return _files.isExecutableFile(tool); }

std::expected<QByteArray, OsascriptInterpreter::Error>
OsascriptInterpreter::run(const QByteArray& script, std::stop_token stop) {
    const CommandResult result = _commands.run({.executable = _files.hostPath(tool),
                                                .arguments = {QByteArrayLiteral("-")},
                                                .environment = _environment,
                                                .timeout = longestRun,
                                                .maximumOutput = maximumOutput,
                                                .input = script},
                                               stop);
    using Outcome = CommandResult::Outcome;
    if (result.succeeded())
        return result.standardOutput;
    if (result.outcome == Outcome::couldNotLaunch)
        return std::unexpected(Error{.kind = Error::Kind::missing});
    if (result.outcome == Outcome::cancelled || result.outcome == Outcome::timedOut)
        return std::unexpected(Error{.kind = Error::Kind::cancelled});
    return std::unexpected(errorIn(result.standardError));
}

QByteArray appleScriptLiteral(const QByteArray& text) {
    QByteArray literal = "\"";
    for (const char c : text) {
        switch (c) {
        case '\\':
        case '"':
            literal += '\\';
            literal += c;
            break;
        case '\r':
            literal += "\\r";
            break;
        case '\n':
            literal += "\\n";
            break;
        default:
            literal += c;
        }
    }
    return literal + '"';
}

} // namespace tessellar
