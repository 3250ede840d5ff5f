#include "common/clock.h"
#include "common/failure.h"
#include "common/interrupt.h"
#include "common/output.h"
#include "common/terminal.h"
#include "common/text.h"
#include "live/layout.h"
#include "live/live.h"
#include "live/screen.h"
#include "live/worker.h"

#include <chrono>
#include <csignal>
#include <optional>
#include <poll.h>
#include <string>
#include <unistd.h>

namespace tool {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr milliseconds kFrame{40};     // the screen changes no more often
constexpr milliseconds kTick{1000};    // and no more rarely: it shows the time
constexpr milliseconds kPatience{500}; // until it is said that the end takes long
constexpr size_t kLongestInput = 24;

// What a key does.
class Keys {
public:
    explicit Keys(Worker& worker) : m_worker(worker) {}

    // Returns whether it ends the command.
    bool press(int key)
    {
        if (m_input) {
            type(key);
            return false;
        }
        switch (key) {
        case 'n':
        case kKeyUp:
            m_worker.tuneNeighbour(1);
            break;
        case 'p':
        case kKeyDown:
            m_worker.tuneNeighbour(-1);
            break;
        case 'c':
            m_input.emplace();
            break;
        case 'i':
            m_worker.selectOtherInput();
            break;
        case 'r':
            m_worker.reset();
            break;
        case 't':
            m_worker.switchTone();
            break;
        default:
            break;
        }
        return key == 'q';
    }

    const std::optional<std::string>& input() const { return m_input; }

private:
    void type(int key)
    {
        std::string& text = *m_input;
        if (key == kKeyBackspace) {
            if (!text.empty())
                text =
                    cut(text, std::max<size_t>(widthOf(text), 1) - 1); // bytes that are no UTF-8 go at once
        } else if (key == kKeyEnter || key == kKeyEscape) {
            const std::string typed = text;
            m_input.reset();
            if (key == kKeyEnter && !typed.empty())
                m_worker.tune(typed);
        } else if (key >= ' ' && key < 256 && text.size() < kLongestInput) {
            text += static_cast<char>(key);
        }
    }

    Worker& m_worker;
    std::optional<std::string> m_input; // while a channel is typed
};

bool isTerminalGone()
{
    pollfd terminal{STDIN_FILENO, 0, 0};
    return poll(&terminal, 1, 0) > 0 && (terminal.revents & (POLLHUP | POLLERR | POLLNVAL)) != 0;
}

void show(Worker& worker)
{
    const ErrorsAside aside([&worker](const std::string& text) { worker.say(text); });
    Screen screen;
    Keys keys(worker);
    const bool unicode = isUnicode();
    auto shown = Clock::now() - kFrame;
    for (;;) {
        bool pressed = false;
        while (const auto key = screen.key()) {
            pressed = true;
            if (keys.press(*key))
                return;
        }
        if (interruption() != 0 || worker.hasEnded() || isTerminalGone())
            return;
        const auto wait = std::chrono::ceil<milliseconds>(shown + kFrame - Clock::now());
        if (!pressed && wait.count() > 0) {
            waitFor(wait, STDIN_FILENO);
            if (Clock::now() < shown + kFrame)
                continue;
        }
        worker.seen();
        screen.show(layout(worker.state(), {.columns = screen.columns(),
                                            .rows = screen.rows(),
                                            .unicode = unicode,
                                            .nowMs = unixTimeMs(),
                                            .input = keys.input()}));
        shown = Clock::now();
        waitFor(kTick, STDIN_FILENO, worker.news());
    }
}

// Until it has started, or what ends it before.
void awaitStart(const Worker& worker, const LiveOptions& options)
{
    Progress progress;
    progress.show(format("Tuning to %u kHz", options.condition.ulFreq));
    while (!worker.hasStarted() && !worker.hasEnded() && interruption() == 0) {
        waitFor(kTick, worker.news());
        worker.seen();
    }
}

void awaitEnd(Worker& worker)
{
    worker.stop();
    const auto begin = Clock::now();
    bool told = false;
    while (!worker.hasEnded()) {
        pollfd news{worker.news(), POLLIN, 0}; // a signal or a terminal that is gone changes nothing now
        poll(&news, 1, kPatience.count());
        worker.seen();
        if (!told && Clock::now() - begin > kPatience) {
            printError(kStoppingNotice);
            told = true;
        }
    }
    worker.join();
}

} // namespace

int liveOnScreen(const LiveOptions& options)
{
    catchInterruption(nullptr);
    bool gone = false;
    Worker worker(options, true);
    awaitStart(worker, options);
    if (worker.hasStarted() && interruption() == 0) {
        holdSecondSignal();
        try {
            show(worker);
            gone = isTerminalGone();
        } catch (const BrokenPipe&) {
            gone = true;
        }
    }
    endAtOnce();
    awaitEnd(worker);
    if (interruption() != 0)
        return kExitSignal + interruption();
    return gone ? kExitSignal + SIGHUP : kExitSuccess;
}

} // namespace tool
