#include "scene/fault_rules.h"

#include "cli/suggestion.h"
#include "services/service.h"

#include <cerrno>
#include <cstdlib>
#include <stdexcept>

namespace vmeter {
namespace {

// A kind as rules name it, and the values that it takes.
struct KindRow {
    FaultKind kind;
    std::string_view name;
    bool hasValue;
    uint32_t least;
    uint32_t greatest;
    uint32_t standard;
};

constexpr uint32_t kLongestMs = 3'600'000;

// docs/virtual-meter.md tells the same to the user. In the order of FaultKind.
constexpr KindRow kKinds[] = {
    {FaultKind::silence, "silence", false, 0, 0, 0},
    {FaultKind::late, "late", true, 0, kLongestMs, 1000},
    {FaultKind::twice, "twice", false, 0, 0, 0},
    {FaultKind::refuse, "refuse", true, 1, UINT16_MAX, 1},
    {FaultKind::ret, "ret", true, 0, UINT8_MAX, 1},
    {FaultKind::wrong, "wrong", true, 0, 0x7FFF, 0x0001},
    {FaultKind::stray, "stray", true, 0, 0x7FFF, 0x0001},
    {FaultKind::cut, "cut", true, 0, 1292, 1},
    {FaultKind::oversized, "oversized", true, 1, UINT16_MAX, UINT16_MAX},
    {FaultKind::garbage, "garbage", false, 0, 0, 0},
    {FaultKind::die, "die", true, 0, kLongestMs, 100},
    {FaultKind::random, "random", false, 0, 0, 0},
};

const KindRow& row(FaultKind kind)
{
    return kKinds[static_cast<std::size_t>(kind)];
}

std::invalid_argument wrong(std::string reason)
{
    return std::invalid_argument(std::move(reason));
}

std::string quoted(std::string_view text)
{
    return "'" + std::string(text) + "'";
}

// Decimal or 0x...; the whole text.
std::optional<uint32_t> number(std::string_view text)
{
    const bool hex = text.starts_with("0x") || text.starts_with("0X");
    const std::string digits(hex ? text.substr(2) : text);
    const char* const legal = hex ? "0123456789abcdefABCDEF" : "0123456789";
    if (digits.empty() || digits.find_first_not_of(legal) != std::string::npos)
        return std::nullopt;
    errno = 0;
    const unsigned long long value = std::strtoull(digits.c_str(), nullptr, hex ? 16 : 10);
    if (errno != 0 || value > UINT32_MAX)
        return std::nullopt;
    return static_cast<uint32_t>(value);
}

// "unknown fault 'lat' (known: late, twice): did you mean 'late'?"
std::invalid_argument unknown(const std::string& what, std::string_view name,
                              const std::vector<std::string>& known, const std::string& owner = "",
                              const std::string& others = "")
{
    std::string list;
    for (const std::string& one : known)
        list += (list.empty() ? "" : ", ") + one;
    const std::string hint = cli::didYouMean(std::string(name), known);
    return wrong("unknown " + what + " " + quoted(name) + owner + " (known: " + list + others + ")" +
                 (hint.empty() ? "" : ": " + hint));
}

const Service& findService(std::string_view name)
{
    std::vector<std::string> known;
    for (const Service* service : kServices) {
        if (name == service->name)
            return *service;
        known.emplace_back(service->name);
    }
    throw unknown("service", name, known);
}

uint16_t findCommand(const Service& service, std::string_view text)
{
    std::vector<std::string> known;
    for (const Command& command : service.commands) {
        if (text == command.name)
            return command.usCmd;
        known.emplace_back(command.name);
    }
    const std::optional<uint32_t> code = number(text);
    if (!code || *code > 0x7FFF)
        throw unknown("command", text, known, std::string(" of service ") + service.name,
                      "; or a code from 0 to 0x7FFF");
    return static_cast<uint16_t>(*code);
}

// Splits off what follows the first separator; none when there is no separator.
std::optional<std::string_view> splitOff(std::string_view& text, char separator)
{
    const std::size_t at = text.find(separator);
    if (at == std::string_view::npos)
        return std::nullopt;
    const std::string_view rest = text.substr(at + 1);
    text = text.substr(0, at);
    return rest;
}

uint32_t needNumber(std::string_view text, const char* what)
{
    const std::optional<uint32_t> value = number(text);
    if (!value)
        throw wrong(std::string(what) + " " + quoted(text) + " is not a number");
    return *value;
}

double needProbability(std::string_view text)
{
    const std::string copy(text);
    char* end = nullptr;
    const double value = std::strtod(copy.c_str(), &end);
    if (copy.empty() || *end != '\0')
        throw wrong("probability " + quoted(text) + " is not a number");
    return value;
}

} // namespace

FaultRule makeFault(std::string_view service, std::string_view command, uint32_t first, uint32_t last,
                    double probability, std::string_view kind, std::optional<uint32_t> value)
{
    FaultRule rule;
    const Service& found = findService(service);
    rule.ucProcId = found.ucProcId;
    if (!command.empty())
        rule.usCmd = findCommand(found, command);

    if (first < 1)
        throw wrong("requests are counted from 1");
    if (last < first)
        throw wrong("the last request (" + std::to_string(last) + ") comes before the first (" +
                    std::to_string(first) + ")");
    rule.first = first;
    rule.last = last;

    if (!(probability >= 0.0 && probability <= 1.0)) // also what is not a number
        throw wrong("the probability is not from 0 to 1");
    rule.probability = probability;

    std::vector<std::string> known;
    for (const KindRow& candidate : kKinds) {
        known.emplace_back(candidate.name);
        if (kind != candidate.name)
            continue;
        if (value && !candidate.hasValue)
            throw wrong("fault " + quoted(kind) + " takes no value");
        if (value && (*value < candidate.least || *value > candidate.greatest))
            throw wrong("value " + std::to_string(*value) + " of fault " + quoted(kind) + " is not from " +
                        std::to_string(candidate.least) + " to " + std::to_string(candidate.greatest));
        rule.kind = candidate.kind;
        rule.value = value;
        return rule;
    }
    throw unknown("fault", kind, known);
}

FaultRule parseFault(const std::string& text)
{
    std::string_view where = text;
    const std::optional<std::string_view> what = splitOff(where, '=');
    if (!what)
        throw wrong("no '=' between the requests and the fault");

    std::string_view kind = *what;
    const std::optional<std::string_view> chance = splitOff(kind, '@');
    const std::optional<std::string_view> value = splitOff(kind, ',');

    uint32_t first = 1;
    uint32_t last = UINT32_MAX;
    if (std::optional<std::string_view> range = splitOff(where, ':')) {
        std::string_view from = *range;
        const std::optional<std::string_view> to = splitOff(from, '-');
        first = needNumber(from, "request");
        if (!to)
            last = first;
        else if (!to->empty())
            last = needNumber(*to, "request");
    }

    const std::optional<std::string_view> command = splitOff(where, '/');
    if (command && command->empty())
        throw wrong("no command after '/'");
    return makeFault(where, command.value_or(""), first, last, chance ? needProbability(*chance) : 1.0, kind,
                     value ? std::optional(needNumber(*value, "value")) : std::nullopt);
}

std::string_view faultName(FaultKind kind)
{
    return row(kind).name;
}

uint32_t valueOf(const FaultRule& rule, FaultKind kind)
{
    return rule.value.value_or(row(kind).standard);
}

} // namespace vmeter
