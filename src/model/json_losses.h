#pragma once

#include <QtGlobal>

#include <utility>

namespace tessellar::json {

/// While it lives, counts what tolerant decoders on this thread drop: folder contents in no known form.
/// Back up a file that lost something before overwriting it.
class Losses {
public:
    Losses() : _outer(std::exchange(_current, this)) {}
    ~Losses() { _current = _outer; }
    Losses(const Losses&) = delete;
    Losses& operator=(const Losses&) = delete;

    qsizetype count() const { return _count; }
    /// Called by decoders.
    static void note() {
        for (Losses* losses = _current; losses; losses = losses->_outer)
            ++losses->_count;
    }

private:
    static inline thread_local Losses* _current = nullptr;
    Losses* _outer;
    qsizetype _count = 0;
};

/// A decoded value, and whether anything was dropped.
template <typename T>
struct MaybeLossy {
    T value;
    bool isLossy = false;
};

} // namespace tessellar::json
