// Any bytes as the file of an update request; requests that the tool makes of anything that it lets through,
// and any bytes, held against the meter's own judgement of them.
#include "told.h"

#include "device/update_request.h"
#include "scene/load.h"
#include "services/service.h"

#include <algorithm>
#include <numeric>

using held::require;

namespace {

// The result byte of the meter's answer.
uint8_t answered(const tool::UpdateRequest& request)
{
    static const vmeter::Scene scene;
    vmeter::State state{};
    vmeter::Meter meter{scene, state};
    const auto& commands = vmeter::kSystemService.commands;
    const auto update = std::ranges::find(commands, uint16_t{0x0010}, &vmeter::Command::usCmd);
    const vmeter::Body body = update->handler(meter, request);
    require(body.size() == 4, "an answer of another length");
    return body[0];
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    try {
        const tool::UpdateRequest request = tool::readUpdateRequest(held::File(bytes).path());
        require(size == 32 && std::equal(request.begin(), request.end(), data),
                "other bytes than the file has");
        const std::string work = tool::workOf(request);
        require(held::isPrintable(work), "what an update does is not printable", work);
        const uint8_t ucRet = answered(request);
        require(ucRet == 0 || ucRet == 2, "an answer that is not told");
        require(ucRet != 0 || !work.empty(), "the meter takes what the tool cannot read", work);
        uint32_t sum = 0;
        std::memcpy(&sum, data + 28, sizeof sum);
        require(ucRet != 0 || sum == std::accumulate(data, data + 28, uint32_t{0}), "a wrong sum is taken",
                work);
    } catch (const tool::Failure& failure) {
        held::judgeFailure(failure);
        require(size != 32 && failure.code() == tool::kExitNoInput, "32 bytes are refused", failure.what());
    }
    if (size < 6)
        return 0;
    const std::string version(bytes.substr(6));
    uint32_t length = 0;
    std::copy_n(data + 2, sizeof length, reinterpret_cast<uint8_t*>(&length));
    if (!tool::isVersion(version) || length == 0)
        return 0;
    const auto program = static_cast<uint8_t>(data[0] % 5 + 1);
    const auto source = static_cast<uint8_t>(data[1] % 3);
    const tool::UpdateRequest made = tool::makeUpdateRequest(program, source, version, length);
    require(answered(made) == 0, "the meter refuses what the tool makes", version);
    require(tool::workOf(made).find(version) != std::string::npos, "the version is told otherwise", version);
    return 0;
}
