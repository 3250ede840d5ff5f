#include "common/own_log.h"

#include "common/failure.h"
#include "libvx63.h"

#include <sys/stat.h>

// glibc's name of this program, as the library writes it into each line of the log.
extern "C" const char* __progname;

namespace tool {

OwnLog::OwnLog() : m_before(__progname), m_name(__progname), m_reader(g_cLibTestLogFilePath) {}

OwnLog::OwnLog(const std::string& name) : m_before(__progname), m_name(name), m_reader(g_cLibTestLogFilePath)
{
    __progname = m_name.c_str();
}

OwnLog::~OwnLog()
{
    __progname = m_before;
}

void OwnLog::read(const std::function<void(const LogLine&)>& take)
{
    struct stat status {};
    if (stat(g_cLibTestLogFilePath, &status) != 0 || !S_ISREG(status.st_mode))
        return; // to open a FIFO would wait for its writer
    try {
        m_reader.read([&](std::string_view text) {
            if (const auto line = parseLogLine(text); line && line->program == m_name)
                take(*line);
        });
    } catch (const Failure&) {
        // as if nothing had been logged
    }
}

} // namespace tool
