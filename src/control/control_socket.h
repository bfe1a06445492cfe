#pragma once

#include "control/command_interpreter.h"

#include <QString>

#include <memory>

class QLocalServer;
class QLocalSocket;

namespace tessellar {

/// Where the launcher that is running listens: a socket in the application's folder, or, where that
/// path is too long for a socket's address, in a folder of the user's alone below /tmp. Empty when
/// neither can be.
///
/// What passes is one JSON object a line. A request: {"words": […], "options": {…}}; the answers to it:
/// {"out": text} and {"error": text} as they come, then {"status": number}. A line is at most 1 MiB,
/// one request is carried out at a time on a connection, {"stop":true} asks for the end of it, and a
/// client that leaves ends what it asked for; where it left before it was heard, nothing is done.
/// {"ping":true} is answered at once with {"pong":true}, also while a request is carried out. A client
/// that leaves 64 MiB of answers unread is cut off.
QString controlSocketPath(const Machine& machine);

/// Listens for commands on behalf of the launcher that is running, which holds the lock of its folder.
class ControlServer {
public:
    ControlServer(const Machine& machine, CommandExecutor& executor);
    ~ControlServer();

    /// False when nothing can be heard: the launcher works without.
    bool listen();

private:
    class Connection;

    const Machine& _machine;
    CommandExecutor& _executor;
    std::unique_ptr<QLocalServer> _server;
};

/// Hands commands to the launcher that is running. One that is heard of no more for half a minute (it
/// was stopped, say) has refused the command.
class RemoteExecutor final : public CommandExecutor {
public:
    ~RemoteExecutor() override;
    /// Nothing when no launcher listens.
    static std::unique_ptr<RemoteExecutor> connect(const Machine& machine);

    void run(const QStringList& words, const CommandOptions& options, CommandOutput output) override;

private:
    RemoteExecutor(std::unique_ptr<QLocalSocket> socket, Scheduler& scheduler);
    void read();
    void awaitSign();
    void stop(Unwanted why);
    void end(const QString& error); ///< nothing for none

    std::unique_ptr<QLocalSocket> _socket;
    Scheduler& _scheduler;
    CommandOutput _output;
    Timer _patience;
    int _unanswered = 0; ///< pings
    bool _isRunning = false;
};

} // namespace tessellar
