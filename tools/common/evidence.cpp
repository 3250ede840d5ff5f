#include "common/evidence.h"

#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace tool {

namespace {

constexpr unsigned kResponseBit = 0x8000;

// The sender of the message that came in place of the answer stands in a line of its own.
unsigned senderIn(const std::vector<std::string>& messages)
{
    constexpr std::string_view kMark = "pRcvMsg->head.ucSrcId=";
    for (const std::string& message : messages)
        if (const size_t at = message.find(kMark); at != std::string::npos)
            return static_cast<unsigned>(std::strtoul(message.c_str() + at + kMark.size(), nullptr, 10));
    return UINT8_MAX;
}

std::optional<Evidence> evidenceIn(const std::string& message, const std::vector<std::string>& all)
{
    int number = 0;
    int result = 0;
    unsigned sent = 0;
    unsigned received = 0;
    const char* const text = message.c_str();
    if (std::sscanf(text, "lmsg_tsndMq() timeout error. lmsg_err=%d", &number) == 1)
        return Evidence{Evidence::sendTimeout, number};
    if (std::sscanf(text, "lmsg_tsndMq() error. lmsg_err=%d", &number) == 1)
        return Evidence{Evidence::sendError, number};
    if (std::sscanf(text, "lmsgrcvMq() timeout error. lmsg_err=%d", &number) == 1)
        return Evidence{Evidence::receiveTimeout, number};
    if (std::sscanf(text, "lmsgrcvMq() error. lmsg_err=%d", &number) == 1)
        return Evidence{Evidence::receiveError, number};
    if (std::sscanf(text, "ret error. usOptOrRet=%x", &received) == 1)
        return Evidence{Evidence::refusal, static_cast<int>(received)};
    if (std::sscanf(text, "cmd error. usCmd(Req)=%x, usCmd(Rsp)=%x", &sent, &received) == 2)
        return Evidence{(received & kResponseBit) != 0 ? Evidence::otherAnswer : Evidence::request,
                        static_cast<int>(received & ~kResponseBit), senderIn(all)};
    if (std::sscanf(text, "ret error. vx63_err=%d rspData.ucRet=%d", &result, &number) == 2)
        return Evidence{Evidence::failure, number};
    if (message.starts_with("ret error.") || message.starts_with("parameter error."))
        return Evidence{Evidence::failure};
    return std::nullopt;
}

} // namespace

std::optional<Evidence> evidenceIn(const std::vector<std::string>& messages)
{
    for (const std::string& message : messages)
        if (const auto evidence = evidenceIn(message, messages))
            return evidence;
    return std::nullopt;
}

} // namespace tool
