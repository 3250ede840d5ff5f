/*
 * lmsg.h: the message queues of the platform, as the library and the services call them.
 *
 * One queue per process id. On the meter the firmware provides these calls; on a PC platform/host does.
 * Every call blocks for at most its time-out, whatever the wall clock does and whatever signals arrive.
 * Any number of threads may call at the same time.
 */
#ifndef LMSG_H
#define LMSG_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* The largest message, header included, in bytes. */
#define LMSG_SIZE_MAX 1300u

/* A time-out that does not end. */
#define LMSG_FOREVER UINT32_MAX

/* Results. A caller that knows only "0, -4 or another error" is served as well. */
enum {
    LMSG_OK = 0,
    LMSG_ERR_ARG = -1,        /* null pointer; message empty or longer, buffer shorter than LMSG_SIZE_MAX */
    LMSG_ERR_PERMISSION = -2, /* the queue belongs to another user, who lets nobody in */
    LMSG_ERR_RESOURCE = -3,   /* a limit of the kernel: queues, message bytes (RLIMIT_MSGQUEUE), open files */
    LMSG_ERR_TIMEOUT = -4,    /* the queue stayed full (send) or empty (receive) */
    LMSG_ERR_FORMAT = -5,     /* a queue of that name exists with another message size */
    LMSG_ERR_SYSTEM = -6,     /* any other failure of the system */
    LMSG_ERR_UNTRUSTED = -7,  /* the queue is neither the own user's nor root's, or others may use it too */
    LMSG_ERR_MISSING = -8     /* a refusal to a process that has no queue */
};

/*
 * Sends one message to a process's queue; waits while the queue is full. The receiver need not run yet: the
 * message waits for it in the queue. Only the refusal of a request that was not expected (8 bytes, option 4)
 * makes no queue.
 *   ucQueId    process id of the receiver
 *   pMsg       the message; ulLen bytes, 1 to LMSG_SIZE_MAX
 *   ulTimeout  milliseconds, 0 not to wait, or LMSG_FOREVER
 * Returns LMSG_OK once the message is queued, or a negative LMSG_ERR_* with nothing sent.
 */
int32_t lmsg_tsndMq(uint8_t ucQueId, const void* pMsg, uint32_t ulLen, uint32_t ulTimeout);

/*
 * Takes the next message off the own queue, in the order of sending; waits while the queue is empty.
 *   ucQueId    the own process id
 *   pMsg       receives the message; ulLen bytes, at least LMSG_SIZE_MAX
 *   pulMsgLen  receives the length of the message in bytes; may be null
 *   ulTimeout  milliseconds, 0 not to wait, or LMSG_FOREVER
 * Bytes of pMsg beyond the message stay as they were. Of several threads that wait on one queue, one gets
 * the message.
 * Returns LMSG_OK, or a negative LMSG_ERR_* with *pMsg and *pulMsgLen as they were.
 */
int32_t lmsg_trcvMq(uint8_t ucQueId, void* pMsg, uint32_t ulLen, uint32_t* pulMsgLen, uint32_t ulTimeout);

#ifdef __cplusplus
}
#endif

#endif
