// A meter on the machine's own paths and queues, for a container that refuses namespaces.
//
// All that the meter adds to the machine is noted in one folder below /tmp, which is made first and
// removed last: whoever finds it - the guardian, which makes it; run, when the guardian was killed; or the
// next meter, when both were - can take the rest away.
#pragma once

#include "process/descriptor.h"

#include <filesystem>
#include <optional>

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

    // Takes away all that was made. Gives whether nothing stays; tells on standard error what does, and
    // leaves the notes of it for the next meter. Can be repeated.
    bool cleanUp();

private:
    std::filesystem::path m_notes;
    Descriptor m_machineLock;
    Descriptor m_notesLock;
};

// Takes away what a killed guardian left.
void cleanUpKilled();

} // namespace vmeter
