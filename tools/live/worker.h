// The thread that measures. It alone calls the library, so that the screen waits for no service.
#pragma once

#include "live/options.h"
#include "live/state.h"

#include <condition_variable>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace tool {

class Recorder;
class Session;

// Who is told at once, in the worker's thread; what he throws ends it.
struct Listener {
    std::function<void(const Reading&)> reading;
    std::function<void(const std::string&)> said;
};

class Worker {
public:
    //   withPoints  readings have constellation points and the modulation error ratio
    Worker(const LiveOptions& options, bool withPoints, Listener listener = {});
    ~Worker(); // stops the measurement
    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;

    // Becomes readable whenever there is something new to show; see it by seen().
    int news() const { return m_news; }
    void seen() const;

    LiveState state() const;
    bool hasStarted() const;
    bool hasEnded() const; // all readings are taken, or it failed

    // What keys ask for; what came of it is in the message.
    void tuneNeighbour(int steps);
    void tune(const std::string& channelOrFrequency);
    void selectOtherInput();
    void switchTone();
    void reset();
    void say(const std::string& message);

    // Asks it to stop the measurement and to end.
    void stop();

    // Waits for its end. Throws what ended it.
    void join();

private:
    using Order = std::function<std::string(Session&)>; // returns what to tell

    void run();
    void measure();
    bool isStopping() const;
    bool carryOut(Session& session);              // returns whether something else has been tuned
    void ask(const std::function<void()>& calls); // and the screen knows since when
    void take(const LiveReading* reading, const Session& session);
    void record(const LiveReading& reading);
    void click();
    void order(Order order, const std::string& message);
    void change(const std::function<void(LiveState&)>& change); // and tells the screen

    const LiveOptions& m_options;
    const bool m_withPoints;
    const Listener m_listener;
    int m_news;
    mutable std::mutex m_mutex;
    std::condition_variable m_wakeUp; // of the thread
    LiveState m_state;
    std::unique_ptr<Recorder> m_recorder;
    std::vector<Order> m_orders;
    bool m_started = false;
    bool m_stopping = false;
    bool m_ended = false;
    std::exception_ptr m_error;
    std::thread m_thread;
};

} // namespace tool
