// The bytes of an input, taken from the front. Behind their end come zeros, which everywhere stand for what
// is usual.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <iterator>

namespace responses {

class Input {
public:
    Input(const uint8_t* data, size_t size) : m_data(data), m_size(size) {}

    bool empty() const { return m_size == 0; }

    void bytes(void* to, size_t size)
    {
        const size_t given = std::min(size, m_size);
        memset(to, 0, size);
        if (given != 0) {
            memcpy(to, m_data, given);
            m_data += given;
            m_size -= given;
        }
    }

    template <class Number>
    Number raw()
    {
        Number number;
        bytes(&number, sizeof number);
        return number;
    }

    uint8_t byte() { return raw<uint8_t>(); }

    // Any number, often one at an edge.
    int32_t number()
    {
        static constexpr int32_t kEdges[] = {
            0,     1,   2,   3,    4,    5,    6,    7,      8,      9,         10,       12,    14,
            15,    17,  18,  35,   36,   39,   40,   41,     42,     44,        46,       48,    49,
            50,    80,  81,  139,  140,  141,  254,  255,    256,    257,       300,      323,   324,
            325,   624, 999, 1000, 1001, 2000, 3000, 4000,   4001,   32767,     32768,    65535, 65536,
            70000, -1,  -2,  -38,  -39,  -40,  -256, -32768, -70000, INT32_MAX, INT32_MIN};
        const uint8_t choice = byte();
        if (choice < std::size(kEdges))
            return kEdges[choice];
        return choice < 200 ? choice - 64 : raw<int32_t>();
    }

    // What a call of the platform fails with: mostly one of `kinds` known codes.
    int32_t failure(uint8_t kinds)
    {
        const uint8_t choice = byte();
        const int32_t code = choice < 240 ? -1 - choice % kinds : raw<int32_t>();
        return code == 0 ? -1 : code;
    }

private:
    const uint8_t* m_data;
    size_t m_size;
};

} // namespace responses
