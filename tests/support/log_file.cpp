#include "support/log_file.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <regex>

namespace vx63test {

void removeLog()
{
    std::filesystem::remove_all(kLogPath);
    std::filesystem::remove_all(kKeyLogPath);
}

std::vector<std::string> logLines(const char* path)
{
    std::vector<std::string> lines;
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);) {
        lines.push_back(line);
    }
    return lines;
}

std::vector<std::string> logMessages(const char* path)
{
    static const std::regex shape(R"(\d+\.\d{6} : [^ ]+ : libvx63\.cpp\(\d+\) (\w+)\(\) : )");
    std::vector<std::string> messages;
    for (const std::string& line : logLines(path)) {
        std::smatch match;
        const bool matches = std::regex_search(line, match, shape, std::regex_constants::match_continuous);
        EXPECT_TRUE(matches) << line;
        messages.push_back(match[1].str() + ": " + match.suffix().str());
    }
    return messages;
}

std::vector<int> logSourceLines()
{
    std::vector<int> sourceLines;
    for (const std::string& line : logLines()) {
        sourceLines.push_back(std::stoi(line.substr(line.find('(') + 1)));
    }
    return sourceLines;
}

} // namespace vx63test
