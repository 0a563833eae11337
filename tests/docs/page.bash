#!/bin/bash
# page TOOL: the manual page is clean and says what the tool does.
set -euo pipefail
# shellcheck source=../support/common.bash
source "$(dirname "$(readlink -f "$0")")/../support/common.bash"
make_installation "$1"
PAGE=$ROOT/docs/zelfhome.8
GRAMMAR=$(python3 "$ROOT/tests/docs/grammar.py")

expect "warnings of mandoc" "" "$(mandoc -T lint -W warning "$PAGE" 2>&1)"

# Commands, options, types and tokens. Both sides: a line for each verb, and one for each thing that may follow it.
page_commands() {
    # shellcheck disable=SC2016 # the text is awk's
    awk '
        function type(   text) {
            if (!sub(/.* Pq /, "")) return ""
            text = $0
            sub(/, required/, "!", text)
            gsub(/ /, "", text)
            return "=" text
        }
        function say(text,   i) { for (i = 1; i <= count; i++) print verb[i] text }
        /^\.Sh / { section = substr($0, 5) }
        section == "COMMANDS" && /^\.It Cm / {
            place = count = 0
            for (i = 4; i == 4 || $(i - 1) == "|"; i += 2) verb[++count] = $3 " " $i
            for (i = 1; i <= count; i++) first[verb[i]] = verb[1]
            say("")
        }
        section == "COMMANDS" && /^\.It Fl / { name = "-" $3; say(" " name type()) }
        section == "COMMANDS" && /^\.It Ar / { name = "#" place++ "#"; say(" " name type()) }
        section == "FORWARDING" && /^\.It$/ { bullet++ }
        section == "FORWARDING" && bullet == 1 && /^\.Cm / { at_server[$2 " " $3] }
        END { for (name in first) if (first[name] in at_server) print name " @server" }' "$PAGE" | sort
}
# shellcheck disable=SC2016 # the text is awk's
expect "commands" "$(awk '{ print $1, $2; for (i = 3; i <= NF; i++) print $1, $2, $i }' <<<"$GRAMMAR" | sort)" "$(page_commands)"

# The usage texts name no verb and no option that the tool does not know.
for subject in group capability info proxy schedule run status test zelfmon; do
    expect "usage of $subject" "Usage:" "$(zelfhome "$subject" 2>&1 |
        grep -oE -e "^Usage:|^\s+zelfhome $subject \w+|--[a-z-]+" | sed 's/.* //' |
        grep -vxFf <(sed -n "s/^$subject //p" <<<"$GRAMMAR" | tr ' =!' '\n'))"
done

# The options of all commands: the letters are the tool's, the long ones are accepted.
page_options() { sed -n '/^\.Sh OPTIONS OF ALL/,/^\.Sh VALUES/s/^\.It Fl //p' "$PAGE" | sed 's/\\&//; s/ , /\n/g; s/ Ar .*//'; }
expect "letters" "$(sed -n 's/.*optstring = "\(.*\)";/\1/p' "$ROOT/src/cli/zlcli.h" | grep -o '[^:-]' | sort)" "$(page_options | grep -v ^- | sort)"
while read -r option; do
    [[ $option == -help ]] && wanted=1 || wanted=0
    expect "-$option" "$wanted" "$(zelfhome group list "-$option" >/dev/null 2>&1 && echo 0 || echo $?)"
done < <(page_options | grep ^-)

# Columns, here and in the reference for scripts.
tool_columns() {
    local subject verb
    while read -r subject verb _; do
        [[ $verb != list ]] || printf '%s list:%s\n' "$subject" "$(zelfhome "$subject" list -Y | sed -n 's/.*:HEADER:version:reserved:reserved//; 1s/:/ /gp')"
    done <<<"$GRAMMAR"
}
columns=$(tool_columns | sed 's/ $//' | sort)
expect "columns of the page" "$columns" \
    "$(sed -n '/^\.Sh MACHINE/,/^\.El/{/^\.It Cm/{N;s/^\.It Cm \(.*\)\n/\1: /p}}' "$PAGE" | sort)"
# shellcheck disable=SC2016 # the text is sed's
expect "columns of the reference" "$columns" \
    "$(sed -n '/^## Columns/,/^- /s/^| `\([a-z]* list\)` | \(.*\) |/\1: \2/p' "$ROOT/docs/machine-readable.md" | tr -d '`,' | sort)"

expect "messages" "" "$(python3 "${BASH_SOURCE[0]%/*}/messages.py" "$ROOT/src" "$PAGE")"

finish
