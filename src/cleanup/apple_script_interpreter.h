#pragma once

#include "platform/machine.h"

#include <expected>

namespace tessellar {

/// Runs AppleScript. An interface, so that tests can fake it.
class AppleScriptInterpreter {
public:
    struct Error {
        enum class Kind {
            missing,     ///< no interpreter on this machine
            notCompiled, ///< syntax error
            failed,
            cancelled, ///< stopped or timed out
        };
        Kind kind = Kind::failed;
        std::optional<int> number; ///< the system's error number; `words` is localized
        QString words;

        bool operator==(const Error&) const = default;
    };

    virtual ~AppleScriptInterpreter() = default;
    virtual bool isAvailable() const = 0;
    /// The script's result, in UTF-8. Blocks; thread-safe.
    virtual std::expected<QByteArray, Error> run(const QByteArray& script, std::stop_token stop) = 0;
};

/// Runs macOS's /usr/bin/osascript, looked up inside the file system's root, with the script on
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

/// A quoted string literal; escapes backslashes, quotes and line breaks.
QByteArray appleScriptLiteral(const QByteArray& text);

} // namespace tessellar
