// Why vx63-vmeter cannot do what it is asked to.
#pragma once

#include <cstring>
#include <stdexcept>
#include <string>

namespace vmeter {

// Exit statuses of vx63-vmeter itself; all others are those of the command.
inline constexpr int kExitUsage = 64;
inline constexpr int kExitFailure = 125;
inline constexpr int kExitNotExecutable = 126;
inline constexpr int kExitNotFound = 127;

// Its text goes to stderr behind "vx63-vmeter: " and ends the program with kExitFailure.
class Failure : public std::runtime_error {
public:
    Failure(const std::string& what, const std::string& why, const std::string& whatToTry)
        : std::runtime_error(what + ": " + why + ": " + whatToTry)
    {}
};

inline std::string errorText(int error)
{
    return std::strerror(error);
}

} // namespace vmeter
