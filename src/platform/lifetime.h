#pragma once

#include <memory>
#include <utility>

namespace tessellar {

/// Lets a callback that may outlive its owner see that the owner is gone. A member of the owner; on the
/// owner's thread.
class Lifetime {
public:
    Lifetime() = default;
    Lifetime(const Lifetime&) = delete;
    Lifetime& operator=(const Lifetime&) = delete;

    /// Expires with the owner.
    std::weak_ptr<const void> watch() const { return _token; }
    /// The call, or nothing once the owner is gone.
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
