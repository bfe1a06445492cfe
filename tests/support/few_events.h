#pragma once

#include "platform/directory_events.h"

#include <atomic>
#include <cerrno>

namespace tessellar::test {

/// The system's notices, with so many watches at a time, and word of volumes when a test says so.
class FewEvents final : public DirectoryEvents {
public:
    explicit FewEvents(int count) : _left(count) {}
    std::expected<int, int> add(const QByteArray& path) override {
        if (_left == 0)
            return std::unexpected(ENOSPC);
        auto watch = _events->add(path);
        _left -= watch ? 1 : 0;
        return watch;
    }
    void remove(int watch) override {
        _events->remove(watch);
        ++_left;
    }
    QList<Event> wait() override {
        auto events = _events->wait();
        if (_mounted.exchange(false))
            events.append({.kind = Event::Kind::mounted});
        return events;
    }
    void wake() override { _events->wake(); }
    void mount() {
        _mounted = true;
        wake();
    }

private:
    std::unique_ptr<DirectoryEvents> _events = makeDirectoryEvents();
    int _left;
    std::atomic<bool> _mounted = false;
};

} // namespace tessellar::test
