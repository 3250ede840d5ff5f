// The messages between the library and the services, as they lie in the queues: little-endian, padding
// spelled out. This folder holds what every family shares: the log, the transport, the call shape.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace vx63::wire {

static_assert(std::endian::native == std::endian::little, "the wire is little-endian");

inline constexpr uint32_t kMessageSize = 1300;
inline constexpr uint32_t kHeadSize = 8;
inline constexpr uint32_t kBodySize = kMessageSize - kHeadSize;

// Set in usCmd of a response.
inline constexpr uint16_t kResponseBit = 0x8000;

// usOptOrRet of a response.
inline constexpr uint16_t kAccepted = 0;
inline constexpr uint16_t kNotExpected = 4; // the receiver takes no requests

struct LibMsgHead {
    uint8_t ucSrcId;
    uint8_t ucDstId;
    uint16_t usCmd;
    uint16_t usDataLen; // bytes of the body
    uint16_t usOptOrRet;
};
static_assert(sizeof(LibMsgHead) == kHeadSize && std::is_trivially_copyable_v<LibMsgHead>);
static_assert(offsetof(LibMsgHead, ucSrcId) == 0);
static_assert(offsetof(LibMsgHead, ucDstId) == 1);
static_assert(offsetof(LibMsgHead, usCmd) == 2);
static_assert(offsetof(LibMsgHead, usDataLen) == 4);
static_assert(offsetof(LibMsgHead, usOptOrRet) == 6);

struct LibMsg {
    LibMsgHead head;
    uint8_t ucBody[kBodySize];
};
static_assert(sizeof(LibMsg) == kMessageSize && std::is_trivially_copyable_v<LibMsg>);
static_assert(offsetof(LibMsg, ucBody) == kHeadSize);

// The 4-byte request of most commands: one argument byte, or none.
struct ByteRequest {
    uint8_t ucArg;
    uint8_t ucReserved[3] = {};
};
static_assert(sizeof(ByteRequest) == 4 && std::is_trivially_copyable_v<ByteRequest>);
static_assert(offsetof(ByteRequest, ucArg) == 0);

// The response of a command that reports nothing but its result.
struct ResultResponse {
    uint8_t ucRet;
    uint8_t ucReserved[3];
};
static_assert(sizeof(ResultResponse) == 4 && std::is_trivially_copyable_v<ResultResponse>);
static_assert(offsetof(ResultResponse, ucRet) == 0);

} // namespace vx63::wire
