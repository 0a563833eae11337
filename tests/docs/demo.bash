#!/bin/bash
# demo TOOL: the demo runs through, and every command with its output that README and manual page show ("node1$ ..." up
# to an empty line, the next command or the end of the block) stands so in what it prints, times aside.
set -euo pipefail

cd "$(dirname "$(readlink -f "$0")")/../.."
WORK=$(mktemp -d)
trap 'rm -rf "$WORK"' EXIT
ZELFLAB_DIR=$WORK/lab ZELFHOME=$1 ZELFLAB_WAIT=60 lab/demo >"$WORK/demo"

# plain FILE: without indentation, blanks at line ends, and times.
plain() {
    sed -E 's/^[[:space:]]+|[[:space:]]+$//g; s/[0-9]{14}/TIME/g; s/^(Starting|End) time: .*/\1 time: TIME/' "$1"
}

for text in README.md docs/zelfhome.8; do
    awk '
        function check() {
            if (shown != "" && index(demo, "\n" shown) == 0) {
                printf "FAILED: not in the demo:\n%s", shown
                failed = 1
            }
            blocks += shown != ""
            shown = ""
        }
        FNR == NR { demo = demo "\n" $0; next }
        FNR == 1 { demo = demo "\n" }
        /^node[0-9]+\$ / || /^$/ || /^```/ || /^\.Ed/ { check() }
        /^node[0-9]+\$ / || shown != "" { shown = shown $0 "\n" }
        END { exit failed || blocks == 0 }' <(plain "$WORK/demo") <(plain "$text")
done
