// The process id under which a command talks to the services.
#pragma once

#include <cstdint>
#include <string>

namespace tool {

inline constexpr int32_t kDefaultProcessId = 17;

// The process id in the text. Throws WrongUsage that names the option.
int32_t processIdIn(const std::string& option, const std::string& text);

// While it lives, the calling thread is the process `id` and no other vx63 in the same IPC namespace is:
// two of them would take each other's answers. The kernel releases the id however the program ends.
class Identity {
public:
    // Throws Failure when the id is taken.
    explicit Identity(int32_t id);
    ~Identity();
    Identity(const Identity&) = delete;
    Identity& operator=(const Identity&) = delete;

private:
    std::string m_path;
    int m_fd = -1;
};

} // namespace tool
