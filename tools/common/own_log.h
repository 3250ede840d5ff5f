// The library's log as far as it is about this program.
#pragma once

#include "log/line.h"
#include "log/reader.h"

#include <functional>
#include <string>

namespace tool {

class OwnLog {
public:
    // Lines of programs of this name: several at once are told apart by nothing else.
    OwnLog();
    // From now on the library logs under this name.
    explicit OwnLog(const std::string& name);
    ~OwnLog();
    OwnLog(const OwnLog&) = delete;
    OwnLog& operator=(const OwnLog&) = delete;

    // What has been logged since the last time, at first all that the log holds; nothing where it cannot be
    // read.
    void read(const std::function<void(const LogLine&)>& take);

private:
    const char* m_before;
    std::string m_name;
    LogReader m_reader;
};

} // namespace tool
