// Reads a log line by line while others write it, start it anew or replace it.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <sys/types.h>

namespace tool {

// Called with each line, without its newline; valid during the call.
using LineSink = std::function<void(std::string_view)>;

// Puts lines together from pieces. A line longer than kMaxLine comes in parts of that length.
class LineSplitter {
public:
    static constexpr size_t kMaxLine = 1 << 20;
    void feed(std::string_view bytes, const LineSink& sink);
    void finish(const LineSink& sink); // what has no newline yet is a line of its own

private:
    std::string m_partial;
};

class LogReader {
public:
    explicit LogReader(std::string path);
    ~LogReader();
    LogReader(const LogReader&) = delete;
    LogReader& operator=(const LogReader&) = delete;

    // Opens the file; false when there is none. Throws Failure when it cannot be read.
    bool open();

    // Reads on to the end of the file, and from the start of a file that has been emptied or replaced in the
    // meantime. An unfinished last line is kept for the next call.
    void read(const LineSink& sink);

    // Hands over an unfinished last line.
    void finish(const LineSink& sink) { m_lines.finish(sink); }

private:
    [[noreturn]] void fail(int error) const;
    bool isReplaced() const;
    bool isRestarted() const;
    void drain(const LineSink& sink);
    void close();

    std::string m_path;
    int m_fd = -1;
    bool m_regular = false;
    off_t m_position = 0;
    std::string m_head; // how the file began when it was read: tells one that was emptied and grew again
    LineSplitter m_lines;
};

// Tells when something happens in the folder of a file, as far as the system can.
class FolderWatch {
public:
    explicit FolderWatch(const std::string& path);
    ~FolderWatch();
    FolderWatch(const FolderWatch&) = delete;
    FolderWatch& operator=(const FolderWatch&) = delete;

    // Waits for a change or some time; both are worth a look at the file.
    void wait() const;

private:
    int m_fd;
};

} // namespace tool
