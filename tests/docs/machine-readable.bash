#!/bin/bash
# machine-readable TOOL COMPILER: runs the examples of the reference for scripts, as they stand there.
set -euo pipefail
# shellcheck source=../support/common.bash
source "$(dirname "$(readlink -f "$0")")/../support/common.bash"
make_installation "$1"
cd /var/zelf/tmp

# example LANGUAGE: the text of its block.
example() { sed -n "/^\`\`\`$1\$/,/^\`\`\`\$/{/^\`\`\`/d;p}" "$ROOT/docs/machine-readable.md"; }

# Cells with colons, percent signs, newlines and more; an empty line; a second header, of other columns.
printf '%s\n' zelfhome:testList:HEADER:version:reserved:reserved:name:share%3A%25:notes: \
    zelfhome:testList:0:1:::12%3A30:50%25:one%0Atwo: zelfhome:testList:0:1:::%253A:100%2525:: \
    $'zelfhome:testList:0:1::::\r\t|:C%3A\\x y%0A%0A%250A:' '' \
    zelfhome:testList:HEADER:version:reserved:reserved:state: zelfhome:testList:0:1:::up: >records
wanted=$'name=12:30\nshare:%=50%\nnotes=one\ntwo
name=%3A\nshare:%=100%25\nnotes=
name=\nshare:%=\r\t|\nnotes=C:\\x y\n\n%0A
state=up'

expect "awk" "$wanted" "$(LC_ALL=C awk -f <(example awk) <records)"
expect "python" "$wanted" "$(python3 <(example python) <records)"
example cpp >example.cpp
"$2" -std=c++20 -Wall -Wextra -Werror example.cpp -o example
expect "C++" "$wanted" "$(./example <records)"

# The call shown is a real one, and so is the first example.
expect "the call" "$(zelfhome info list -Y)" "$(sed -n 's/^    \(zelfhome:\)/\1/p' "$ROOT/docs/machine-readable.md")"
sed -i 's/enabled = true/enabled = false/' /opt/zelf/ccr/_callhomeconfig
expect "the first example" $'global\nwest' "$(bash <(example sh))"
finish
