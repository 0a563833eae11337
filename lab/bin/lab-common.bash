# What the stand-ins share: where things are, the record of calls, a few helpers. Sourced, never run.
# shellcheck shell=bash
set -euo pipefail

LAB_STATE=/opt/zelf/lab # a link to the folder that all nodes of the lab share
LAB_CCR=$LAB_STATE/ccr
LAB_NODE_FILES=/var/zelf/gen/nodeFiles
read -r LAB_NODE </proc/sys/kernel/hostname

# log_call ARGUMENT...: one line with node, program and arguments, quoted as a shell reads them, so that the
# bounds of each argument can be seen. Each stand-in does this first.
log_call() {
    local arguments=''
    (($# == 0)) || printf -v arguments ' %q' "$@"
    printf '%s %s%s\n' "$LAB_NODE" "${0##*/}" "$arguments" >>"$LAB_STATE/calls"
}

fail() {
    printf '%s: %s\n' "${0##*/}" "$*" >&2
    exit 1
}

# The lock of the repository, from here to the end of the process.
lock_ccr() {
    exec {LAB_LOCK}>"$LAB_CCR/lock"
    flock "$LAB_LOCK"
}

# replace_file FILE: FILE gets what comes on standard input. It is written beside and renamed, so that a reader
# finds the old text or the new one, and needs no lock.
replace_file() {
    local new
    new=$(mktemp "$1.XXXXXX")
    cat >"$new"
    mv -- "$new" "$1"
}

# support_listens: can the support service be reached?
support_listens() { (: <>"/dev/tcp/$(<"$LAB_STATE/support.address")") 2>/dev/null; }

# full_encode TEXT: tab, newline, blank and the ASCII punctuation as a percent sign and two upper-case digits.
full_encode() {
    local LC_ALL=C text=$1 out='' i char
    for ((i = 0; i < ${#text}; i++)); do
        char=${text:i:1}
        case $char in
            [[:punct:]] | $'\t' | $'\n' | ' ') printf -v char '%%%02X' "'$char" ;;
        esac
        out+=$char
    done
    printf '%s\n' "$out"
}

# colon_header TYPE COLUMN... and colon_row TYPE VALUE...: a table for programs. Only values are encoded.
colon_header() {
    printf '%s:HEADER:version:reserved:reserved:' "$1"
    printf '%s:' "${@:2}"
    echo
}

colon_row() {
    local value
    printf '%s:0:1:::' "$1"
    for value in "${@:2}"; do
        printf '%s:' "$(full_encode "$value")"
    done
    echo
}

# find_member TEXT: sets MEMBER to the fields of the cluster node that TEXT names: by number, daemon short name,
# address, admin long name, daemon long name or admin short name. Fails for a node that is none of the cluster.
find_member() {
    local field
    while IFS=: read -r -a MEMBER; do
        [[ ${MEMBER[*]:0:4} == *20_MEMBER_NODE* ]] || continue
        for field in 4 5 6 7 14 15; do
            [[ ${MEMBER[field]} != "$1" ]] || return 0
        done
    done </var/zelf/gen/zelfsdr
    return 1
}

# write_node_class NAME LIST: the two files of a node class, for the nodes in the comma-separated LIST.
write_node_class() {
    local stem=$LAB_NODE_FILES/user${1,,} words word names='' addresses=''
    IFS=, read -r -a words <<<"$2"
    for word in "${words[@]}"; do
        find_member "$word" || fail "$word is not a node of this cluster"
        names+=${MEMBER[7]}$'\n'
        addresses+=${MEMBER[6]}$'\n'
    done
    replace_file "$stem.ipa" <<<"${addresses%$'\n'}"
    replace_file "$stem.rel" <<<"${names%$'\n'}"
}

# has_node_class NAME
has_node_class() { [[ -e $LAB_NODE_FILES/user${1,,}.rel ]]; }
