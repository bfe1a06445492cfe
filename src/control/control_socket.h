#pragma once

#include "control/command_interpreter.h"

#include <QString>

#include <memory>

class QLocalServer;
class QLocalSocket;

namespace tessellar {

/// The running launcher's socket: in the application's folder or, if that path is too long for a socket
/// address, in a private folder in /tmp. Empty if neither is possible.
///
/// The protocol is one JSON object per line. Request: {"words": […]} with the global options beside it
/// ("json", "mode", "directory", …); replies: any number of {"out": text} and {"error": text}, then
/// {"status": number}. Lines are limited to 1 MiB, and each connection runs one request at a time.
/// {"stop":true} asks to end it, {"leave":true} says that nobody waits for it; disconnecting is the
/// same as leaving, or drops it if it has not started. {"ping":true} is answered with {"pong":true}
/// immediately, even while a request runs. Clients with 64 MiB of unread replies are disconnected.
QString controlSocketPath(const Machine& machine);

/// Accepts commands for the running launcher, which holds the lock of its folder.
class ControlServer {
public:
    ControlServer(const Machine& machine, CommandExecutor& executor);
    ~ControlServer();

    /// False if it cannot listen; the launcher works without it.
    bool listen();

private:
    class Connection;

    const Machine& _machine;
    CommandExecutor& _executor;
    std::unique_ptr<QLocalServer> _server;
};

/// Sends commands to the running launcher. If that does not respond for half a minute (because it is
/// suspended, say), the command fails.
class RemoteExecutor final : public CommandExecutor {
public:
    ~RemoteExecutor() override;
    /// Null if no launcher is listening.
    static std::unique_ptr<RemoteExecutor> connect(const Machine& machine);

    void run(const QStringList& words, const CommandOptions& options, CommandOutput output) override;

private:
    RemoteExecutor(std::unique_ptr<QLocalSocket> socket, Scheduler& scheduler);
    void read();
    /// Pings the launcher regularly; fails the command if it no longer answers.
    void watchForSilence();
    void stop(Cancellation why);
    void end(const QString& error); ///< empty if there is none

    std::unique_ptr<QLocalSocket> _socket;
    Scheduler& _scheduler;
    CommandOutput _output;
    Timer _patience;
    int _unanswered = 0; ///< number of pings
    bool _isRunning = false;
};

} // namespace tessellar
