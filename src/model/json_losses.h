#pragma once

#include <QtGlobal>

#include <utility>

namespace tessellar::json {

/// Counts what the tolerant decoders on this thread leave out while it lives: the contents of a folder
/// in no form that a folder ever had. A file that was not read whole is to be kept before anything is
/// saved over it.
class Losses {
public:
    Losses() : _outer(std::exchange(_current, this)) {}
    ~Losses() { _current = _outer; }
    Losses(const Losses&) = delete;
    Losses& operator=(const Losses&) = delete;

    qsizetype count() const { return _count; }
    /// For decoders.
    static void note() {
        for (Losses* losses = _current; losses; losses = losses->_outer)
            ++losses->_count;
    }

private:
    static inline thread_local Losses* _current = nullptr;
    Losses* _outer;
    qsizetype _count = 0;
};

/// What was read, perhaps with something left out.
template <typename T>
struct MaybeLossy {
    T value;
    bool isLossy = false;
};

} // namespace tessellar::json
