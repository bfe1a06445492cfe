#pragma once

#include <memory>
#include <stop_token>
#include <utility>

namespace tessellar {

/// Something under way or still to come: background work, a delayed call, a request. Destroying or
/// cancelling it ends it: once `cancel` has returned on the main thread, no completion is called any
/// more. Movable; a default-constructed one stands for nothing.
class Task {
public:
    /// What is under way; destroying it ends it.
    class Pending {
    public:
        virtual ~Pending() = default;
        virtual bool isActive() const { return true; }
    };

    Task() = default;
    explicit Task(std::unique_ptr<Pending> pending) : _pending(std::move(pending)) {}
    /// Work that is asked to stop.
    explicit Task(std::stop_source stop) : _pending(std::make_unique<Stopping>(std::move(stop))) {}

    void cancel() { _pending.reset(); }
    /// Background work does not tell its end: it stays active until it is cancelled.
    bool isActive() const { return _pending && _pending->isActive(); }

private:
    class Stopping final : public Pending {
    public:
        explicit Stopping(std::stop_source stop) : _stop(std::move(stop)) {}
        ~Stopping() override { _stop.request_stop(); }

    private:
        std::stop_source _stop;
    };

    std::unique_ptr<Pending> _pending;
};

} // namespace tessellar
