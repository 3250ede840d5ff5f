#!/bin/sh
# check_hardened.sh READELF [--not-fortified=]FILE...: each built program or library has full RELRO, binds now, has no
# executable stack, is position-independent, and was compiled with the stack protector and fortified calls.
set -eu
readelf=$1
shift
failed=0

fail() {
    echo "check_hardened: $1: $2" >&2
    failed=1
}

for word; do
    file=${word#--not-fortified=}
    segments=$("$readelf" -lW "$file")
    dynamic=$("$readelf" -dW "$file")
    symbols=$("$readelf" --dyn-syms -W "$file")
    "$readelf" -h "$file" | grep -q 'Type: *DYN' || fail "$file" "is not position-independent"
    echo "$segments" | grep -q GNU_RELRO || fail "$file" "has no RELRO"
    echo "$dynamic" | grep -q -e BIND_NOW -e 'FLAGS_1.*NOW' || fail "$file" "binds late"
    echo "$segments" | grep GNU_STACK | grep -q ' RW ' || fail "$file" "has an executable stack"
    echo "$symbols" | grep -q __stack_chk_fail || fail "$file" "has no stack protector"
    [ "$file" != "$word" ] || echo "$symbols" | grep -q '_chk@' || fail "$file" "calls nothing fortified"
done
exit $failed
