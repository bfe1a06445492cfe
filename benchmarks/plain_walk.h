#pragma once

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <condition_variable>
#include <cstring>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace tessellar {

/// Two threads, one list of paths, large reads: nothing that a walk could do without.
inline std::int64_t plainWalk(const std::string& start) {
    std::mutex mutex;
    std::condition_variable changed;
    std::vector<std::string> pending{start};
    int busy = 0;
    std::int64_t total = 0;
    const auto work = [&] {
        alignas(dirent64) static thread_local std::array<char, 64 * 1024> buffer;
        std::vector<std::string> found;
        std::int64_t entries = 0;
        std::unique_lock lock(mutex);
        while (true) {
            changed.wait(lock, [&] { return !pending.empty() || busy == 0; });
            if (pending.empty())
                break;
            const std::string path = std::move(pending.back());
            pending.pop_back();
            ++busy;
            lock.unlock();
            const int folder = ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
            for (ssize_t size; (size = ::getdents64(folder, buffer.data(), buffer.size())) > 0;) {
                for (const char* at = buffer.data(); at < buffer.data() + size;) {
                    const auto* entry = reinterpret_cast<const dirent64*>(at);
                    at += entry->d_reclen;
                    if (std::strcmp(entry->d_name, ".") == 0 || std::strcmp(entry->d_name, "..") == 0)
                        continue;
                    ++entries;
                    if (entry->d_type == DT_DIR)
                        found.push_back(path + '/' + entry->d_name);
                }
            }
            ::close(folder);
            lock.lock();
            --busy;
            std::move(found.begin(), found.end(), std::back_inserter(pending));
            found.clear();
            changed.notify_all();
        }
        total += entries;
        changed.notify_all();
    };
    std::jthread other(work);
    work();
    other.join();
    return total;
}

} // namespace tessellar
