#pragma once

#include <cstddef>
#include <memory>
#include <type_traits>
#include <utility>

namespace tessellar {

/// A move-only callable, which may own move-only values. Replaces std::move_only_function until libc++
/// has it.
template <typename Signature>
class MoveOnlyFunction;

template <typename Result, typename... Args>
class MoveOnlyFunction<Result(Args...)> {
public:
    MoveOnlyFunction() = default;
    MoveOnlyFunction(std::nullptr_t) {}

    /// Empty if `callable` is a null pointer or an empty std::function.
    template <typename Callable>
    requires(!std::is_same_v<std::remove_cvref_t<Callable>, MoveOnlyFunction> &&
             std::is_invocable_r_v<Result, std::decay_t<Callable>&, Args...>)
        MoveOnlyFunction(Callable&& callable) {
        if constexpr (requires { callable == nullptr; })
            if (callable == nullptr)
                return;
        _held = std::make_unique<Holder<std::decay_t<Callable>>>(std::in_place,
                                                                 std::forward<Callable>(callable));
    }

    explicit operator bool() const { return _held != nullptr; }
    Result operator()(Args... args) { return _held->call(std::forward<Args>(args)...); }

private:
    struct Base {
        virtual ~Base() = default;
        virtual Result call(Args... args) = 0;
    };
    template <typename Callable>
    struct Holder final : Base {
        template <typename From>
        Holder(std::in_place_t, From&& from) : callable(std::forward<From>(from)) {}
        Result call(Args... args) override {
            if constexpr (std::is_void_v<Result>)
                callable(std::forward<Args>(args)...);
            else
                return callable(std::forward<Args>(args)...);
        }

        Callable callable;
    };

    std::unique_ptr<Base> _held;
};

} // namespace tessellar
