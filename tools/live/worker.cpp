#include "live/worker.h"

#include "common/clock.h"
#include "common/exchange.h"
#include "common/failure.h"
#include "common/identity.h"
#include "common/text.h"
#include "libvx63.h"
#include "live/recorder.h"
#include "live/session.h"
#include "live/tone.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <memory>
#include <sys/eventfd.h>
#include <unistd.h>
#include <utility>

namespace tool {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr milliseconds kTryAgain{1000};
constexpr milliseconds kLockTime{10000}; // after which a channel that does not lock is taken as it is
constexpr milliseconds kUntilLock{200};

} // namespace

Worker::Worker(const LiveOptions& options, bool withPoints, Listener listener)
    : m_options(options), m_withPoints(withPoints), m_listener(std::move(listener)),
      m_news(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
{
    m_state.tone = options.tone;
    // Signals are for the thread that shows.
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    m_thread = std::thread([this] { run(); });
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

Worker::~Worker()
{
    stop();
    if (m_thread.joinable())
        m_thread.join();
    close(m_news);
}

void Worker::seen() const
{
    uint64_t times;
    static_cast<void>(!read(m_news, &times, sizeof times));
}

LiveState Worker::state() const
{
    const std::lock_guard lock(m_mutex);
    return m_state;
}

bool Worker::hasStarted() const
{
    const std::lock_guard lock(m_mutex);
    return m_started;
}

bool Worker::hasEnded() const
{
    const std::lock_guard lock(m_mutex);
    return m_ended;
}

void Worker::change(const std::function<void(LiveState&)>& change)
{
    {
        const std::lock_guard lock(m_mutex);
        change(m_state);
    }
    const uint64_t one = 1;
    static_cast<void>(!write(m_news, &one, sizeof one));
}

void Worker::say(const std::string& message)
{
    change([&](LiveState& state) { state.message = message; });
    if (m_listener.said)
        m_listener.said(message);
}

void Worker::order(Order order, const std::string& message)
{
    change([&](LiveState& state) {
        state.message = message;
        m_orders.push_back(std::move(order));
    });
    m_wakeUp.notify_one();
}

void Worker::tuneNeighbour(int steps)
{
    order(
        [steps](Session& session) {
            session.tuneNeighbour(steps);
            return "channel " + session.channel();
        },
        steps > 0 ? "next channel ..." : "previous channel ...");
}

void Worker::tune(const std::string& channelOrFrequency)
{
    order(
        [channelOrFrequency](Session& session) {
            session.tune(channelOrFrequency);
            return session.channel().empty() ? format("%u kHz", session.frequencyKhz())
                                             : "channel " + session.channel();
        },
        "tuning to " + channelOrFrequency + " ...");
}

void Worker::selectOtherInput()
{
    order(
        [](Session& session) {
            session.selectOtherInput();
            return format("input %d", session.input());
        },
        "other input ...");
}

void Worker::switchTone()
{
    change([](LiveState& state) {
        state.tone = !state.tone;
        state.message = state.tone ? "tone on" : "tone off";
    });
    m_wakeUp.notify_one();
}

void Worker::reset()
{
    change([](LiveState& state) {
        state.history = {};
        state.message = "peaks and trace reset";
    });
}

void Worker::stop()
{
    const std::lock_guard lock(m_mutex);
    m_stopping = true;
    m_wakeUp.notify_one();
}

void Worker::join()
{
    m_thread.join();
    if (m_error)
        std::rethrow_exception(m_error);
}

void Worker::run()
{
    try {
        measure();
    } catch (...) {
        m_error = std::current_exception();
    }
    change([this](LiveState&) { m_ended = true; });
}

bool Worker::isStopping() const
{
    const std::lock_guard lock(m_mutex);
    return m_stopping;
}

// The screen is not woken up: it looks every second.
void Worker::ask(const std::function<void()>& calls)
{
    const auto since = [this](int64_t timeMs) {
        const std::lock_guard lock(m_mutex);
        m_state.askedMs = timeMs;
    };
    since(unixTimeMs());
    try {
        calls();
    } catch (...) {
        since(0);
        throw;
    }
    since(0);
}

bool Worker::carryOut(Session& session)
{
    std::vector<Order> orders;
    {
        const std::lock_guard lock(m_mutex);
        orders = std::exchange(m_orders, {});
    }
    bool tuned = false;
    for (const Order& order : orders) {
        if (isStopping())
            break;
        std::string message;
        try {
            ask([&] { message = order(session); });
            tuned = true;
            change([](LiveState& state) {
                state.last.reset();
                state.history = {};
            });
        } catch (const Failure& failure) {
            message = failure.failed() + ": " + failure.why();
        } catch (const WrongUsage& wrong) {
            message = wrong.what();
        }
        change([&](LiveState& state) {
            state.message = message;
            state.channel = session.channel();
            state.frequencyKhz = session.frequencyKhz();
        });
    }
    return tuned;
}

void Worker::take(const LiveReading* reading, const Session& session)
{
    const int64_t now = unixTimeMs();
    std::string before;
    change([&](LiveState& state) {
        if (reading != nullptr) {
            state.last = *reading;
            state.history.add(reading->reading);
        } else if (state.trouble.empty()) {
            state.troubleSinceMs = now;
            state.history.interrupt(now);
        }
        before = std::exchange(state.trouble, session.trouble());
    });
    if (reading != nullptr && !before.empty())
        say("the meter answers again");
    if (reading == nullptr && before.empty())
        say(session.trouble());
    if (reading != nullptr && m_listener.reading)
        m_listener.reading(reading->reading);
}

void Worker::record(const LiveReading& reading)
{
    if (!m_recorder)
        return;
    try {
        m_recorder->add(reading);
        change([this](LiveState& state) { state.recorded = m_recorder->count(); });
    } catch (const Failure& failure) {
        m_recorder.reset();
        change([](LiveState& state) { state.recorded.reset(); });
        say("recording stopped: " + failure.failed() + ": " + failure.why());
    }
}

// Other results tell that something else sounds.
void Worker::click()
{
    int32_t result = VX63_OK;
    ask([&] { result = exchange([] { return vx63_buzzer(0, 0); }); });
    if (result != VX63_ERR_COMM)
        return;
    change([](LiveState& state) { state.tone = false; });
    say("tone off: the buzzer does not answer");
}

void Worker::measure()
{
    const Identity identity(m_options.id);
    if (!m_options.record.empty())
        m_recorder = std::make_unique<Recorder>(m_options.record);
    Session session(m_options, m_withPoints);
    change([&](LiveState& state) {
        m_started = true;
        state.channel = session.channel();
        state.frequencyKhz = session.frequencyKhz();
        if (m_recorder)
            state.recorded = 0;
    });

    auto nextReading = Clock::now();
    auto tuned = Clock::now();
    auto lastClick = Clock::now() - std::chrono::hours(1);
    std::optional<milliseconds> toClick; // from one to the next
    for (uint32_t taken = 0;;) {
        if (carryOut(session))
            nextReading = tuned = Clock::now();
        if (isStopping())
            break;
        if (Clock::now() >= nextReading) {
            const LiveReading* reading = nullptr;
            ask([&] { reading = session.step(); });
            if (reading != nullptr)
                record(*reading);
            take(reading, session);
            taken += reading != nullptr ? 1 : 0;
            if (m_options.count > 0 && taken >= m_options.count)
                break;
            toClick = reading != nullptr ? clickInterval(reading->reading.result) : std::nullopt;
            const bool locks = reading != nullptr && reading->reading.result.lock == 0 &&
                               needsLock(reading->reading.condition) && Clock::now() - tuned < kLockTime;
            const milliseconds interval{m_options.intervalMs};
            nextReading = std::max(nextReading + (reading == nullptr ? kTryAgain
                                                  : locks            ? std::min(interval, kUntilLock)
                                                                     : interval),
                                   Clock::now());
        }
        if (state().tone && toClick && Clock::now() >= lastClick + *toClick) {
            lastClick = Clock::now();
            click();
        }
        std::unique_lock lock(m_mutex);
        const auto due = m_state.tone && toClick ? std::min(nextReading, lastClick + *toClick) : nextReading;
        const bool tone = m_state.tone;
        m_wakeUp.wait_until(lock, due,
                            [&] { return m_stopping || !m_orders.empty() || m_state.tone != tone; });
    }
    if (session.trouble().empty())
        session.stop();
}

} // namespace tool
