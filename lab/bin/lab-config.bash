# The call-home configuration, for the stand-ins that change it: open_config takes it apart, save_config puts it
# together again, and between the two the caller holds the lock of the repository. Sourced behind lab-common.bash,
# never run.
# shellcheck shell=bash

LAB_CONFIG=$LAB_CCR/files/_callhomeconfig
TAB=$'\t'
declare -A SETTINGS # "section TAB key" to value; a section is "global" or the name of a group

# ensure_config: makes an empty configuration where there is none.
ensure_config() {
    lock_ccr
    [[ -e $LAB_CONFIG ]] || printf '%s\n' '<callhomeTopology>' '</callhomeTopology>' | replace_file "$LAB_CONFIG"
}

open_config() {
    local line key value in_group=''
    local -A group
    ensure_config
    while IFS= read -r line; do
        case $line in
            *'<callhomeGroup>'*) in_group=yes group=([name]='') ;;
            *'</callhomeGroup>'*)
                in_group=''
                for key in "${!group[@]}"; do
                    SETTINGS[${group[name]}$TAB$key]=${group[$key]}
                done
                ;;
            *=*)
                # 'read' cuts the blanks off both ends.
                read -r key <<<"${line%%=*}"
                read -r value <<<"${line#*=}"
                if [[ -n $in_group && -n $key ]]; then
                    group[$key]=$value
                else
                    SETTINGS[global$TAB$key]=$value
                fi
                ;;
        esac
    done <"$LAB_CONFIG"
}

save_config() {
    local group
    {
        echo '<callhomeTopology>'
        while IFS= read -r group; do
            echo '    <callhomeGroup>'
            print_section "$group" '        '
            echo '    </callhomeGroup>'
        done < <(group_names)
        echo '</callhomeTopology>'
        print_section global ''
    } | replace_file "$LAB_CONFIG"
}

# print_section SECTION INDENT
print_section() {
    local id
    for id in "${!SETTINGS[@]}"; do
        [[ ${id%"$TAB"*} != "$1" ]] || printf '%s%s = %s\n' "$2" "${id##*"$TAB"}" "${SETTINGS[$id]}"
    done | LC_ALL=C sort
}

# group_names: prints the groups, in the order of the file. Every group has the key "name".
group_names() {
    local id
    for id in "${!SETTINGS[@]}"; do
        [[ $id != *"${TAB}name" || $id == "global$TAB"* ]] || printf '%s\n' "${id%"$TAB"*}"
    done | LC_ALL=C sort
}

# has_group NAME
has_group() { [[ -n ${SETTINGS[$1${TAB}name]+x} && $1 != global ]]; }

# grouped_nodes: prints the nodes of all groups, with a comma ahead of each and one behind the last.
grouped_nodes() {
    local id
    for id in "${!SETTINGS[@]}"; do
        [[ $id != *"${TAB}callhome"@(Node|ChildNodes) ]] || printf ',%s' "${SETTINGS[$id]}"
    done
    printf ','
}

# change_setting KEY VALUE
change_setting() {
    local group
    SETTINGS[global$TAB$1]=$2
    # The cluster's value shows in lists; whether a node may gather is what its own group's section says.
    if [[ $1 == enabled ]]; then
        while IFS= read -r group; do
            SETTINGS[$group$TAB$1]=$2
        done < <(group_names)
    fi
}

# add_group NAME SERVER VERSION MEMBER[,MEMBER...]: where nobody has switched the capability on or off for the
# cluster yet, the group says nothing of it either, which counts as off.
add_group() {
    SETTINGS[$1${TAB}name]=$1
    SETTINGS[$1${TAB}callhomeNode]=$2
    SETTINGS[$1${TAB}masterReleaseVersion]=$3
    SETTINGS[$1${TAB}callhomeChildNodes]=$4
    if [[ -n ${SETTINGS[global${TAB}enabled]+x} ]]; then
        SETTINGS[$1${TAB}enabled]=${SETTINGS[global${TAB}enabled]}
    fi
}

# delete_group NAME
delete_group() {
    local id
    for id in "${!SETTINGS[@]}"; do
        # shellcheck disable=SC2016 # 'unset' expands the subscript itself, and would expand a name that looks like code
        [[ $id != "$1$TAB"* ]] || unset 'SETTINGS[$id]'
    done
}
