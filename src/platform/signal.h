#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace tessellar {

/// A listener's connection to a signal. Destroying it unsubscribes; it may outlive the signal. Movable;
/// empty when default-constructed.
class [[nodiscard]] Subscription {
public:
    Subscription() = default;
    explicit Subscription(std::shared_ptr<void> listener) : _listener(std::move(listener)) {}
    Subscription(Subscription&&) = default;
    Subscription& operator=(Subscription&&) = default;

    void cancel() { _listener.reset(); }
    bool isActive() const { return _listener != nullptr; }

private:
    std::shared_ptr<void> _listener;
};

/// Calls listeners in the order in which they connected. During a notification a listener may connect
/// others (first called the next time), unsubscribe itself or others (no longer called), notify again,
/// or destroy the signal (the rest are not called). Main thread only.
template <typename... Args>
class Signal {
public:
    using Listener = std::function<void(Args...)>;

    Signal() = default;
    ~Signal() { _state->listeners.clear(); }
    Signal(const Signal&) = delete;
    Signal& operator=(const Signal&) = delete;

    [[nodiscard]] Subscription connect(Listener listener) {
        auto held = std::make_shared<Listener>(std::move(listener));
        _state->listeners.push_back(held);
        return Subscription(std::move(held));
    }

    void notify(const Args&... args) {
        const std::shared_ptr<State> state = _state; // outlives the signal
        const std::size_t count = state->listeners.size();
        ++state->depth;
        // By index: connecting grows the list, and destroying the signal empties it.
        for (std::size_t i = 0; i < std::min(count, state->listeners.size()); ++i)
            if (const auto listener = state->listeners[i].lock())
                (*listener)(args...);
        if (--state->depth == 0)
            std::erase_if(state->listeners, [](const auto& listener) { return listener.expired(); });
    }

private:
    struct State {
        std::vector<std::weak_ptr<Listener>> listeners;
        int depth = 0; ///< of running notifications, during which indices must stay valid
    };

    std::shared_ptr<State> _state = std::make_shared<State>();
};

} // namespace tessellar
