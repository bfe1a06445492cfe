#pragma once

#include "platform/machine.h"

#include <expected>

namespace tessellar {

/// Runs AppleScript. An interface, so that tests can answer as a Finder.
class AppleScriptInterpreter {
public:
    struct Error {
        enum class Kind {
            missing,     ///< there is no interpreter on this machine
            notCompiled, ///< the script is no script
            failed,
            cancelled, ///< a stop was requested, or the time was up
        };
        Kind kind = Kind::failed;
        std::optional<int> number; ///< the system's own; its words are in the user's language
        QString words;

        bool operator==(const Error&) const = default;
    };

    virtual ~AppleScriptInterpreter() = default;
    virtual bool isAvailable() const = 0;
    /// What the script returns, as UTF-8. Blocks; any thread.
    virtual std::expected<QByteArray, Error> run(const QByteArray& script, std::stop_token stop) = 0;
};

/// The Mac's /usr/bin/osascript, looked for inside the file system's root, with the script on its
/// standard input.
class OsascriptInterpreter final : public AppleScriptInterpreter {
public:
    explicit OsascriptInterpreter(Machine& machine);

    bool isAvailable() const override;
    std::expected<QByteArray, Error> run(const QByteArray& script, std::stop_token stop) override;

private:
    const FileSystem& _files;
    CommandRunner& _commands;
    std::map<QByteArray, QByteArray> _environment;
};

/// The text as a literal with its quotes: backslash, quote and line breaks are escaped.
QByteArray appleScriptLiteral(const QByteArray& text);

} // namespace tessellar
