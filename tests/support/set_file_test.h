// A test of settings-file operations: over the scripted files and shell, and the scripted queues.
#pragma once

#include "support/bytes.h"
#include "support/operation_test.h"
#include "support/scripted_lsys.h"
#include "support/set_files.h"

#include <vector>

namespace vx63test {

class SetFileTest : public OperationTest {
protected:
    void TearDown() override
    {
        lsys().finish();
        OperationTest::TearDown();
    }
};

// Bytes of which each tells its place.
inline std::vector<uint8_t> pattern(size_t size, uint8_t first = 1)
{
    std::vector<uint8_t> bytes(size);
    for (size_t i = 0; i < size; ++i) {
        bytes[i] = static_cast<uint8_t>(first + i * 7 + i / 256);
    }
    return bytes;
}

} // namespace vx63test
