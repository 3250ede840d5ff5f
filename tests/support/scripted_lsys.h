// The platform's CSV files and shell, scripted, and with them remove() below /usr/local/bin/ and sync(): a
// test lists the calls that it expects, in their order, and what comes back for each. No file is touched.
#pragma once

#include "lsys.h"

#include <cstdint>
#include <deque>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace vx63test {

class ScriptedLsys {
public:
    // The next call must read this file, with everything that is known of it; these bytes and this result
    // come back.
    void expectRead(uint32_t fileId, std::string_view name, std::vector<uint8_t> bytes, int32_t result);

    // The next call must write so many records to this file, with everything that is known of it, and these
    // bytes; result comes back.
    void expectWrite(uint32_t fileId, std::string_view name, uint32_t records, std::vector<uint8_t> bytes,
                     int32_t result = 0);

    void expectSync();
    void expectRemove(std::string_view path, int error = 0); // 0: it succeeds
    void expectSystem(std::string_view command, int32_t result = 0);

    // For calls of several threads at a time: every read ends here instead.
    std::function<int32_t(const char* path, uint8_t* records)> onRead;

    // Fails the test if a listed call was not made; forgets the script.
    void finish();

    // A call was made. Returns what was listed for it, or a failure if another one was.
    struct Call {
        std::string text;
        std::vector<uint8_t> bytes; // to read, or expected to be written
        int32_t result = -1;
    };
    Call take(const std::string& text);

private:
    std::deque<Call> m_calls;
};

// The one that lsys_* of this program end at.
ScriptedLsys& lsys();

} // namespace vx63test
