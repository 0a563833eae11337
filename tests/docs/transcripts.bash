#!/bin/bash
# transcripts DEMO_OUTPUT <TEXT: every command with its output that TEXT shows ("node1$ ..." up to an empty line, the
# next command or the end of the block) stands so in the output of the demo, times aside.
set -euo pipefail

# plain FILE: without indentation, blanks at line ends, and times.
plain() {
    sed -E 's/^[[:space:]]+|[[:space:]]+$//g; s/[0-9]{14}/TIME/g; s/^(Starting|End) time: .*/\1 time: TIME/' "$1"
}

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
    END {
        check()
        if (blocks == 0) print "FAILED: no transcript"
        exit failed || blocks == 0
    }' <(plain "$1") <(plain /dev/stdin)
echo passed
