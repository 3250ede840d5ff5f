// vx63 update: the program update.
#include "commands.h"
#include "common/confirm.h"
#include "common/exchange.h"
#include "common/failure.h"
#include "common/identity.h"
#include "common/options.h"
#include "common/output.h"
#include "common/text.h"
#include "device/update_request.h"
#include "libvx63.h"

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
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

} // namespace

void addUpdate(CLI::App& app, Command& command)
{
    const auto options = std::make_shared<Options>();
    CLI::App* subcommand = app.add_subcommand("update", "Update a program of the meter")->group("Commands");
    CLI::Option* file =
        subcommand->add_option("FILE", options->path, "The update request: 32 bytes")->type_name("");
    CLI::Option* program =
        subcommand
            ->add_option_function<std::string>(
                "--program",
                [options](const std::string& text) {
                    const auto code = programCode(text);
                    if (!code)
                        throw CLI::ValidationError(
                            "--program",
                            format("'%s' is none of boot, main, sub, qt, product", text.c_str()));
                    options->program = *code;
                },
                "What to update instead of what FILE says: boot, main, sub, qt, product")
            ->type_name("PROGRAM")
            ->excludes(file);
    CLI::Option* version =
        subcommand
            ->add_option_function<std::string>(
                "--new-version",
                [options](const std::string& text) {
                    if (!isVersion(text))
                        throw CLI::ValidationError(
                            "--new-version",
                            format("'%s' is not 1 to 16 printable ASCII characters", text.c_str()));
                    options->version = text;
                },
                "Its new version, 1 to 16 characters")
            ->type_name("VERSION")
            ->needs(program);
    CLI::Option* size = addNumber(*subcommand, "--size", options->size, "BYTES",
                                  "Size of the new program in bytes", 1, UINT32_MAX)
                            ->needs(program);
    program->needs(version)->needs(size);
    subcommand
        ->add_option_function<std::string>(
            "--source",
            [options](const std::string& text) {
                const auto code = sourceCode(text);
                if (!code)
                    throw CLI::ValidationError("--source",
                                               format("'%s' is none of internal, usb1, usb2", text.c_str()));
                options->source = *code;
            },
            "Where the new program lies: internal, usb1, usb2 [internal]")
        ->type_name("SOURCE")
        ->needs(program);
    addYesOption(*subcommand, options->yes);
    addIdOption(*subcommand, options->id);
    subcommand->footer("Example: vx63 update --program main --new-version 2.0 --size 1048576 --source usb1");
    subcommand->callback([options, file, program, &command] {
        if (file->count() == 0 && program->count() == 0)
            throw CLI::RequiredError("FILE or --program");
        command = [options] { return update(*options); };
    });
}

} // namespace tool
