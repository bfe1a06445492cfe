#include "platform/background_file.h"

#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <utility>
#include <vector>

namespace tessellar {

struct BackgroundFile::State {
    explicit State(StoredFile stored) : file(std::move(stored)) {}

    /// On the worker: writes unless a newer write is pending. That one has a turn of its own, so that
    /// it does not overtake earlier writes of other files.
    void write(Ticket turn);
    /// On the worker: carries out the pending write, if any, whenever its turn would be.
    void writeNext(std::unique_lock<std::mutex>& lock);
    /// On the main thread: calls back those whose writes have finished.
    void tell();

    mutable std::mutex mutex;
    mutable std::condition_variable changed; ///< signals `finished`
    Encode next;                             ///< empty if none is pending
    Ticket handedOver = 0;
    Ticket finished = 0;
    Ticket succeeded = 0; ///< all writes up to it are on the disk, or superseded by one that is
    Result last;

    /// Used by the worker while a write is unfinished, otherwise by the main thread.
    StoredFile file;

    // Main thread only.
    std::vector<std::pair<Ticket, Done>> waiting;
};

void BackgroundFile::State::write(Ticket turn) {
    std::unique_lock lock(mutex);
    if (turn == handedOver)
        writeNext(lock);
}

void BackgroundFile::State::writeNext(std::unique_lock<std::mutex>& lock) {
    if (!next)
        return;
    const Ticket turn = handedOver;
    Encode encode = std::exchange(next, nullptr);
    lock.unlock();
    const auto bytes = encode();
    encode = nullptr;
    const Result written = bytes ? file.write(*bytes) : Result(std::unexpected(bytes.error()));
    lock.lock();
    finished = turn;
    if (written)
        succeeded = turn;
    last = written;
    changed.notify_all();
}

void BackgroundFile::State::tell() {
    for (;;) {
        std::unique_lock lock(mutex);
        const auto done =
            std::ranges::find_if(waiting, [this](const auto& each) { return each.first <= finished; });
        if (done == waiting.end())
            return;
        const Result result = done->first <= succeeded ? Result() : last;
        auto call = std::move(done->second);
        waiting.erase(done);
        lock.unlock();
        call(result);
    }
}

BackgroundFile::BackgroundFile(WorkerPool& workers, StoredFile file)
    : _workers(&workers), _path(file.path()), _state(std::make_shared<State>(std::move(file))) {}

BackgroundFile::~BackgroundFile() {
    if (_state)
        _state->waiting.clear();
}

BackgroundFile::Ticket BackgroundFile::write(Encode encode) {
    Ticket ticket = 0;
    {
        const std::lock_guard lock(_state->mutex);
        ticket = ++_state->handedOver;
        _state->next = std::move(encode);
    }
    _workers->submit(Lane::saving, {},
                     [state = _state, ticket, &mailbox = _workers->mailbox()](std::stop_token) {
                         state->write(ticket);
                         mailbox.post([weak = std::weak_ptr(state)] {
                             if (const auto alive = weak.lock())
                                 alive->tell();
                         });
                     });
    return ticket;
}

std::optional<BackgroundFile::Result> BackgroundFile::result(Ticket ticket) const {
    const std::lock_guard lock(_state->mutex);
    if (ticket <= _state->succeeded)
        return Result();
    return ticket <= _state->finished ? std::optional(_state->last) : std::nullopt;
}

std::optional<FileError> BackgroundFile::lastError() const {
    const std::lock_guard lock(_state->mutex);
    return _state->last ? std::nullopt : std::optional(_state->last.error());
}

BackgroundFile::Result BackgroundFile::wait() const {
    std::unique_lock lock(_state->mutex);
    _state->changed.wait(lock, [this] { return _state->finished == _state->handedOver; });
    return _state->last;
}

std::function<BackgroundFile::Result()> BackgroundFile::written() const {
    const std::lock_guard lock(_state->mutex);
    return [state = _state, ticket = _state->handedOver] {
        std::unique_lock turn(state->mutex);
        if (state->finished < ticket)
            state->writeNext(turn);
        return ticket <= state->succeeded ? Result() : state->last;
    };
}

std::function<BackgroundFile::Result(const QByteArray&)> BackgroundFile::writer() const {
    return [state = _state](const QByteArray& bytes) {
        const Result written = state->file.write(bytes);
        const std::lock_guard lock(state->mutex);
        state->last = written;
        return written;
    };
}

void BackgroundFile::whenWritten(Done done) {
    {
        const std::lock_guard lock(_state->mutex);
        _state->waiting.emplace_back(_state->handedOver, std::move(done));
    }
    // Through the mailbox even if everything is written: callers do not expect a callback during the
    // call.
    _workers->mailbox().post([weak = std::weak_ptr(_state)] {
        if (const auto alive = weak.lock())
            alive->tell();
    });
}

std::expected<std::optional<QByteArray>, FileError> BackgroundFile::read() {
    (void)wait();
    return _state->file.read();
}

std::expected<QString, FileError> BackgroundFile::setAside(const Clock& clock, const QUuid& tag) {
    (void)wait();
    return _state->file.setAside(clock, tag);
}

void BackgroundFile::forget() {
    (void)wait();
    _state->file.forget();
    const std::lock_guard lock(_state->mutex);
    _state->last = {};
    _state->succeeded = _state->finished;
}

} // namespace tessellar
