#pragma once

#include <QByteArray>
#include <QString>

#include <expected>
#include <functional>
#include <mutex>

namespace tessellar {

/// Lets the first of a connection's events through to the one who waits for its reply, and none after
/// it. Any thread.
class XPCReplyGate {
public:
    using Result = std::expected<QByteArray, QString>; ///< the reply, or a sentence
    using Continuation = std::move_only_function<void(Result)>;

    explicit XPCReplyGate(Continuation continuation) : _continuation(std::move(continuation)) {}

    /// All tell whether they were first.
    bool reply(const QByteArray& message) { return resume(message); }
    bool interrupted() {
        return resume(std::unexpected(QStringLiteral("The administrator helper was interrupted.")));
    }
    bool invalidated() {
        return resume(std::unexpected(
            QStringLiteral("The administrator helper connection closed unexpectedly.")));
    }
    bool failed(const QString& sentence) { return resume(std::unexpected(sentence)); }

private:
    bool resume(Result result) {
        Continuation waiting;
        {
            const std::scoped_lock lock(_mutex);
            waiting = std::exchange(_continuation, nullptr);
        }
        if (!waiting)
            return false;
        waiting(std::move(result));
        return true;
    }

    std::mutex _mutex;
    Continuation _continuation;
};

} // namespace tessellar
