// What the library does not export: the same code once more, in a shared library that does.
#pragma once

#include <cstddef>
#include <cstdint>

extern "C" {

void inside_init(int32_t procId);
int32_t inside_exchange(uint8_t service, uint16_t command, const void* body, uint16_t length, void* response);
void inside_logStart();
void inside_logEnd();
}
