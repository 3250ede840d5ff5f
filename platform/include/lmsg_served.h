/*
 * lmsg_served.h: whether anybody serves a message queue, whose it is, and what lies in it. Of the PC alone:
 * the firmware has no such calls, so look them up by dlsym() before use.
 */
#ifndef LMSG_SERVED_H
#define LMSG_SERVED_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

enum {
    LMSG_SERVED_UNKNOWN = -1, /* a queue that is not trusted (LMSG_ERR_UNTRUSTED), no /proc */
    LMSG_SERVED_NONE = 0,     /* there is no such queue, so nobody receives from it */
    LMSG_SERVED_LEFT = 1,     /* it exists, but no other process that can be seen has it open */
    LMSG_SERVED_OPEN = 2      /* another process has it open: its receiver, or somebody who sends to it */
};

/* Looks at the queue of a process id, and makes none. Returns LMSG_SERVED_*. */
int32_t lmsg_isServed(uint8_t ucQueId);

typedef struct {
    uint32_t user;     /* the user id of the owner */
    uint32_t mode;     /* what others may do with it, as of a file */
    uint32_t messages; /* that lie in it */
    uint32_t trusted;  /* 1, or 0 where it is refused with LMSG_ERR_UNTRUSTED */
} LmsgQueue;

/*
 * Tells of the queue of a process id; makes none, and takes no message. Returns 0, or -1 with nothing written
 * where there is no queue or it may not be looked at.
 */
int32_t lmsg_lookAt(uint8_t ucQueId, LmsgQueue* pQueue);

#ifdef __cplusplus
}
#endif

#endif
