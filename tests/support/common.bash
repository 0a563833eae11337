# What the tests of the documents share. They run as in-namespace bash SCRIPT ARGUMENT..., where the shipped paths
# are the test's own.
# shellcheck shell=bash

ROOT=$(readlink -f "$(dirname "${BASH_SOURCE[0]}")/../..")
export ROOT LC_ALL=C.UTF-8
FAILED=0

# expect NAME WANTED GOT: notes a difference.
expect() {
    [[ $2 != "$3" ]] || return 0
    FAILED=1
    printf 'FAILED: %s\n' "$1"
    diff -u --label wanted --label got <(printf '%s\n' "$2") <(printf '%s\n' "$3") || true
}

finish() {
    ((FAILED == 0)) || exit 1
    echo passed
}

# make_installation TOOL: the tool in PATH among its stand-ins, and the configuration of the lab's page, in which this
# node is the server of the group.
make_installation() {
    "$ROOT/tests/support/prepare"
    ln -s "$1" /opt/zelf/bin/zelfhome
    PATH=/opt/zelf/bin:$PATH
    sed -n "s/^    //; s/O'Neil Ltd/100% O'Neil: Ltd/; /^country\|^customer-id\|^email/d; /^<callhomeTopology>/,/^weekly/p" \
        "$ROOT/lab/README.md" | tee /opt/zelf/ccr/_callhomeconfig >/var/zelf/tmp/_callhomeconfig
    mkdir -p /var/zelf/tmp/callhome/progress
    echo 'x|daily|20260101000000||success|||RC=0|/t/callhome.node1.20260101.gat_daily.tar|id|a:b|' \
        >/var/zelf/tmp/callhome/progress/callhome-progress.daily
}
