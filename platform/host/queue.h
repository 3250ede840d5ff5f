// What is known of a queue on a PC by its name and its status.
#pragma once

#include <cstdint>
#include <cstdio>
#include <sys/stat.h>
#include <unistd.h>

// "/vx63.N"
struct QueueName {
    char text[sizeof "/vx63.255"];
    explicit QueueName(uint8_t ucQueId)
    {
        std::snprintf(text, sizeof text, "/vx63.%u", static_cast<unsigned>(ucQueId));
    }
};

// Anybody can make a queue of any name first. Only one of our own user or root's says what a service says,
// and only where nobody else can read it or put messages into it. Root trusts no other user's either.
inline bool isTrusted(const struct stat& status)
{
    return (status.st_uid == geteuid() || status.st_uid == 0) && (status.st_mode & (S_IRWXG | S_IRWXO)) == 0;
}
