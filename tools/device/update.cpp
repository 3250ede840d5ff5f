// vx63 update: the program update.
#include "commands.h"
#include "common/confirm.h"
#include "common/exchange.h"
#include "common/failure.h"
#include "common/identity.h"
#include "common/output.h"
#include "common/text.h"
#include "device/update_request.h"
#include "device/update_steps.h"
#include "libvx63.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

namespace tool {

namespace {

constexpr const char* kWhat = "cannot update the program";

struct Options {
    int32_t id = kDefaultProcessId;
    bool yes = false;
    std::string path;
    uint8_t program = 0;
    uint8_t source = 0;
    std::string version;
    uint32_t size = 0;
};

// Shows how far the update is: its call comes back only at the end. How many steps it takes nobody tells.
class Elapsed {
public:
    explicit Elapsed(const UpdateRequest& request) : m_work(workOf(request)), m_thread([this] { show(); }) {}
    ~Elapsed()
    {
        {
            const std::lock_guard lock(m_mutex);
            m_over = true;
        }
        m_changed.notify_one();
        m_thread.join();
    }
    Elapsed(const Elapsed&) = delete;
    Elapsed& operator=(const Elapsed&) = delete;

private:
    void show()
    {
        using namespace std::chrono;
        Progress progress;
        const auto start = steady_clock::now();
        std::unique_lock lock(m_mutex);
        for (bool over = false;;
             over = m_changed.wait_for(lock, milliseconds(100), [this] { return m_over; })) {
            const auto passed = floor<seconds>(steady_clock::now() - start).count();
            const uint32_t step = updateRequests();
            // The step first: a narrow terminal cuts off the end.
            progress.show("Updating" + (step > 0 ? format(", step %u", step) : "") +
                          (passed > 0 ? format(", %lld s", static_cast<long long>(passed)) : "") +
                          (m_work.empty() ? "" : ": " + m_work));
            if (over)
                break;
        }
    }

    std::string m_work;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_over = false;
    std::thread m_thread; // last: it uses the others
};

// What the result byte of the service says stands in the log alone.
Failure updateFailure(int32_t result)
{
    constexpr int kBadRequest = 2;
    constexpr int kNotNow = 4;
    const FailedCall call = failedCall();
    if (result != VX63_ERR_COMM || call.slow)
        return failureOf(result, kWhat);
    const auto evidence = loggedEvidence(call);
    if (evidence && evidence->what != Evidence::failure)
        return failureOf(result, kWhat);
    const int reason = evidence ? evidence->number : 0;
    if (reason == kBadRequest)
        return {kExitArgument, kWhat, "the meter refuses the request",
                "check program, version, size and source of the new program"};
    if (reason == kNotNow)
        return {kExitCommunication, kWhat, "not now: another update is under way, or the battery is low",
                "let the other one finish ('vx63 power reboot' gives it up), or charge the battery"};
    return {kExitUpdateFailed, kWhat,
            reason != 0 ? "the meter gave the update up" : "the meter gave the update up, or refused it",
            "check that it has power and that the new program lies where the request says; 'vx63 info' shows "
            "what "
            "runs now"};
}

int update(const Options& options)
{
    const UpdateRequest request = options.path.empty() ? makeUpdateRequest(options.program, options.source,
                                                                           options.version, options.size)
                                                       : readUpdateRequest(options.path);
    confirm(options.yes, "Update the program? The meter must not lose power meanwhile.");
    const Identity identity(options.id);
    int32_t result = VX63_OK;
    requireOnce(options.id, kWhat, [&] {
        const Elapsed elapsed(request);
        result = vx63_prgUpdate(request.data());
        return VX63_OK;
    });
    if (result != VX63_OK)
        throw updateFailure(result);
    return kExitSuccess;
}

void addUpdateOptions(CommandLine& line, Options& options)
{
    const Option file = line.text("FILE", options.path, "", "The update request: 32 bytes");
    Option program = line.choice(
        "--program", "PROGRAM", "What to update instead of what FILE says: boot, main, sub, qt, product",
        {"boot", "main", "sub", "qt", "product"},
        [&options](size_t word) { options.program = static_cast<uint8_t>(word + 1); });
    program.excludes(file);
    const Option version =
        line.value("--new-version", "VERSION", "Its new version, 1 to 16 characters",
                   [&options](const std::string& text) {
                       if (!isVersion(text))
                           throw WrongUsage("--new-version",
                                            "'" + text + "' is not 1 to 16 printable ASCII characters");
                       options.version = text;
                   })
            .needs(program);
    const Option size =
        line.number("--size", options.size, "BYTES", "Size of the new program in bytes", 1, UINT32_MAX)
            .needs(program);
    program.needs(version).needs(size);
    line.choice("--source", "SOURCE", "Where the new program lies: internal, usb1, usb2 [internal]",
                {"internal", "usb1", "usb2"},
                [&options](size_t word) { options.source = static_cast<uint8_t>(word); })
        .needs(program);
    line.check([file, program] {
        if (!file.given() && !program.given())
            throw WrongUsage("FILE or --program is required");
    });
}

} // namespace

void addUpdate(CommandLine& program)
{
    program.addCommand("update", "Update a program of the meter",
                       "vx63 update --program main --new-version 2.0 --size 1048576 --source usb1", update,
                       addUpdateOptions);
}

} // namespace tool
