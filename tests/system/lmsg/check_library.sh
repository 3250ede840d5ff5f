#!/bin/sh
# check_library.sh LIBRARY: liblmsg.so gives exactly its two calls and needs nothing but libc.
set -eu
failed=0

fail() {
    echo "check_library: $1: $2" >&2
    failed=1
}

exported=$(nm -D --defined-only "$1" | awk '{ print $3 }' | sort | tr '\n' ' ')
[ "$exported" = "lmsg_trcvMq lmsg_tsndMq " ] || fail "$1" "exports $exported"

needed=$(readelf -d "$1" | sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p' | grep -v -E '^libc\.so' || true)
[ -z "$needed" ] || fail "$1" "needs $needed"

# These count the wall clock, which may be set; those take memory or a lock.
imported=$(nm -D --undefined-only "$1" | awk '{ print $2 }' | sed 's/@.*//')
for name in mq_timedsend mq_timedreceive gettimeofday time malloc calloc realloc free pthread_mutex_lock; do
    if echo "$imported" | grep -q -x "$name"; then fail "$1" "calls $name"; fi
done
exit $failed
