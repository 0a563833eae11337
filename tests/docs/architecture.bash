#!/bin/bash
# architecture: every name in ARCHITECTURE.md is in the tree, in the files beside it where its line has some; and
# arrows point down, with the exceptions that it names.
set -euo pipefail
# shellcheck source=../support/common.bash
source "$(dirname "$(readlink -f "$0")")/../support/common.bash"
cd "$ROOT"

# shellcheck disable=SC2016 # the backticks are the text's
missing=$(while IFS= read -r line; do
    places=(src lab tests tools dev bench fuzz docs packaging CMakeLists.txt)
    mapfile -t names < <(grep -oP '(?<=`)[.\w][\w.:/-]*(?=(\(\))?`)' <<<"$line")
    [[ $line != '| '*src/* ]] || mapfile -t places < <(ls -d "${names[@]}" 2>/dev/null)
    for name in "${names[@]}"; do
        [[ -e $name || -n $(find "${places[@]}" -name "*$name*") ]] || grep -rqF -- "$name" "${places[@]}" ||
            echo "$name (${places[*]})"
    done
done < <(grep '`' ARCHITECTURE.md))
expect "names" "" "$missing"

ROOMS=(services cluster cli callhome commands)
upward=$(for i in 0 1 2 3; do
    grep -rlE "#include \"($(IFS='|' && echo "${ROOMS[*]:i+1}"))/" "src/${ROOMS[i]}" || true
done)
expect "upward" "$(grep '^Arrows point down' ARCHITECTURE.md | grep -o 'src/[a-z_./]*' | sort)" "$(sort <<<"$upward")"
finish
