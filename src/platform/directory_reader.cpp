#include "platform/directory_reader.h"

#include "platform/descriptor.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <array>
#include <cstddef>
#include <cstring>

namespace tessellar {
namespace {

bool isDots(const char* name) {
    return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
}

FileType typeOf(int directory, const char* name, unsigned char type) {
    switch (type) {
    case DT_REG:
        return FileType::regular;
    case DT_DIR:
        return FileType::directory;
    case DT_LNK:
        return FileType::symbolicLink;
    case DT_UNKNOWN: {
        struct stat status {};
        if (::fstatat(directory, name, &status, AT_SYMLINK_NOFOLLOW) != 0)
            return FileType::other;
        return S_ISREG(status.st_mode)   ? FileType::regular
               : S_ISDIR(status.st_mode) ? FileType::directory
               : S_ISLNK(status.st_mode) ? FileType::symbolicLink
                                         : FileType::other;
    }
    default:
        return FileType::other;
    }
}

} // namespace

#ifdef __linux__

struct DirectoryReader::State {
    int directory = -1;
    std::vector<Entry> entries;
    alignas(dirent64) std::array<char, 64 * 1024> buffer;
};

void DirectoryReader::begin(int directory) { _state->directory = directory; }

std::expected<std::span<const DirectoryReader::Entry>, int> DirectoryReader::next() {
    State& state = *_state;
    state.entries.clear();
    while (state.entries.empty()) {
        const ssize_t size = retrying(
            [&] { return ::getdents64(state.directory, state.buffer.data(), state.buffer.size()); });
        // Listing an open folder that has been removed gives ENOENT: it is empty.
        if (size == 0 || (size < 0 && errno == ENOENT))
            break;
        if (size < 0)
            return std::unexpected(errno);
        for (const char* at = state.buffer.data(); at < state.buffer.data() + size;) {
            unsigned short length = 0;
            std::memcpy(&length, at + offsetof(dirent64, d_reclen), sizeof length);
            const char* name = at + offsetof(dirent64, d_name);
            const auto type = static_cast<unsigned char>(at[offsetof(dirent64, d_type)]);
            if (!isDots(name))
                state.entries.push_back({name, std::strlen(name), typeOf(state.directory, name, type)});
            at += length;
        }
    }
    return std::span<const Entry>(state.entries);
}

#else

struct DirectoryReader::State {
    std::unique_ptr<DIR, int (*)(DIR*)> stream{nullptr, ::closedir};
    int error = 0;
    Entry entry;
};

void DirectoryReader::begin(int directory) {
    Descriptor copy(::openat(directory, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    _state->stream.reset(copy ? ::fdopendir(copy.get()) : nullptr);
    _state->error = _state->stream ? 0 : errno;
    if (_state->stream)
        copy.release();
}

std::expected<std::span<const DirectoryReader::Entry>, int> DirectoryReader::next() {
    State& state = *_state;
    while (state.error == 0) {
        errno = 0;
        const dirent* read = ::readdir(state.stream.get());
        if (!read) {
            state.error = errno;
            break;
        }
        if (isDots(read->d_name))
            continue;
        state.entry = {read->d_name, std::strlen(read->d_name),
                       typeOf(::dirfd(state.stream.get()), read->d_name, read->d_type)};
        return std::span<const Entry>(&state.entry, 1);
    }
    if (state.error != 0)
        return std::unexpected(state.error);
    return std::span<const Entry>();
}

#endif

DirectoryReader::DirectoryReader() : _state(std::make_unique_for_overwrite<State>()) {}
DirectoryReader::~DirectoryReader() = default;

} // namespace tessellar
