// A test of operations over the scripted platform: a fresh log before, the whole script used after.
#pragma once

#include "libvx63.h"
#include "support/log_file.h"
#include "support/scripted_platform.h"

#include <cstring>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

namespace vx63test {

class OperationTest : public testing::Test {
protected:
    // The calling thread speaks for process id 5.
    void SetUp() override
    {
        ASSERT_EQ(vx63_init(5), 0);
        removeLog();
    }

    void TearDown() override { platform().finish(); }
};

// A pointer as the log prints it.
inline std::string pointerText(const void* pointer)
{
    char text[32];
    snprintf(text, sizeof text, "%p", pointer);
    return text;
}

// A record whose every byte is this one.
template <class Record>
Record filled(int byte)
{
    Record record;
    memset(static_cast<void*>(&record), byte, sizeof record);
    return record;
}

// Whether two records are the same, padding and all.
template <class Record>
bool same(const Record& one, const Record& other)
{
    return memcmp(&one, &other, sizeof one) == 0;
}

} // namespace vx63test
