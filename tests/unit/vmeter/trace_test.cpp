// A line of the trace, byte for byte.
#include "process/trace.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <nlohmann/json.hpp>

namespace vmeter {
namespace {

using Bytes = std::vector<uint8_t>;

TEST(Trace, Request)
{
    const Bytes message = {17, 12, 0x17, 0x00, 4, 0, 0, 0, 0xDE, 0xAD, 0xBE, 0xEF};
    EXPECT_EQ(
        traceLine(1.25, 12, message, 300, {}),
        R"({"time":1.25,"sim_ms":300,"from":"client 17","to":"meas","from_id":17,"to_id":12,)"
        R"("command":"meas-status","kind":"request","ucSrcId":17,"ucDstId":12,"usCmd":23,"usDataLen":4,)"
        R"("usOptOrRet":0,"body":"deadbeef"})"
        "\n");
}

TEST(Trace, ResponseWithAFaultAndANote)
{
    const Bytes message = {8, 255, 0x08, 0x80, 0xFF, 0xFF, 4, 0};
    EXPECT_EQ(
        traceLine(0.5, 8, message, 0, {"oversized", "dropped"}),
        R"({"time":0.5,"sim_ms":0,"from":"key","to":"client 255","from_id":8,"to_id":255,)"
        R"("command":"key-status","kind":"response","ucSrcId":8,"ucDstId":255,"usCmd":32776,"usDataLen":65535,)"
        R"("usOptOrRet":4,"body":"","fault":"oversized","note":"dropped"})"
        "\n");
}

TEST(Trace, LessThanAHeader)
{
    EXPECT_EQ(traceLine(0.5, 12, Bytes{1, 2, 3}, 7, {"", "ignored"}),
              R"({"time":0.5,"sim_ms":7,"to":"meas","to_id":12,"body":"010203","note":"ignored"})"
              "\n");
}

RC_GTEST_PROP(Trace, AnyMessageIsOneLineOfJson, (const Bytes& message, uint8_t ucProcId))
{
    const std::string line = traceLine(1, ucProcId, message, 0, {});
    RC_ASSERT(line.find('\n') == line.size() - 1);
    RC_ASSERT(nlohmann::json::parse(line).is_object());
}

} // namespace
} // namespace vmeter
