#pragma once

#include <memory>
#include <stop_token>
#include <utility>

namespace tessellar {

/// A handle to background work, a delayed call or a request. Destroying or cancelling it cancels the
/// work: once `cancel` has returned on the main thread, no completion is called. Movable; empty when
/// default-constructed.
class Task {
public:
    /// The work itself; destroying it cancels it.
    class Pending {
    public:
        virtual ~Pending() = default;
        virtual bool isActive() const { return true; }
    };

    Task() = default;
    explicit Task(std::unique_ptr<Pending> pending) : _pending(std::move(pending)) {}
    /// Work that is cancelled through a stop token.
    explicit Task(std::stop_source stop) : _pending(std::make_unique<Stopping>(std::move(stop))) {}

    void cancel() { _pending.reset(); }
    /// Stays true for background work until it is cancelled, even once it is done.
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
