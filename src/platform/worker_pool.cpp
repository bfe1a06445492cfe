#include "platform/worker_pool.h"

#include "platform/host_traits.h"

#include <QCoreApplication>
#include <QEvent>
#include <QObject>

#include <algorithm>
#include <array>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <list>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace tessellar {

namespace {

/// A mailbox's receiver in its thread's event loop.
class Receiver final : public QObject {
public:
    explicit Receiver(std::function<void()> onPost) : _onPost(std::move(onPost)) {}

    /// Calls `onPost` after everything else that waits for the event loop, such as the user's input.
    void callLater() { _later = startTimer(0); }

    bool event(QEvent* event) override {
        if (event->type() == QEvent::Timer)
            killTimer(std::exchange(_later, 0));
        else if (event->type() != QEvent::User)
            return QObject::event(event);
        // A call may destroy the mailbox, and this object with it.
        const std::function<void()> onPost = _onPost;
        onPost();
        return true;
    }

private:
    std::function<void()> _onPost;
    int _later = 0;
};

} // namespace

/// After this time, calls wait for the next turn of the event loop.
static constexpr std::chrono::milliseconds turnTime{4};

struct Mailbox::State {
    using Time = std::chrono::steady_clock::time_point;

    std::mutex mutex;
    std::condition_variable posted;
    std::deque<MoveOnlyFunction<void()>> calls;
    std::unique_ptr<Receiver> receiver; ///< null once the mailbox is destroyed
    bool eventPending = false;

    void eventArrived() {
        {
            const std::lock_guard lock(mutex);
            eventPending = false;
        }
        drain(std::chrono::steady_clock::now() + turnTime);
    }

    /// Runs what was queued when it began: calls that post calls must not starve the event loop. Calls
    /// are taken one at a time, so that a nested drain continues where this one is.
    std::size_t drain(Time end = Time::max()) {
        std::size_t count = 0;
        std::unique_lock lock(mutex);
        for (std::size_t left = calls.size(); left > 0 && !calls.empty(); --left) {
            if (count > 0 && receiver && std::chrono::steady_clock::now() >= end) {
                if (!std::exchange(eventPending, true))
                    receiver->callLater();
                break;
            }
            MoveOnlyFunction<void()> call = std::move(calls.front());
            calls.pop_front();
            ++count;
            lock.unlock();
            call();
            call = nullptr; // destroys what it captured, outside the lock
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
    // Posted under the lock, so that the receiver cannot be destroyed meanwhile.
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
    std::stop_token requested; ///< from whoever submitted it
    std::stop_source stop;     ///< what the work sees: a request, or the end of the pool
    MoveOnlyFunction<void(std::stop_token)> work;
};

} // namespace

struct WorkerPool::State {
    struct LaneState {
        unsigned limit = 1; ///< of threads, and of concurrent jobs
        unsigned threads = 0;
        unsigned running = 0;
        bool givesWay = true; ///< to the window's thread
        std::deque<Job> waiting;
        std::condition_variable changed; ///< a job was added, or the pool is ending
    };
    static constexpr std::size_t laneCount = static_cast<std::size_t>(Lane::saving) + 1;

    State(Mailbox& box, unsigned processors) : mailbox(box) {
        const auto limit = [&](Lane lane, unsigned threadLimit) { at(lane).limit = threadLimit; };
        limit(Lane::files, processors);
        limit(Lane::computing, processors);
        limit(Lane::decoding, processors);
        limit(Lane::tools, processors + 1);
        limit(Lane::network, 1);
        limit(Lane::actions, 8);
        limit(Lane::saving, 1);
        // Programs started there would inherit the niceness.
        at(Lane::tools).givesWay = at(Lane::actions).givesWay = false;
    }

    LaneState& at(Lane lane) { return lanes[static_cast<std::size_t>(lane)]; }
    LaneState* laneToServe(LaneState& home);
    void addThread(LaneState& lane);
    void runJobs(LaneState& home);
    void runOne(LaneState& lane, std::unique_lock<std::mutex>& lock);

