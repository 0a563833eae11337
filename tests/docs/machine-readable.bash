#!/bin/bash
# machine-readable DESCRIBE TOOL COMPILER: runs the examples of the reference for scripts, as they stand there.
set -euo pipefail
# shellcheck source=common.bash
source "$(dirname "$(readlink -f "$0")")/common.bash"
DESCRIBE=$1 COMPILER=$3
make_installation "$2"
cd /var/zelf/tmp

# example LANGUAGE: the text of its block.
example() { sed -n "/^\`\`\`$1\$/,/^\`\`\`\$/{/^\`\`\`/d;p}" "$ROOT/docs/machine-readable.md"; }

# Cells with colons, percent signs, newlines and more; an empty line; a second header, with cells that lost newlines.
wanted=$'name=12:30\nshare:%=50%\nnotes=one\ntwo
name=%3A\nshare:%=100%25\nnotes=
name=\nshare:%=\r\t|\nnotes=C:\\x y\n\n%0A
name=12:30\nshare:%=50%\nnotes=onetwo'

example awk >example.awk
for awk in awk mawk gawk original-awk; do
    if command -v "$awk" >/dev/null; then
        expect "$awk" "$wanted" "$("$DESCRIBE" table | LC_ALL=C "$awk" -f example.awk)"
    fi
done

example python >example.py
expect "python" "$wanted" "$("$DESCRIBE" table | python3 example.py)"

example cpp >example.cpp
"$COMPILER" -std=c++20 -Wall -Wextra -Werror example.cpp -o example
expect "C++" "$wanted" "$("$DESCRIBE" table | ./example)"

# The call shown is a real one, and so is the first example.
expect "the call" "$(zelfhome info list -Y)" "$(sed -n 's/^    \(zelfhome:\)/\1/p' "$ROOT/docs/machine-readable.md")"
example sh >example.sh
sed -i 's/enabled = true/enabled = false/' _callhomeconfig
expect "the first example" $'global\nwest' "$(bash example.sh)"
finish
