#!/bin/bash
# callhomeutils.pl: the helper program. It gathers and sends data and keeps the records of that, and it answers for
# groups whose server is too old for the monitoring service. It is bash in spite of its name, which callers look for.
source "${BASH_SOURCE[0]%/*}/lab-common.bash"
source "${BASH_SOURCE[0]%/*}/lab-progress.bash"
log_call "$@"

TASKS="daily weekly sendfile sendpmrdata"

declare -A OPTION # to its value; a flag has the value "yes"

# read_options "NAME..." "FLAG..." ARGUMENT...: NAME takes a value. The arguments come in any order.
read_options() {
    local names=" $1 " flags=" $2 "
    shift 2
    while (($# > 0)); do
        if [[ $flags == *" $1 "* ]]; then
            OPTION[$1]=yes
        elif [[ $names == *" $1 "* && $# -ge 2 ]]; then
            OPTION[$1]=$2
            shift
        else
            fail "unexpected argument '$1'"
        fi
        shift
    done
}

# --- run -------------------------------------------------------------------------------------------------------

# run_task TASK ORIGINAL COMMAND...: the command packs the data.
run_task() {
    begin_run gathering "$1" tar "$2"
    if ! "${@:3}"; then
        record failed 1
        fail "the data could not be gathered"
    fi
    record sending 0
    if ! support_listens || ! replace_file "$LAB_STATE/support/${RUN_PACKAGE##*/}" <"$RUN_PACKAGE"; then
        record failed 1
        fail "the support service does not respond; the data stays in $RUN_PACKAGE"
    fi
    record success 0
    echo "Sent ${RUN_PACKAGE##*/} to the support service."
}

pack_daily() { tar -cf "$RUN_PACKAGE" -C /var/zelf/gen zelf.cfg zelfsdr; }

pack_weekly() { tar -cf "$RUN_PACKAGE" -C /var/zelf/gen zelf.cfg zelfsdr nodeFiles/zelfall.rel nodeFiles/zelfall.ipa; }

run_gatherSend() {
    read_options -F "" "$@"
    case ${OPTION[-F]-} in
        daily | weekly) run_task "${OPTION[-F]}" '' "pack_${OPTION[-F]}" ;;
        *) fail "run gatherSend takes -F daily or -F weekly" ;;
    esac
}

# pack_file FILE DESCRIPTION
pack_file() {
    local note=${RUN_PACKAGE%.tar}.description status=0
    printf '%s\n' "$2" >"$note"
    tar -cf "$RUN_PACKAGE" -C "$(dirname -- "$1")" "./$(basename -- "$1")" -C "${note%/*}" "${note##*/}" || status=1
    rm -f -- "$note"
    return "$status"
}

run_sendFile() {
    read_options "-F --desc" "" "$@"
    [[ -f ${OPTION[-F]-} && -r ${OPTION[-F]} ]] || fail "run sendFile takes -F and a file that can be read, not '${OPTION[-F]-}'"
    run_task sendfile "${OPTION[-F]}" pack_file "${OPTION[-F]}" "${OPTION[--desc]-}"
}

# --- status ----------------------------------------------------------------------------------------------------

# find_files: sets FILES to the progress files that --task names, or to those of all tasks, as far as they exist. From
# here on nobody else changes them.
find_files() {
    local task
    FILES=()
    [[ " $TASKS " == *" ${OPTION[--task]-daily} "* ]] || fail "'${OPTION[--task]}' is no task; tasks: $TASKS"
    exec 9<"$LAB_PROGRESS"
    flock 9
    for task in ${OPTION[--task]-$TASKS}; do
        [[ ! -e $LAB_PROGRESS/callhome-progress.$task ]] || FILES+=("$LAB_PROGRESS/callhome-progress.$task")
    done
}

# show_run FIELD...: a line of the table, from the fields of a record.
show_run() {
    printf '%-11s %-14s %-12s ' "$2" "$3" "$5"
    [[ -z ${OPTION[-v]-} ]] || printf '%-5s %-20s %-24s ' "$8" "${10}" "${11}"
    printf '%s\n' "${9##*/}"
}

status_list() {
    local fields count
    read_options "--task -n" -v "$@"
    count=${OPTION[-n]-1000000}
    [[ $count =~ ^[0-9]+$ ]] || fail "'$count' is not a number of runs"
    find_files
    show_run '' task startTime '' status '' '' rc packageFileName dataID originalFilename
    ((${#FILES[@]} > 0)) || return 0
    # Of each run the last line counts.
    tac -- "${FILES[@]}" | awk -F '[|]' 'NF == 12 && !seen[$2, $3]++' | LC_ALL=C sort -s -t '|' -k 3,3r |
        awk -v count="$count" 'NR <= count' | while IFS='|' read -r -a fields; do
        show_run "${fields[@]}"
    done
}

status_delete() {
    local file
    read_options "--task --startTime --startTimeBefore --startTimebefore" --all "$@"
    # By way of the environment, since awk reads backslashes in what -v gives it.
    export AT=${OPTION[--startTime]-} BEFORE=${OPTION[--startTimeBefore]-${OPTION[--startTimebefore]-}}
    [[ -n ${OPTION[--task]-}$AT$BEFORE${OPTION[--all]-} ]] ||
        fail "status delete takes --task TASK, --startTime TIME, --startTimeBefore TIME or --all"
    find_files
    # Lines that are no records stay. Times are compared as text.
    LC_ALL=C awk -F '[|]' '
        NF == 12 && (ENVIRON["AT"] == "" || $3 "" == ENVIRON["AT"] "") &&
            (ENVIRON["BEFORE"] == "" || $3 "" < ENVIRON["BEFORE"] "") { lines++; runs += !seen[$2, $3]++; next }
        { print > (FILENAME ".new") }
        END { printf "Deleted the records of %d runs (%d lines).\n", runs, lines }
    ' "${FILES[@]}" </dev/null
    for file in "${FILES[@]}"; do
        if [[ -s $file.new ]]; then
            mv -- "$file.new" "$file"
        else
            rm -- "$file"
        fi
    done
}

# --- settings, for old groups ----------------------------------------------------------------------------------

# What a request without values sets.
declare -A SETS=(
    ["capability enable"]='enabled true'
    ["capability disable"]='enabled false'
    ["proxy enable"]='proxy-enabled true proxy-auth-enabled false'
    ["proxy enable --with-proxy-auth"]='proxy-enabled true proxy-auth-enabled true'
    ["proxy disable"]='proxy-enabled false proxy-auth-enabled false'
    ["schedule add -F daily"]='daily enabled'
    ["schedule add -F weekly"]='weekly enabled'
    ["schedule delete -F daily"]='daily disabled'
    ["schedule delete -F weekly"]='weekly disabled'
)

# change_settings SUBJECT VERB [ARGUMENT...]: lists or changes settings of the whole cluster.
change_settings() {
    local request="$1 $2" pairs
    read -r -a pairs <<<"${SETS[$*]-}"
    if [[ $request == "$1 list" ]]; then
        echo "callhomeutils: $request, of all settings:"
        grep -sE '^[a-z-]+ = ' "$LAB_CCR/files/_callhomeconfig" | grep -v password || true
        return
    fi
    if [[ $request == "info change" || $request == "proxy change" ]]; then
        shift 2
        while (($# >= 2)); do
            pairs+=("${1#--}" "$2")
            shift 2
        done
    fi
    ((${#pairs[@]} > 0)) || fail "unknown request '$request', or not all of it"
    echo "callhomeutils: $request"
    exec "${BASH_SOURCE[0]%/*}/zelfmonc" callhome changeConfig "${pairs[@]}"
}

case "${1-} ${2-}" in
    "run gatherSend" | "run sendFile" | "status list" | "status delete") "$1_$2" "${@:3}" ;;
    "capability "?* | "info "?* | "proxy "?* | "schedule "?*) change_settings "$@" ;;
    *) fail "unknown request '${1-} ${2-}'" ;;
esac
