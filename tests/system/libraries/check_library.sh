#!/bin/sh
# check_library.sh LIBRARY NAMES NEEDED...: LIBRARY exports exactly the names in the file NAMES, needs
# exactly the libraries NEEDED, and calls nothing that takes memory, a lock or the wall clock's word for a
# time-out.
set -eu
library=$1
names=$2
shift 2
failed=0

fail() {
    echo "check_library: $library: $1" >&2
    failed=1
}

sorted() { LC_ALL=C sort; }

exported=$(nm -D --defined-only "$library" | awk '$2 != "A" { sub(/@.*/, "", $3); print $3 }' | sorted)
expected=$(grep -v -e '^#' -e '^$' "$names" | sorted)
[ "$exported" = "$expected" ] || fail "exports
$exported
instead of
$expected"

# The dynamic loader itself may be named for its thread-local storage.
needed=$(readelf -d "$library" | sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p' | grep -v '^ld-linux' | sorted)
expected=$(printf '%s\n' "$@" | sorted)
[ "$needed" = "$expected" ] || fail "needs
$needed
instead of
$expected"

imported=$(nm -D --undefined-only "$library" | awk '{ print $2 }' | sed 's/@.*//')
for name in malloc calloc realloc free _Znwm _Znam _Znwj _Znaj pthread_mutex_lock __cxa_guard_acquire \
    mmap mmap64 fopen mq_timedsend mq_timedreceive gettimeofday time \
    __mq_timedsend_time64 __mq_timedreceive_time64 __gettimeofday64 __time64; do
    if echo "$imported" | grep -q -x "$name"; then fail "calls $name"; fi
done
exit $failed
