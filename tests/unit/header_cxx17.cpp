// The public header as a C++17 program uses it.
#include "libvx63.h"

#include <thread>
#include <type_traits>

static_assert(std::is_trivially_copyable_v<SingleMeasResult> && std::is_standard_layout_v<SingleMeasResult>);
static_assert(std::is_same_v<decltype(&vx63_startSingleMeas), int32_t (*)(uint8_t, const MeasCondition*)>);
static_assert(sizeof(MultiMeasReg) == 4 && std::is_trivially_copyable_v<MultiMeasReg>);

int main()
{
    gLibDumpTestLog[0] = 'm';
    char other = 'x';
    std::thread([&other] { other = gLibDumpTestLog[0]; }).join(); // a buffer of its own, all zero
    const bool threadLocal = other == '\0' && gLibDumpTestLog[0] == 'm' && gLibDumpLog[0] == '\0';
    return threadLocal && vx63_init(18) == VX63_ERR_ARG ? 0 : 1;
}
