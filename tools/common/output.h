// Standard output, checked: what cannot be written is a failure, not a loss. And standard error.
#pragma once

#include <exception>
#include <functional>
#include <string>
#include <string_view>

namespace tool {

// The reader of a pipe went away: the command cleans up and ends without a word.
struct BrokenPipe : std::exception {};

// Opens what the caller left closed of stdin, stdout and stderr, so that no file of the library or of a
// command takes their place; turns a broken pipe into BrokenPipe.
void prepareOutput();

// Writes all of the text at once, unbuffered. Throws BrokenPipe or Failure.
void print(std::string_view text);

// Call it last: some file systems tell of a full disk only here. Throws Failure.
void closeOutput();

// Writes to stderr; nobody is left to tell of an error there.
void printError(std::string_view text);

// Writes "vx63: TEXT" to stderr, as one line.
void complain(const std::string& text);

// While it lives, what complain() would write goes to `take`, whatever thread it comes from: there is a
// picture on the terminal. There is one at a time.
class ErrorsAside {
public:
    explicit ErrorsAside(std::function<void(const std::string&)> take);
    ~ErrorsAside();
    ErrorsAside(const ErrorsAside&) = delete;
    ErrorsAside& operator=(const ErrorsAside&) = delete;
};

// A line on a terminal's stderr that tells how long work goes on; erased at the end. On anything but a
// terminal, and while errors are kept aside, it stays silent.
class Progress {
public:
    // What is said of all that is shown stands before it.
    explicit Progress(std::string before = "");
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    void show(std::string_view text); // as much of it as has room

private:
    bool m_terminal;
    std::string m_before;
    size_t m_width = 0;
};

} // namespace tool
