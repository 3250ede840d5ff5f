// A meter on the machine's own paths and queues, for a container that refuses namespaces.
//
// All that the meter adds to the machine is noted in one folder below /tmp, which is made first and
// removed last: whoever finds it - the guardian, run, or the next meter after everything was killed - can
// take the rest away.
#pragma once

#include "process/descriptor.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace vmeter {

class InPlace {
public:
    // Takes away what a killed meter left, and makes the settings folders. `state` keeps log and settings
    // folders and must hold them. Throws Failure, with nothing changed, when another meter runs in place or
    // something else is in the way.
    explicit InPlace(const std::optional<std::filesystem::path>& state);
    ~InPlace();
    InPlace(const InPlace&) = delete;
    InPlace& operator=(const InPlace&) = delete;

    // Stands between run and the meter: runs the program, ends what it left running, cleans up and ends
    // with its exit status.
    [[noreturn]] void guard(const std::vector<std::string>& program);

    // Ends all that descends from this process and takes away all that was made. Can be repeated.
    void cleanUp();

private:
    std::filesystem::path m_notes;
    Descriptor m_machineLock;
    Descriptor m_notesLock;
};

} // namespace vmeter
