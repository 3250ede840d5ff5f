#include "device/update_request.h"

#include "common/failure.h"
#include "common/file.h"
#include "common/text.h"

#include <algorithm>
#include <numeric>

namespace tool {

namespace {

constexpr size_t kProgramAt = 4;
constexpr size_t kSourceAt = 5;
constexpr size_t kVersionAt = 8;
constexpr size_t kVersionSize = 16;
constexpr size_t kSizeAt = 24;
constexpr size_t kSumAt = 28;

// Little-endian, as the meter reads it.
void putNumber(UpdateRequest& request, size_t at, uint32_t value)
{
    for (size_t i = 0; i < sizeof value; ++i)
        request[at + i] = static_cast<uint8_t>(value >> (8 * i));
}

} // namespace

bool isVersion(std::string_view version)
{
    return !version.empty() && version.size() <= kVersionSize &&
           std::ranges::all_of(version, [](char c) { return c >= ' ' && c <= '~'; });
}

UpdateRequest makeUpdateRequest(uint8_t program, uint8_t source, std::string_view version, uint32_t size)
{
    UpdateRequest request{'V', 'X', 'U', 'P'};
    request[kProgramAt] = program;
    request[kSourceAt] = source;
    std::ranges::copy(version, request.begin() + kVersionAt);
    putNumber(request, kSizeAt, size);
    putNumber(request, kSumAt, std::accumulate(request.begin(), request.begin() + kSumAt, uint32_t{0}));
    return request;
}

UpdateRequest readUpdateRequest(const std::string& path)
{
    const std::string what = "cannot read " + path;
    const std::string bytes = readWholeFile(path, std::tuple_size_v<UpdateRequest> + 1, what,
                                            "name another FILE, or check its permissions");
    UpdateRequest request{};
    if (bytes.size() != request.size())
        throw Failure(kExitNoInput, what,
                      bytes.size() > request.size()
                          ? "it is longer than the 32 bytes of an update request"
                          : format("it has %zu bytes, an update request has 32", bytes.size()),
                      "name another FILE, or tell the update with --program, --new-version and --size");
    std::copy_n(bytes.begin(), request.size(), request.begin());
    return request;
}

std::string workOf(const UpdateRequest& request)
{
    constexpr const char* kPrograms[] = {"boot", "main", "sub", "Qt", "product"};
    const char* const text = reinterpret_cast<const char*>(request.data());
    const unsigned program = request[kProgramAt];
    if (!std::string_view(text, kProgramAt).starts_with("VXUP") || program < 1 ||
        program > std::size(kPrograms))
        return "";
    uint32_t size = 0;
    for (size_t i = 0; i < sizeof size; ++i)
        size |= uint32_t{request[kSizeAt + i]} << (8 * i);
    return format("the %s program to %s, %u KiB", kPrograms[program - 1],
                  printable({text + kVersionAt, strnlen(text + kVersionAt, kVersionSize)}).c_str(),
                  static_cast<unsigned>((uint64_t{size} + 1023) / 1024));
}

} // namespace tool
