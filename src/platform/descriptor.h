#pragma once

#include <unistd.h>

#include <cerrno>
#include <utility>

namespace tessellar {

/// Owns a file descriptor; -1 stands for none.
class Descriptor {
public:
    Descriptor() = default;
    explicit Descriptor(int descriptor) : _descriptor(descriptor) {}
    Descriptor(Descriptor&& other) noexcept : _descriptor(std::exchange(other._descriptor, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(_descriptor, other._descriptor);
        return *this;
    }
    /// Preserves errno, so that it may run between a failure and its report.
    ~Descriptor() {
        if (_descriptor >= 0) {
            const int kept = errno;
            ::close(_descriptor);
            errno = kept;
        }
    }

    int get() const { return _descriptor; }
    int release() { return std::exchange(_descriptor, -1); }
    explicit operator bool() const { return _descriptor >= 0; }

private:
    int _descriptor = -1;
};

/// Retries while interrupted by a signal (EINTR); for calls that return -1 and set errno.
template <typename Call>
auto retrying(Call call) {
    auto result = call();
    while (result == -1 && errno == EINTR)
        result = call();
    return result;
}

} // namespace tessellar
