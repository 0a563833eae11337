#!/bin/bash
# cluster TOOL: the tool on the nodes of the lab: what crosses from one node to another arrives as it was typed.
set -euo pipefail
# shellcheck source=../support/common.bash
source "$(dirname "$(readlink -f "$0")")/../support/common.bash"

LAB=$ROOT/lab/zelflab
# It waits for another lab on this machine, of another clone's tests perhaps.
export ZELFLAB_DIR=/tmp/zelfhome-test-lab.$$ ZELFHOME=$1 ZELFLAB_WAIT=60
MARK=zelflab-$(printf %s "$ZELFLAB_DIR" | cksum | cut -d ' ' -f 1) # the source of the lab's mounts
NODES=(node1 node2 node3)

WORK=$(mktemp -d)
# The lab goes with this script, however it ends: then the guard's input ends, which nobody else may hold open.
exec 9> >(trap '' HUP INT TERM; cat; rm -r "$WORK"; exec "$LAB" down >/dev/null)
lab() { "$LAB" "$@" 9>&-; }

# try COMMAND...: sets STATUS, OUT and ERR.
try() {
    STATUS=0
    "$@" </dev/null >"$WORK/out" 2>"$WORK/err" || STATUS=$?
    OUT=$(<"$WORK/out") ERR=$(<"$WORK/err")
}

on() { try lab exec "$@"; } # on NODE COMMAND...

expect_in() { [[ $3 == *"$2"* ]] || expect "$1" "... $2 ..." "$3"; }

expect_failure() { expect "$1: status" "$2" "$STATUS" && expect_in "$1" "$3" "$ERR"; } # NAME STATUS WORDS

expect_nothing_left() {
    expect "what is left of $1" "" "$(ls -d "$ZELFLAB_DIR" 2>/dev/null; grep -l "$MARK" /proc/[0-9]*/mountinfo 2>/dev/null)"
}

no_group() { printf '<callhomeTopology>\n</callhomeTopology>\nenabled = true\n'; }
# The one of the lab's page: node1 the server, node1 and node2 the children.
one_group() { sed -n 's/^    //; /^<callhomeTopology>/,/^weekly/p' "$ROOT/lab/README.md"; }

# begin COMMAND: every node and service is up, and the command's output is the configuration.
begin() {
    local node
    for node in "${NODES[@]}"; do
        lab start-ssh "$node"
    done
    lab start-support
    "$1" | lab seed /dev/stdin
}

export LAB
# shellcheck disable=SC2016 # for bash
for early in 'timeout -s INT 0.3 $LAB up' 'timeout -s KILL 0.3 $LAB up' '$LAB up & sleep 0.2; $LAB down; wait'; do
    try bash -c "$early" 9>&-
    try lab down # where the machine is slow, the other came first
    expect_nothing_left "$early"
done
lab up 3

# The lab is nobody else's.
ZELFLAB_WAIT=0 try lab up
expect_failure "a second lab" 1 "the lab is up already, in $ZELFLAB_DIR (see "
ZELFLAB_DIR=/tmp/zelfhome-test-other try lab down
ZELFLAB_WAIT=0 ZELFLAB_DIR=/tmp/zelfhome-test-other try lab up
expect_failure "another lab" 1 "another lab is up, in $ZELFLAB_DIR: only one can be on this machine"
expect_in "completion" "zelfhome group list -Y" \
    "$(printf 'zelfhome gr\tli\t-Y\nexit\n' | script -qec "$LAB shell node1" /dev/null 9>&-)"

# A setting made on one node is read on every other, with text that some shell on the way would like to change.
begin no_group
# shellcheck disable=SC2016 # none of ours
for name in "O'Neil  Ltd" '50% "off"' '$HOME `id` $(id)' 'a&b|c>d<e(f)' '~#!{}[]' Zürich; do
    on node2 zelfhome info change --email a@b.c --customer-name "$name"
    expect "change to $name" 0 "$STATUS"
    on node3 zelfhome info list
    expect_in "name" "global   $name   " "$OUT"
done

# A child forwards to its server, and hands back what that says.
begin one_group
on node1 zelfhome status list --task SENDFILE --numbers 3 -Y
server="$STATUS$OUT$ERR"
on node2 zelfhome status list --task SENDFILE --numbers 3 -Y
expect "forwarded" "$server" "$STATUS$OUT$ERR"
expect_in "the call" 'node1 zelfremote execzelfhome_2 status\ list\ %2D%2Dtask\ SENDFILE\ %2D%2Dnumbers\ 3\ %2DY' "$(lab calls)"
lab stop-ssh node1
on node2 timeout 20 zelfhome status list # a failure, and no hang
expect_failure "unreached server" 255 "connect to host node1.zelf.test"

# Groups reach the nodes that are up. One that is down is named in an addition, and keeps its state in a deletion.
begin no_group
on node2 zelfhome group add west node1 --node 2,node1
expect "group add" 0 "$STATUS"
lab stop-ssh node2
on node3 zelfhome group add east node3 --node all
expect_failure "group add" 1 "No call home packages installed on the following nodes: node2.zelf.test"
on node3 zelfhome group delete west
expect "group delete" "Successfully deleted" "$OUT"
on node1 cat /opt/zelf/data/callhome/etc/UPLmain.properties
expect "a node that was up" "EnableCallHome=false" "$OUT"
on node2 test -e /opt/zelf/data/callhome/etc/UPLmain.properties
expect "a node that was down" 1 "$STATUS"
on node2 zelfhome info change --customer-name "O'Neil & 50%"
on node1 zelfhome group auto --enable --server node3
expect "group auto" 0 "$STATUS"
expect_in "the call" "node3 zelfmonc callhome changeConfig customer-name O\\'Neil\\ \\&\\ 50%" "$(lab calls)"
begin no_group
lab stop-ssh node3
on node2 zelfhome group auto --server node3
expect_failure "unreached server" 1 "Problem with zelfrun/zelfremote. See /var/zelf/tmp/zelfhome.log for details"
for node in "${NODES[@]}"; do
    on "$node" find /var/zelf/tmp -name 'zlTemp*' -o -name 'zelfrun*'
    expect "leftovers on $node" "" "$OUT"
done

# A file arrives whole, and no chunk stays.
begin one_group
on node1 sh -c 'echo 1000 >/opt/zelf/lab/chunksize'
on node2 sh -c 'head -c 3500 /dev/urandom >/var/zelf/tmp/core'
on node2 zelfhome run SendFile --file /var/zelf/tmp/core --pmr 12345.ABC.000
expect "SendFile" 0 "$STATUS"
on node1 timeout 15 sh -c "until grep -qs '|success|.*|1|' /var/zelf/tmp/callhome/progress/*sendpmrdata; do sleep 0.01; done"
on node2 cmp /var/zelf/tmp/core /opt/zelf/lab/support/12345.ABC.000.1
expect "the file" 0 "$STATUS$OUT$ERR"
on node2 zelfhome status list -Y
expect_in "status" ":success:0:1:" "$OUT"
for node in node1 node2; do
    on "$node" ls /var/zelf/tmp/dump
    expect "chunks on $node" "" "$OUT"
done

lab down
expect_nothing_left "the tests"
finish
