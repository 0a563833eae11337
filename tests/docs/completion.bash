#!/bin/bash
# completion TOOL FOLDER: drives bash and zsh at a terminal of their own, key by key, with the completions in
# the folder.
set -euo pipefail
# shellcheck source=../support/common.bash
source "$(dirname "$(readlink -f "$0")")/../support/common.bash"
make_installation "$1"

# What the tool declares: all options of a verb (it reads their names in lower case), and whether what follows an
# option is its value. "status ls" leads nowhere.
grammar_rows() {
    local subject verb words names name
    while read -r subject verb words; do
        [[ "$subject $verb" != "status ls" ]] || continue
        mapfile -t names < <(grep -oE -- '--[a-z-]+[ =!]' <<<"$words " | tr -d ' =!')
        echo "zelfhome $subject $verb --* = $subject $verb $(printf '%s\n' --debug --help "${names[@]}" | sort | xargs)"
        for name in "${names[@]}"; do
            echo "zelfhome $subject $verb $name --deb^ = $subject $verb $name --deb$([[ $words == *"$name="* ]] || echo ug)"
        done
    done < <(python3 "$ROOT/tests/docs/grammar.py")
}
GRAMMAR=$(grammar_rows)

# What anybody may read, since the sessions below run as nobody.
DESK=/var/zelf/desk
mkdir -p "$DESK/out"
cp "$2"/* "$DESK"
touch "$DESK/out/core.dump" "$DESK/two words"
chmod -R a+rwX "$DESK"
chmod a+rX /var/zelf{,/gen,/tmp,/tmp/_callhomeconfig} # the tool has narrowed the last to its owner
# shellcheck disable=SC2016 # what a shell would run
for name in größe 'evil$(date)' 'evil;' "evil'" 'evil x' -evil 'evil*'; do
    sed -i "s|^</callhomeTopology>|<callhomeGroup>\nname=$name\n</callhomeGroup>\n&|" /var/zelf/tmp/_callhomeconfig
done
echo 'name = global' >>/var/zelf/tmp/_callhomeconfig

declare -A START
# In both shells, Esc-* inserts all that would be offered.
COMMON="cd $DESK; PS1='$ ' HISTFILE=; zelfhome() { local IFS=' '; printf '%s\\n' \"\$*\" >>$DESK/calls; }"
START[bash]="bind 'set enable-bracketed-paste off' '\"\\e*\": insert-completions'; source ./zelfhome"
START[zsh]="fpath=($DESK \$fpath); autoload -Uz compinit && compinit -u -D; setopt no_auto_menu
zle -C all complete-word _generic; bindkey '\\e*' all
zstyle ':completion:all:*' completer _all_matches _complete; zstyle ':completion:all:*' insert true
zstyle ':completion:*' list-grouped false"

# session NAME SHELL SETTINGS <TABLE: types the left side of each row and expects that zelfhome then gets the right side
# as its words. ^ is the tab key, * is Esc-*.
session() {
    local name="$2: $1" rows
    mapfile -t rows
    printf '%s\n' "$COMMON" "${START[$2]}" "$3" | tee "$DESK/.bashrc" >"$DESK/.zshrc"
    install -m 666 /dev/null "$DESK/calls"
    printf '%s\n' "${rows[@]%% = *}" exit | sed 's/\^/\t/g; s/\*/\x1b*/g' >"$DESK/keys"
    (cd / && HOME=$DESK INPUTRC=/dev/null SHELL=/bin/bash timeout 20 \
        setpriv --reuid 65534 --regid 65534 --clear-groups script -qec "$2 -i" /dev/null) \
        <"$DESK/keys" >/var/zelf/transcript 2>&1 || true
    expect "$name" "$(printf '%s\n' "${rows[@]#* = }")" "$(cat "$DESK/calls")"
    expect "$name: no words at the prompt" "" "$(grep -aE '(bash|zsh|awk|compopt|script|rc|_zelfhome[a-z_]*): ' /var/zelf/transcript)"
}

