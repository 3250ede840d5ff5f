// results.jsonl while a survey writes into it.
#pragma once

#include <string>

namespace tool {

class ResultsFile {
public:
    // Makes the folder and the file where they are not there, keeps other surveys away from it as long as it
    // lives, and cuts off a last line that was cut short. Throws Failure.
    explicit ResultsFile(const std::string& folder);
    ~ResultsFile();
    ResultsFile(const ResultsFile&) = delete;
    ResultsFile& operator=(const ResultsFile&) = delete;

    const std::string& path() const { return m_path; }

    // On the disk as a whole when it returns, or not at all. Throws Failure.
    void add(const std::string& line);

private:
    [[noreturn]] void fail(int error) const;
    void cutTornLine();

    std::string m_path;
    int m_fd = -1;
};

} // namespace tool
