#pragma once

#include "platform/clock.h"
#include "platform/scheduler.h"

#include <atomic>
#include <map>
#include <memory>

namespace tessellar::test {

/// A clock and a scheduler that move together, by hand: `advance` runs what falls due on the way, in
/// order.
class ManualTime final : public Clock, public Scheduler {
public:
    explicit ManualTime(Instant start = *Instant::fromIso8601(u"2026-11-14T21:05:40Z")) : _now(start) {}

    Instant now() const override { return _now.load(); }
    /// Moves the clock alone, as a user who sets it does; delays go on as they were.
    void setNow(Instant now) { _now = now; }

    [[nodiscard]] Timer after(std::chrono::milliseconds delay, MoveOnlyFunction<void()> call) override {
        const Key key{_elapsed + delay, _sequence++};
        _queue->emplace(key, std::move(call));
        return Timer(std::make_unique<Entry>(_queue, key));
    }

    void advance(std::chrono::milliseconds by) {
        const auto end = _elapsed + by;
        while (!_queue->empty() && _queue->begin()->first.first <= end) {
            auto node = _queue->extract(_queue->begin());
            moveTo(node.key().first);
            node.mapped()();
        }
        moveTo(end);
    }

    std::size_t pendingCount() const { return _queue->size(); }

private:
    using Key = std::pair<std::chrono::milliseconds, std::uint64_t>;
    using Queue = std::map<Key, MoveOnlyFunction<void()>>;

    class Entry final : public Timer::Pending {
    public:
        Entry(std::shared_ptr<Queue> queue, Key key) : _queue(std::move(queue)), _key(key) {}
        ~Entry() override { _queue->erase(_key); }
        bool isActive() const override { return _queue->contains(_key); }

    private:
        std::shared_ptr<Queue> _queue;
        Key _key;
    };

    void moveTo(std::chrono::milliseconds elapsed) {
        _now = _now.load() + std::chrono::duration<double>(elapsed - _elapsed);
        _elapsed = elapsed;
    }

    std::atomic<Instant> _now; ///< workers look at it
    std::chrono::milliseconds _elapsed{0};
    std::uint64_t _sequence = 0;
    std::shared_ptr<Queue> _queue = std::make_shared<Queue>();
};

} // namespace tessellar::test
