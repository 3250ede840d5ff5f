// The 32 bytes that ask for a program update.
#include "device/update_request.h"

#include <algorithm>
#include <gtest/gtest.h>

using namespace tool;

namespace {

TEST(UpdateRequest, Layout)
{
    // Version 2.0 of the main program, 1 MiB, from USB 1.
    const UpdateRequest request = makeUpdateRequest(2, 1, "2.0", 1048576);
    const UpdateRequest expected = {'V', 'X', 'U', 'P', 2, 1, 0, 0, '2', '.', '0',  0, 0,    0,    0, 0,
                                    0,   0,   0,   0,   0, 0, 0, 0, 0,   0,   0x10, 0, 0xF6, 0x01, 0, 0};
    EXPECT_TRUE(std::ranges::equal(request, expected));
}

TEST(UpdateRequest, VersionMayFillItsField)
{
    EXPECT_TRUE(isVersion("1234567890123456"));
    EXPECT_EQ(makeUpdateRequest(1, 0, "1234567890123456", 0x01020304)[23], '6');
    EXPECT_EQ(makeUpdateRequest(1, 0, "1234567890123456", 0x01020304)[24], 4);
    for (const char* text : {"", "12345678901234567", "a\tb", "\xC3\xA4"})
        EXPECT_FALSE(isVersion(text)) << text;
}

} // namespace
