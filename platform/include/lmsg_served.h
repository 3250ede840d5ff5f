/*
 * lmsg_served.h: whether anybody serves a message queue. Of the PC alone: the firmware has no such call, so
 * look it up by dlsym() before use.
 */
#ifndef LMSG_SERVED_H
#define LMSG_SERVED_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

enum {
    LMSG_SERVED_UNKNOWN = -1, /* another user's queue, processes that may not be looked at, no /proc */
    LMSG_SERVED_NONE = 0,     /* there is no such queue, so nobody receives from it */
    LMSG_SERVED_LEFT = 1,     /* it exists, but no other process that can be seen has it open */
    LMSG_SERVED_OPEN = 2      /* another process has it open: its receiver, or somebody who sends to it */
};

/* Looks at the queue of a process id, and makes none. Returns LMSG_SERVED_*. */
int32_t lmsg_isServed(uint8_t ucQueId);

#ifdef __cplusplus
}
#endif

#endif
