#pragma once

#include <QByteArray>

#include <expected>
#include <functional>
#include <memory>

namespace tessellar {

/// Callbacks of a connection, on its own thread; each may be called any number of times.
struct HelperConnectionHandlers {
    std::function<void(const QByteArray&)> reply;
    std::function<void()> interrupted; ///< the helper or the connection failed
    std::function<void()> invalidated; ///< the connection is closed
};

/// One connection, for one request. No handler is called after its destruction.
class HelperConnection {
public:
    virtual ~HelperConnection() = default;
    /// The helper's first message, a `HelperChallenge`.
    virtual const QByteArray& challenge() const = 0;
    virtual void send(const QByteArray& message, HelperConnectionHandlers handlers) = 0;
    /// Asks the helper to stop, after `send`; the reply reports what was done. Thread-safe.
    virtual void stop() = 0;
};

/// Connects to the helper. Errors are one sentence for the log; users are only told that it is
/// unreachable.
class HelperTransport {
public:
    virtual ~HelperTransport() = default;
    virtual std::expected<std::unique_ptr<HelperConnection>, QString> connect() = 0;
};

/// Connects to a local socket that must belong to `owner`: root, except in tests.
class LocalSocketTransport final : public HelperTransport {
public:
    explicit LocalSocketTransport(QByteArray socketHostPath, std::uint32_t owner = 0)
        : _path(std::move(socketHostPath)), _owner(owner) {}

    std::expected<std::unique_ptr<HelperConnection>, QString> connect() override;

private:
    QByteArray _path;
    std::uint32_t _owner;
};

} // namespace tessellar