    Mailbox& mailbox;
    std::mutex mutex;
    std::array<LaneState, laneCount> lanes;
    std::condition_variable idle;
    std::list<std::stop_source> running;
    bool ending = false;
    std::vector<std::thread> threads;
};

/// The thread's own lane, or a waiting one without a thread; when the pool ends any, because its own
/// threads may have ended.
WorkerPool::State::LaneState* WorkerPool::State::laneToServe(LaneState& home) {
    if (!home.waiting.empty() && home.running < home.limit)
        return &home;
    const auto found = std::ranges::find_if(lanes, [this](const LaneState& lane) {
        return (lane.threads == 0 || ending) && !lane.waiting.empty() && lane.running < lane.limit;
    });
    return found == lanes.end() ? nullptr : &*found;
}

/// Requires the lock.
void WorkerPool::State::addThread(LaneState& lane) {
    try {
        threads.emplace_back([this, &lane] {
            if (lane.givesWay)
                giveWay();
            runJobs(lane);
        });
        ++lane.threads;
    } catch (const std::system_error&) {
        // The existing threads do the work.
    }
}

void WorkerPool::State::runJobs(LaneState& home) {
    std::unique_lock lock(mutex);
    for (;;) {
        LaneState* lane = nullptr;
        home.changed.wait(lock, [&] { return (lane = laneToServe(home)) || ending; });
        if (!lane)
            return;
        runOne(*lane, lock);
    }
}

void WorkerPool::State::runOne(LaneState& lane, std::unique_lock<std::mutex>& lock) {
    {
        Job job = std::move(lane.waiting.front());
        lane.waiting.pop_front();
        if (ending)
            job.stop.request_stop();
        const auto place = running.insert(running.end(), job.stop);
        ++lane.running;
        lock.unlock();
        {
            const std::stop_callback forward(job.requested, [&job] { job.stop.request_stop(); });
            job.work(job.stop.get_token());
            job.work = nullptr; // destroys what it captured before the pool counts as idle
        }
        lock.lock();
        running.erase(place);
        --lane.running;
        // If another lane's thread ran it, a thread started meanwhile may be waiting for the next job.
        if (!lane.waiting.empty())
            lane.changed.notify_one();
    }
    if (running.empty() &&
        std::ranges::all_of(lanes, [](const LaneState& each) { return each.waiting.empty(); }))
        idle.notify_all();
}

WorkerPool::WorkerPool(Mailbox& mailbox, unsigned threads)
    : _state(std::make_unique<State>(
          mailbox, threads > 0 ? threads : std::max(2u, std::thread::hardware_concurrency()))) {}

WorkerPool::~WorkerPool() {
    std::vector<std::stop_source> running;
    {
        const std::lock_guard lock(_state->mutex);
        _state->ending = true;
        running.assign(_state->running.begin(), _state->running.end());
        for (State::LaneState& lane : _state->lanes)
            lane.changed.notify_all();
    }
    // Outside the lock: this calls the work's stop callbacks.
    for (std::stop_source& stop : running)
        stop.request_stop();
    for (std::thread& thread : _state->threads)
        thread.join();
}

unsigned WorkerPool::threadCount(Lane lane) const { return _state->at(lane).limit; }

Mailbox& WorkerPool::mailbox() const { return _state->mailbox; }

void WorkerPool::submit(Lane lane, std::stop_token stop, MoveOnlyFunction<void(std::stop_token)> work) {
    std::unique_lock lock(_state->mutex);
    State::LaneState& wanted = _state->at(lane);
    wanted.waiting.push_back({std::move(stop), std::stop_source(), std::move(work)});
    if (!_state->ending && wanted.threads < wanted.limit &&
        wanted.running + wanted.waiting.size() > wanted.threads)
        _state->addThread(wanted);
    if (wanted.threads > 0) {
        wanted.changed.notify_one();
    } else if (!_state->threads.empty()) {
        for (State::LaneState& each : _state->lanes)
            each.changed.notify_all();
    } else {
        _state->runOne(wanted, lock);
    }
}

void WorkerPool::waitIdle() {
    std::unique_lock lock(_state->mutex);
    _state->idle.wait(lock, [&] {
        return _state->running.empty() &&
               std::ranges::all_of(_state->lanes,
                                   [](const State::LaneState& lane) { return lane.waiting.empty(); });
    });
}

} // namespace tessellar
