// The public headers as a C++17 program uses them.
#include "libvx63.h"
#include "libvx63_settings.h"

#include <thread>
#include <type_traits>

static_assert(std::is_trivially_copyable_v<SingleMeasResult> && std::is_standard_layout_v<SingleMeasResult>);
static_assert(std::is_same_v<decltype(&vx63_startSingleMeas), int32_t (*)(uint8_t, const MeasCondition*)>);
static_assert(sizeof(MultiMeasReg) == 4 && std::is_trivially_copyable_v<MultiMeasReg>);
static_assert(vx63::settings::kFiles[VX63_SET_FILE_VOLUME].columns[4].name == "VOLUME");
static_assert(vx63::settings::kFiles[VX63_SET_FILE_VOLUME].columns[4].values->have(3));
static_assert(!vx63::settings::kFiles[VX63_SET_FILE_VOLUME].columns[4].values->have(4));
static_assert(vx63::settings::kFiles[VX63_SET_FILE_USER_SET].dataSize == sizeof(SetChannel));

int main()
{
    gLibDumpTestLog[0] = 'm';
    char other = 'x';
    std::thread([&other] { other = gLibDumpTestLog[0]; }).join(); // a buffer of its own, all zero
    const bool threadLocal = other == '\0' && gLibDumpTestLog[0] == 'm' && gLibDumpLog[0] == '\0';
    return threadLocal && vx63_init(18) == VX63_ERR_ARG ? 0 : 1;
}
