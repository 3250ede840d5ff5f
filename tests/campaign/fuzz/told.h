// What the fuzzing of the tool's files shares: how a failure must be told, and settings files that are as
// from the factory, without a meter's folders and without the library's log.
#pragma once

#include "cli/printable.h"
#include "common/failure.h"
#include "held.h"
#include "libvx63.h"
#include "setfile/catalogue.h"

#include <cstring>

namespace held {

// All three parts are there, and what is printed of them is one printable line.
inline void judgeFailure(const tool::Failure& failure)
{
    require(!failure.failed().empty() && !failure.why().empty() && !failure.hint().empty(),
            "a failure without a part", failure.what());
    require(isPrintable(cli::printable(failure.what())), "a failure is not printable", failure.what());
    require(std::strlen(failure.what()) < 3000, "a failure without an end", failure.what());
}

} // namespace held

// The tables of the factory are here and in the library.
extern "C" const char* __asan_default_options()
{
    return "detect_odr_violation=0";
}

// In place of the library's.
extern "C" int32_t vx63_readSetFile(uint32_t fileId, void* pDat, const char*, uint32_t)
{
    const vx63::SetFileDef& file = vx63::kCatalogue[fileId];
    if (file.defaultData == nullptr)
        return -1;
    std::memcpy(pDat, file.defaultData, file.defaultSize);
    return static_cast<int32_t>(file.rows);
}
