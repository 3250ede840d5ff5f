// vx63 update: the program update.
#include "commands.h"
#include "common/confirm.h"
#include "common/exchange.h"
#include "common/failure.h"
#include "common/identity.h"
#include "common/output.h"
#include "common/text.h"
#include "device/update_request.h"
#include "libvx63.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

namespace tool {

namespace {

struct Options {
    int32_t id = kDefaultProcessId;
    bool yes = false;
    std::string path;
    uint8_t program = 0;
    uint8_t source = 0;
    std::string version;
    uint32_t size = 0;
};

// Shows how long the update goes on: its call comes back only at the end.
class Elapsed {
public:
    Elapsed() : m_thread([this] { show(); }) {}
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
        do {
            const auto passed = floor<seconds>(steady_clock::now() - start).count();
            progress.show(format("Updating: %lld s", static_cast<long long>(passed)));
        } while (!m_changed.wait_for(lock, seconds(1), [this] { return m_over; }));
    }

    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_over = false;
    std::thread m_thread; // last: it uses the others
};

int update(const Options& options)
{
    constexpr const char* kWhat = "cannot update the program";
    const UpdateRequest request = options.path.empty() ? makeUpdateRequest(options.program, options.source,
                                                                           options.version, options.size)
                                                       : readUpdateRequest(options.path);
    confirm(options.yes, "Update the program? The meter must not lose power meanwhile.");
    const Identity identity(options.id);
    const auto call = [&] {
        const Elapsed elapsed;
        return vx63_prgUpdate(request.data());
    };
    requireOnce(kWhat, call);
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