for shell in bash zsh; do
    session "grammar" $shell "" <<<"$GRAMMAR"
    session "names, options, values" $shell "" <<'END'
zelfhome * = capability group info proxy run schedule status test zelfmon
zelfhome -* = --help --version
zelfhome group -* = group --help
zelfhome gr^ad^west node1 --no^node2,node3^ = group add west node1 --node node2,node3
zelfhome group * = group add auto del delete list ls
zelfhome run S^--f^two^--des^x = run SendFile --file two words --desc x
zelfhome run SendFile --file out/c^ --pm^ = run SendFile --file out/core.dump --pmr
zelfhome run SendFile --pmr x --* = run SendFile --pmr x --debug --file --help
zelfhome status delete * = status delete --all --starttime --starttimebefore --task
zelfhome status list --numbers 5 --TASK daily * = status list --numbers 5 --TASK daily --verbose
zelfhome status list --task * = status list --task DAILY SENDFILE SENDPMRDATA WEEKLY
zelfhome schedule add --task w^ = schedule add --task WEEKLY
zelfhome info list -* = info list --debug --help -Y
zelfhome info change -Y --customer-name "O'Neil: a=b" --email ops@one.example --coun^IE = info change -Y --customer-name O'Neil: a=b --email ops@one.example --country-code IE
zelfhome group delete * = group delete größe west
zelfhome group delete west * = group delete west
zelfhome group add * = group add
zelfhome group add a:b no^1 = group add a:b node1
zelfhome group add west node1 --node node1,* = group add west node1 --node node1,node2 node1,node3 node1,node4
zelfhome group auto --server node1.z^ = group auto --server node1.zelf.test
zelfhome group auto --server * = group auto --server all node1 node2 node3 node4
zelfhome group auto --force * = group auto --force
zelfhome nonsense * = nonsense
zelfhome group delete "we^ = group delete west
true && LANG=C zelfhome group del west^| cat = group del west
zelfhome group list >out/co^; zelfhome group list > out/co^ = group list
 = group list
END
    expect "files" "out/core.dump" "$(cd "$DESK" && echo out/*)"
done

# Each subject, verb and option has its line in zsh.
session "descriptions" zsh "" <<'END'
zelfhome ^cap^^ = capability
zelfhome group ^list --^ = group list --
END
for line in 'capability  *-- The switch' 'ls  *-- Show the groups' '--long  *-- Show long names'; do
    grep -aq -- "$line" /var/zelf/transcript || expect "descriptions" "$line" "$(</var/zelf/transcript)"
done

for settings in bash:"set -eufo noclobber; shopt -s failglob nocasematch; IFS=,:n" zsh:"setopt ksh_arrays sh_word_split; IFS=,:n"; do
    session "settings of the shell" "${settings%%:*}" "${settings#*:}" <<'END'
zelfhome gr^ad^west node1 --no^node2,node3^ = group add west node1 --node node2,node3
zelfhome group delete * = group delete größe west
zelfhome status list --v^ --task sendf^ = status list --verbose --task SENDFILE
END
done

# Nothing to read: no files, no rights, no plain files, no text.
FILES=(/var/zelf/gen/zelfsdr /var/zelf/tmp/_callhomeconfig)
cp "${FILES[0]}" "$DESK/zelfsdr"
# shellcheck disable=SC2016 # for eval
for make in : 'install -m 600 "$DESK/zelfsdr" "$file"' 'mkfifo -m 666 "$file"' 'head -c 100000 /dev/urandom >"$file"'; do
    for file in "${FILES[@]}"; do
        rm -f "$file"
        eval "$make"
    done
    for shell in bash zsh; do
        session "$make" $shell "" <<'END'
zelfhome group delete * = group delete
zelfhome group add west * = group add west all
END
    done
done
finish
