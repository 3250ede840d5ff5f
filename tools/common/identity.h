// The process id under which a command talks to the services.
#pragma once

#include <cstdint>
#include <string>

namespace tool {

inline constexpr int32_t kDefaultProcessId = 17;
inline constexpr int32_t kHighestProcessId = 17;

// The process id in the text. Throws WrongUsage that names the option.
int32_t processIdIn(const std::string& option, const std::string& text);

// What tells why something fails, in quotes: 'vx63 doctor', of the id that was given as an option.
std::string doctorCommand();
void setDoctorId(int32_t id);

enum class OldAnswers { forget, keep };

// While it lives, the calling thread is the process `id` and no other vx63 of this user in the same IPC
// namespace is: two of them would take each other's answers. The kernel releases the id however the program
// ends. Answers that nobody waits for are taken out of the queue of the id before and after, those that one
// left which was killed and those of this one: each call of whoever uses the id next would get the one to the
// call before, and a lone call an old one for its own.
class Identity {
public:
    // Throws Failure when the id is taken.
    explicit Identity(int32_t id, OldAnswers old = OldAnswers::forget);
    ~Identity();
    Identity(const Identity&) = delete;
    Identity& operator=(const Identity&) = delete;

private:
    int32_t m_id;
    std::string m_path;
    int m_fd = -1;
};

} // namespace tool
