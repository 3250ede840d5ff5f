#include "live/session.h"

#include "common/exchange.h"
#include "common/failure.h"
#include "common/text.h"
#include "measure/frequency.h"
#include "measure/limits.h"

namespace tool {

namespace {

constexpr uint16_t kCollection = 1000; // what the meter takes least
constexpr size_t kPointsPerReading = 200;
constexpr size_t kMostPoints = 1000; // of the last readings, in one constellation

// Asked this it answers as soon as it is back, and nothing is disturbed.
bool meterAnswers()
{
    MeasStatus status{};
    return exchange([&] { return vx63_getMeasStatus(&status); }) != VX63_ERR_COMM || !failedCall().slow;
}

std::string troubleOf(const Failure& failure)
{
    return failure.failed() + ": " + failure.why();
}

} // namespace

Session::Session(const ChannelOptions& options, bool withPoints)
    : m_asked(options), m_options(options), m_withPoints(withPoints)
{
    start();
}

void Session::start()
{
    selectInput(m_options.input);
    m_measurement.emplace(m_options);
}

const LiveReading* Session::step()
{
    if (!m_trouble.empty() && !meterAnswers())
        return nullptr;
    try {
        if (!m_trouble.empty())
            restart();
        read();
        m_trouble.clear();
        return &m_last;
    } catch (const Failure& failure) {
        lose(failure);
        return nullptr;
    }
}

void Session::restart()
{
    forgetAnswers(m_options.id);
    if (m_measurement)
        m_measurement->leave();
    m_measurement.reset();
    start();
}

void Session::lose(const Failure& failure)
{
    m_trouble = troubleOf(failure);
    m_last = {};
    if (m_collection)
        m_collection->leave(); // it ends with the measurement
    m_collection.reset();
}

void Session::read()
{
    if (m_collection) {
        readPoints();
    } else {
        m_last.reading = m_measurement->read();
        if (m_withPoints && needsLock(m_options.condition) && m_last.reading.result.lock != 0)
            m_collection.emplace(m_options.ucDispType, kCollection);
    }
    const Threshold* const threshold = m_measurement->thresholdOf(m_last.reading);
    m_last.threshold = threshold != nullptr ? std::optional(*threshold) : std::nullopt;
    m_input = static_cast<int32_t>(m_last.reading.input.value_or(static_cast<uint32_t>(m_input)));
}

void Session::readPoints()
{
    std::vector<ConstaPoint>& points = m_last.points;
    const auto came = m_collection->read(kPointsPerReading);
    const SingleMeasResult& result = m_collection->result();
    if (result.lock == 0)
        points.clear();
    points.insert(points.end(), came.begin(), came.end());
    if (points.size() > kMostPoints)
        points.erase(points.begin(), points.end() - kMostPoints);
    m_last.ideal.reset();
    if (!points.empty())
        m_last.ideal = idealPoints(result.MOD, points, result.CNR / 10.0);
    m_last.merDb = m_last.ideal ? shownRatio(points, *m_last.ideal) : std::nullopt;
    m_last.reading = m_measurement->readingOf(result, m_last.merDb);
}

void Session::tuneNeighbour(int steps)
{
    if (!m_options.found)
        throw Failure(kExitUsage, "no plan", "give --channel", "");
    ChannelOptions options = m_options;
    options.found = neighbourOf(*m_options.found, steps);
    if (options.found->group == m_options.found->group)
        throw Failure(kExitUsage, channel() + (steps > 0 ? " is the last channel" : " is the first channel"),
                      "plan " + std::string(options.found->plan->name) + " goes no further", "");
    options.condition = options.found->condition;
    options.condition.usCondition = m_asked.condition.usCondition;
    options.condition.usBand = m_asked.usBand.value_or(options.condition.usBand);
    take(options);
}

void Session::tune(const std::string& channelOrFrequency)
{
    ChannelOptions options = m_asked;
    options.found.reset();
    options.condition = {};
    options.condition.usCondition = m_asked.condition.usCondition;
    options.input = m_options.input;
    options.channel.clear();
    options.ulFreq = parseKhz(channelOrFrequency);
    options.plan = nullptr;
    // Below what the tuner takes it is a channel's number.
    if (!options.ulFreq || *options.ulFreq < kTunerKhz.lowest) {
        options.ulFreq.reset();
        options.channel = channelOrFrequency;
        options.plan = m_options.found ? m_options.found->plan : nullptr;
    }
    try {
        resolveChannel(options);
    } catch (const Failure&) {
        if (options.plan == nullptr)
            throw;
        options.plan = nullptr; // that it is tuned to has it not
        resolveChannel(options);
    }
    take(options);
}

void Session::selectOtherInput()
{
    ChannelOptions options = m_options;
    m_input = 1 - m_input;
    options.input = m_input;
    take(options);
}

void Session::take(const ChannelOptions& options)
{
    const bool lost = !m_trouble.empty();
    try {
        if (!lost)
            stop();
        m_last = {};
        m_options = options;
        if (!lost)
            start();
    } catch (const Failure& failure) {
        m_options = options;
        lose(failure);
    }
}

std::string Session::channel() const
{
    return channelNameOf(m_options.condition);
}

void Session::stop()
{
    if (m_collection)
        m_collection->stop();
    m_collection.reset();
    if (m_measurement)
        m_measurement->stop();
    m_measurement.reset();
}

} // namespace tool
