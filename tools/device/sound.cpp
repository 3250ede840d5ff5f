#include "device/sound.h"

#include "common/failure.h"
#include "common/numbers.h"
#include "common/text.h"

namespace tool {

namespace {

constexpr const char* kSounds[kSoundCount] = {"click", "confirmation", "warning", "error", "alarm"};

} // namespace

std::string soundNames()
{
    std::string names;
    for (const char* sound : kSounds)
        names += (names.empty() ? "" : ", ") + std::string(sound);
    return names;
}

int32_t soundIn(const std::string& argument, const std::string& text, const std::string& others)
{
    for (int32_t kind = 0; kind < kSoundCount; ++kind)
        if (text == kSounds[kind])
            return kind;
    if (const auto kind = parseNumber(text); kind && *kind < kSoundCount)
        return static_cast<int32_t>(*kind);
    throw WrongUsage(argument, format("'%s' is none of %s, nor a number from 0 to %d", text.c_str(),
                                      (others + soundNames()).c_str(), kSoundCount - 1));
}

} // namespace tool
