#pragma once

#include <QByteArray>

#include <expected>
#include <functional>
#include <memory>

namespace tessellar {

/// What a connection to the helper tells, on a thread of its own, any of it more than once or never.
struct HelperConnectionHandlers {
    std::function<void(const QByteArray&)> reply;
    std::function<void()> interrupted; ///< the helper or the way to it failed
    std::function<void()> invalidated; ///< the connection is closed
};

/// One connection, for one request. Once it is destroyed, no handler is called.
class HelperConnection {
public:
    virtual ~HelperConnection() = default;
    /// The helper's first message, a `HelperChallenge`.
    virtual const QByteArray& challenge() const = 0;
    virtual void send(const QByteArray& message, HelperConnectionHandlers handlers) = 0;
    /// Tells the helper that it is enough, after `send`: its reply says how far it came. Any thread.
    virtual void stop() = 0;
};

/// The way to the helper. Errors are one sentence for the log; people are told that it could not be
/// reached.
class HelperTransport {
public:
    virtual ~HelperTransport() = default;
    virtual std::expected<std::unique_ptr<HelperConnection>, QString> connect() = 0;
};

/// Through a local socket whose listening end must belong to `owner`, root unless a test says
/// otherwise.
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
