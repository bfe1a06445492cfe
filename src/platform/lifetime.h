#pragma once

#include <memory>
#include <utility>

namespace tessellar {

/// Lets a callback detect that its owner was destroyed. Make it a member of the owner; owner's thread
/// only.
class Lifetime {
public:
    Lifetime() = default;
    Lifetime(const Lifetime&) = delete;
    Lifetime& operator=(const Lifetime&) = delete;

    /// Expires with the owner.
    std::weak_ptr<const void> watch() const { return _token; }
    /// Wraps a call; does nothing once the owner is destroyed.
    template <typename Call>
    auto guard(Call call) const {
        return [alive = watch(), call = std::move(call)](auto&&... arguments) mutable {
            if (!alive.expired())
                call(std::forward<decltype(arguments)>(arguments)...);
        };
    }

private:
    std::shared_ptr<const void> _token = std::make_shared<char>();
};

} // namespace tessellar
