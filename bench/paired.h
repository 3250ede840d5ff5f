// Comparisons: what something costs beside the least that it could cost, its floor. Both run in turns, in
// blocks of a few milliseconds, and each block is judged by the one beside it: what slows the machine slows
// both.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace bench {

struct Row {
    std::string what;
    std::string floor;
    double target = 0; // the ratio that is aimed at; 0: told, not judged
};

// A step of a growth table, and what its two series are called.
struct Step {
    std::string table;
    double at = 0;
    std::string subject;
    std::string floor;
};

using Body = std::function<void()>;

struct Options {
    bool brief = false; // proves that it works, and measures nothing worth reading
    std::string only;   // rows that contain this text
    std::string group;  // of the rows
};

class Runner {
public:
    explicit Runner(const Options& options) : m_options(options) {}

    bool wants(const Row& row) const { return row.what.find(m_options.only) != std::string::npos; }
    bool brief() const { return m_options.brief; }

    // Prints the comparison as one line of JSON: both medians in nanoseconds a call, the median of the ratios
    // and its quartiles.
    void compare(const Row& row, const Body& floor, const Body& subject);

    // Tells what both cost at a step of growth, in microseconds a call, as two series of a table.
    void grow(const Step& step, const Body& floor, const Body& subject);

private:
    Options m_options;
};

// A figure that stands by itself, of a row of a table: one line of JSON.
void tell(const std::string& table, double at, const std::string& series, double value);

double median(const std::vector<double>& values);

} // namespace bench
