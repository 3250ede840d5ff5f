// A client that does as it is told on standard input, for the system tests: it speaks in raw messages, so
// that it can also send what no library would.
//
//   send QUEUE HEX      -> {"result": 0}
//   receive QUEUE MS    -> {"result": 0, "message": "HEX"}, or {"result": -4}
#include "lmsg.h"

#include <cstdint>
#include <cstdio>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

namespace {

std::vector<uint8_t> fromHex(const std::string& text)
{
    std::vector<uint8_t> bytes;
    for (std::size_t i = 0; i + 1 < text.size(); i += 2)
        bytes.push_back(static_cast<uint8_t>(std::stoul(text.substr(i, 2), nullptr, 16)));
    return bytes;
}

void send(std::istream& words)
{
    unsigned queue = 0;
    std::string hex;
    words >> queue >> hex;
    const std::vector<uint8_t> message = fromHex(hex);
    const int32_t result = lmsg_tsndMq(static_cast<uint8_t>(queue), message.data(),
                                       static_cast<uint32_t>(message.size()), 10000);
    std::printf("{\"result\": %d}\n", static_cast<int>(result));
}

void receive(std::istream& words)
{
    unsigned queue = 0;
    uint32_t timeout = 0;
    words >> queue >> timeout;
    uint8_t message[LMSG_SIZE_MAX];
    uint32_t length = 0;
    const int32_t result =
        lmsg_trcvMq(static_cast<uint8_t>(queue), message, sizeof message, &length, timeout);
    std::printf("{\"result\": %d", static_cast<int>(result));
    if (result == LMSG_OK) {
        std::printf(", \"message\": \"");
        for (uint32_t i = 0; i < length; ++i)
            std::printf("%02x", message[i]);
        std::printf("\"");
    }
    std::printf("}\n");
}

} // namespace

int main()
{
    for (std::string line; std::getline(std::cin, line);) {
        std::istringstream words(line);
        std::string what;
        words >> what;
        if (what == "send")
            send(words);
        else if (what == "receive")
            receive(words);
        else
            return 64;
        std::fflush(stdout);
    }
    return 0;
}
