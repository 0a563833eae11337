# The records of the runs on this node: a file for each task, a line for each change of a run's state. Whoever adds
# or rewrites lines holds the lock on their folder for that moment. Sourced behind lab-common.bash, never run.
# shellcheck shell=bash

LAB_PROGRESS=/var/zelf/tmp/callhome/progress
RUN_TASK='' RUN_START='' RUN_PACKAGE='' RUN_ID='' RUN_ORIGINAL='' # the run that 'record' writes about

# begin_run STATUS TASK KIND ORIGINAL [ID]: makes a run that is told from all others of this node by its start time,
# which therefore may lie some seconds ahead, and writes its first record. KIND ends the name of its package.
begin_run() {
    local second=$EPOCHSECONDS
    RUN_TASK=$2 RUN_ORIGINAL=$4
    {
        flock 9
        while printf -v RUN_START '%(%Y%m%d%H%M%S)T' "$second" && grep -qsF "|$RUN_START|" "$LAB_PROGRESS"/*; do
            second=$((second + 1))
        done
        # Lists show a name from seven bytes ahead of "gat_" on, so the time of day stands there.
        RUN_PACKAGE=${LAB_PROGRESS%/*}/callhome.$LAB_NODE.$RUN_START.gat_$2.$3
        RUN_ID=${5:-$LAB_NODE.$RUN_START}
        add_record "$1" 0
    } 9<"$LAB_PROGRESS"
}

# record STATUS CODE
record() {
    {
        flock 9
        add_record "$@"
    } 9<"$LAB_PROGRESS"
}

# add_record STATUS CODE: readers want 12 fields, and use those that are named here but the first and the fourth.
add_record() {
    local IFS='|' now fields
    printf -v now '%(%Y%m%d%H%M%S)T'
    fields=("$LAB_NODE" "$RUN_TASK" "$RUN_START" "$now" "$1" '' '' "RC=$2" "$RUN_PACKAGE" "$RUN_ID" "$RUN_ORIGINAL" '')
    fields=("${fields[@]//[|$'\n']/_}")
    printf '%s\n' "${fields[*]}" >>"$LAB_PROGRESS/callhome-progress.$RUN_TASK"
}
