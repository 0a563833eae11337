# Completion of zelfhome for bash (4.4 or newer). The functions work in the user's own shell, under set -eu and what
# else may be set there.
# shellcheck shell=bash disable=SC2046,SC2086 # what is split here holds neither blanks nor wildcards

@COMMANDS@

# _zelfhome_offer WORD...: those that go on with what is typed, in any case; of the words for all commands, those that
# begin as a dash does. The variables are the caller's, here and below.
_zelfhome_offer() {
    local word
    local -l lower start=$current
    for word in "$@"; do
        lower=$word
        case $word in
            -Y | --debug | --help | --version) [[ $start == -* ]] || continue ;;
        esac
        [[ ${lower:0:${#start}} != "$start" ]] || COMPREPLY+=("$word")
    done
}

# Short names of nodes, or long ones when what is typed goes on in no short one, behind the list that is typed.
_zelfhome_nodes() {
    local field name list=
    [[ $current != *,* ]] || list=${current%,*},
    for field in 16 8; do
        for name in $(_zelfhome_node_names $field); do
            [[ $list$name != "$current"* || ,$list == *",$name,"* ]] || COMPREPLY+=("$list$name")
        done
        ((${#COMPREPLY[@]} == 0)) || break
    done
    _zelfhome_offer all
}

# _zelfhome_values TYPE
_zelfhome_values() {
    case $1 in
        nodes) _zelfhome_nodes ;;
        group) _zelfhome_offer $(_zelfhome_group_names) ;;
        file) compopt -o default ;; # the shell knows how to quote them
        *\|*) _zelfhome_offer ${1//|/$'\n'} ;;
    esac
}

# Sets `typed` to the words ahead of the current one as the tool will see them: bash cuts at ":", "=" and "@" too.
# Fails in the middle of such a word.
_zelfhome_words() {
    local word gap blank=$' \t' line=${COMP_LINE:0:$COMP_POINT}
    typed=()
    for word in "${COMP_WORDS[@]:0:$COMP_CWORD}"; do
        gap=${line%%[!"$blank"]*} line=${line#"$gap"} line=${line#"$word"} count=${#typed[@]}
        if [[ -n $gap || $count -eq 0 ]]; then
            typed+=("$word")
        else
            typed[count - 1]+=$word
        fi
    done
    count=${#typed[@]}
    [[ $line == ["$blank"]* ]]
}

# Walks the commands: offers subjects and verbs, and leaves what the typed verb takes in `rows`.
_zelfhome_commands() {
    local row word subject=1 verb=1
    for row in $(_zelfhome_rows); do
        word=${row%%: *} word=${word##* }
        case $row in
            '    '*) [[ -z $subject || -z $verb ]] || rows+=("$word") ;;
            '  '*)
                [[ $count -ne 2 || -z $subject ]] || _zelfhome_offer ${word//,/$'\n'}
                [[ ,$word, == *",${typed[2]-},"* ]] && verb=1 || verb=
                ;;
            *)
                [[ $count -ne 1 ]] || _zelfhome_offer "$word"
                [[ $word == "${typed[1]-}" ]] && subject=1 || subject=
                verb=
                ;;
        esac
    done
}

# _zelfhome_take NAME: sets `type` to that of the value that an option or positional takes, and `one` if the verb takes
# no other such option with it.
_zelfhome_take() {
    local row
    for row in "${rows[@]}"; do
        [[ ${row%%=*} != "|$1" ]] || one=1
        [[ ${row#|} != "$1="* ]] || type=${row#*=}
    done
}

# Offers what may come next after subject and verb: a value, or the options that are not given yet. The tool takes the
# names of options in any case.
_zelfhome_arguments() {
    local row type='' given=' ' place=0 one=''
    local -l name
    for name in "${typed[@]:3}"; do
        if [[ -n $type ]]; then
            type= # the word is a value
            continue
        elif [[ $name == -* ]]; then
            _zelfhome_take "$name"
        else
            place=$((place + 1))
        fi
        given+="$name "
    done
    [[ -n $type || $current == -* ]] || _zelfhome_take "#$place#"
    if [[ -n $type ]]; then
        _zelfhome_values "$type"
        return
    fi
    for row in "${rows[@]%%=*}"; do
        name=${row#|}
        [[ $row == '#'* || $given == *" $name "* || ($row == '|'* && -n $one) ]] || _zelfhome_offer "${row#|}"
    done
}

_zelfhome() {
    local IFS=$'\n' current=${2-} count=0
    local -a typed rows=()
    COMPREPLY=()
    if [[ ${3-} == *[\<\>] ]]; then
        _zelfhome_values file # a redirection
    elif _zelfhome_words; then
        _zelfhome_commands
        [[ $count -lt 3 ]] || _zelfhome_arguments
    fi
}

complete -F _zelfhome zelfhome
