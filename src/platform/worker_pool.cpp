#include "platform/worker_pool.h"

#include <QCoreApplication>
#include <QEvent>
#include <QObject>

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <functional>
#include <list>
#include <mutex>
#include <thread>
#include <vector>

namespace tessellar {

namespace {

/// Stands for a mailbox in the event loop of its thread.
class Receiver final : public QObject {
public:
    explicit Receiver(std::function<void()> onPost) : _onPost(std::move(onPost)) {}

    bool event(QEvent* event) override {
        if (event->type() != QEvent::User)
            return QObject::event(event);
        // A call may destroy the mailbox and this object with it.
        const std::function<void()> onPost = _onPost;
        onPost();
        return true;
    }

private:
    std::function<void()> _onPost;
};

} // namespace

struct Mailbox::State {
    std::mutex mutex;
    std::condition_variable posted;
    std::deque<MoveOnlyFunction<void()>> calls;
    std::unique_ptr<Receiver> receiver; ///< none once the mailbox is gone
    bool eventPending = false;

    void eventArrived() {
        {
            const std::lock_guard lock(mutex);
            eventPending = false;
        }
        drain();
    }

    /// Runs what was queued when it began: calls that post calls must not keep the event loop from
    /// its other work. One is taken at a time, so that a drain inside a call goes on where this one is.
    std::size_t drain() {
        std::size_t count = 0;
        std::unique_lock lock(mutex);
        for (std::size_t left = calls.size(); left > 0 && !calls.empty(); --left) {
            MoveOnlyFunction<void()> call = std::move(calls.front());
            calls.pop_front();
            ++count;
            lock.unlock();
            call();
            call = nullptr; // what it holds goes outside the lock
            lock.lock();
        }
        return count;
    }
};

Mailbox::Mailbox() : _state(std::make_shared<State>()) {
    _state->receiver = std::make_unique<Receiver>([state = std::weak_ptr(_state)] {
        if (const auto alive = state.lock())
            alive->eventArrived();
    });
}

Mailbox::~Mailbox() {
    std::unique_ptr<Receiver> receiver;
    std::deque<MoveOnlyFunction<void()>> dropped;
    const std::lock_guard lock(_state->mutex);
    receiver.swap(_state->receiver);
    dropped.swap(_state->calls);
}

void Mailbox::post(MoveOnlyFunction<void()> call) {
    const std::lock_guard lock(_state->mutex);
    if (!_state->receiver)
        return;
    _state->calls.push_back(std::move(call));
    // Posted under the lock, so that the receiver cannot go meanwhile.
    if (!std::exchange(_state->eventPending, true))
        QCoreApplication::postEvent(_state->receiver.get(), new QEvent(QEvent::User));
    _state->posted.notify_one();
}

std::size_t Mailbox::drain() {
    const std::shared_ptr<State> state = _state; // a call may destroy the mailbox
    return state->drain();
}

std::size_t Mailbox::waitAndDrain() {
    const std::shared_ptr<State> state = _state;
    {
        std::unique_lock lock(state->mutex);
        state->posted.wait(lock, [&] { return !state->calls.empty(); });
    }
    return state->drain();
}

namespace {

struct Job {
    std::stop_token requested; ///< by whoever submitted it
    std::stop_source stop;     ///< what the work sees: that, or the end of the pool
    MoveOnlyFunction<void(std::stop_token)> work;
};

} // namespace

struct WorkerPool::State {
    explicit State(Mailbox& box) : mailbox(box) {}

    void runJobs();

    Mailbox& mailbox;
    std::mutex mutex;
    std::condition_variable changed; ///< a job came, or the end
    std::condition_variable idle;
    std::deque<Job> waiting;
    std::list<std::stop_source> running;
    bool ending = false;
    std::vector<std::thread> threads;
};

void WorkerPool::State::runJobs() {
    std::unique_lock lock(mutex);
    for (;;) {
        changed.wait(lock, [&] { return ending || !waiting.empty(); });
        if (waiting.empty())
            return;
        {
            Job job = std::move(waiting.front());
            waiting.pop_front();
            if (ending)
                job.stop.request_stop();
            const auto place = running.insert(running.end(), job.stop);
            lock.unlock();
            {
                const std::stop_callback forward(job.requested, [&job] { job.stop.request_stop(); });
                job.work(job.stop.get_token());
                job.work = nullptr; // what it holds goes before the pool counts as idle
            }
            lock.lock();
            running.erase(place);
        }
        if (waiting.empty() && running.empty())
            idle.notify_all();
    }
}

WorkerPool::WorkerPool(Mailbox& mailbox, unsigned threads) : _state(std::make_unique<State>(mailbox)) {
    const unsigned count = threads > 0 ? threads : std::max(2u, std::thread::hardware_concurrency());
    for (unsigned i = 0; i < count; ++i)
        _state->threads.emplace_back([state = _state.get()] { state->runJobs(); });
}

WorkerPool::~WorkerPool() {
    std::vector<std::stop_source> running;
    {
        const std::lock_guard lock(_state->mutex);
        _state->ending = true;
        running.assign(_state->running.begin(), _state->running.end());
    }
    _state->changed.notify_all();
    // Outside the lock: what the work hung on its token runs here.
    for (std::stop_source& stop : running)
        stop.request_stop();
    for (std::thread& thread : _state->threads)
        thread.join();
}

unsigned WorkerPool::threadCount() const { return static_cast<unsigned>(_state->threads.size()); }

Mailbox& WorkerPool::mailbox() const { return _state->mailbox; }

void WorkerPool::submit(std::stop_token stop, MoveOnlyFunction<void(std::stop_token)> work) {
    {
        const std::lock_guard lock(_state->mutex);
        _state->waiting.push_back({std::move(stop), std::stop_source(), std::move(work)});
    }
    _state->changed.notify_one();
}

void WorkerPool::waitIdle() {
    std::unique_lock lock(_state->mutex);
    _state->idle.wait(lock, [&] { return _state->waiting.empty() && _state->running.empty(); });
}

} // namespace tessellar
