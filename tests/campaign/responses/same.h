// Comparing, without the sanitizers' and the fuzzer's notice of each comparison: it takes longer than the
// rest.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace responses {

[[clang::no_sanitize("address")]] inline bool same(const void* one, const void* other, size_t size)
{
    const auto* const ones = static_cast<const uint8_t*>(one);
    const auto* const others = static_cast<const uint8_t*>(other);
    if (size != 0 && ones[0] != others[0])
        return false;
    uint8_t different = 0;
    for (size_t i = 0; i < size; ++i)
        different |= ones[i] ^ others[i];
    return different == 0;
}

inline bool same(std::string_view one, std::string_view other)
{
    return one.size() == other.size() && same(one.data(), other.data(), one.size());
}

inline bool startsWith(std::string_view text, std::string_view begin)
{
    return text.size() >= begin.size() && same(text.data(), begin.data(), begin.size());
}

} // namespace responses
