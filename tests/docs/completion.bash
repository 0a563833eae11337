#!/bin/bash
# completion DESCRIBE TOOL: drives an interactive bash at a terminal of its own, key by key.
set -euo pipefail
# shellcheck source=common.bash
source "$(dirname "$(readlink -f "$0")")/common.bash"
make_installation "$2"
SCRIPT=$ROOT/packaging/completion/zelfhome

# shellcheck source=../../packaging/completion/zelfhome
expect "commands" "$("$1" grammar | sed -n 's/^command //p')" "$(source "$SCRIPT" && printf '%s\n' "$_zelfhome_commands")"

# What anybody may read, since the sessions below run as nobody.
DESK=/var/zelf/desk
mkdir -p "$DESK/out"
cp "$SCRIPT" "$DESK/completion"
touch "$DESK/out/core.dump" "$DESK/two words"
chmod -R a+rwX "$DESK"
chmod a+rx /var/zelf /var/zelf/gen /var/zelf/tmp
chmod a+r /var/zelf/tmp/_callhomeconfig # the tool has narrowed it to its owner
# shellcheck disable=SC2016 # what a shell would run
for name in größe 'evil$(date)' 'evil;' "evil'" 'evil x' -evil 'evil*'; do
    sed -i "s|^</callhomeTopology>|<callhomeGroup>\nname=$name\n</callhomeGroup>\n&|" /var/zelf/tmp/_callhomeconfig
done
echo 'name = global' >>/var/zelf/tmp/_callhomeconfig

# session NAME SETTINGS <TABLE: types the left side of each row and expects that zelfhome then gets the right side as
# its words. ^ is the tab key; * has readline insert all that it would offer.
session() {
    local name=$1 rows
    mapfile -t rows
    cat >"$DESK/rc" <<END
PS1='$ ' HISTFILE=
bind 'set enable-bracketed-paste off' '"\\e*": insert-completions'
cd $DESK
source ./completion
zelfhome() { local IFS=' '; printf '%s\\n' "\$*" >>$DESK/calls; }
$2
END
    : >"$DESK/calls"
    chmod a+w "$DESK/calls"
    printf '%s\n' "${rows[@]%% = *}" exit | sed 's/\^/\t/g; s/\*/\x1b*/g' >"$DESK/keys"
    (cd / && INPUTRC=/dev/null SHELL=/bin/bash timeout 20 setpriv --reuid 65534 --regid 65534 --clear-groups script -qec \
        "bash --noprofile --rcfile $DESK/rc -i" /dev/null) <"$DESK/keys" >/tmp/transcript 2>&1 || true
    expect "$name" "$(printf '%s\n' "${rows[@]#* = }")" "$(cat "$DESK/calls")"
    expect "$name: no words at the prompt" "" "$(grep -aE '(bash|awk|compopt|script|rc): ' /tmp/transcript)"
}

session "names, options, values" "" <<'END'
zelfhome * = capability group info proxy run schedule status test zelfmon
zelfhome gr^ad^west node1 --no^node2,node3^ = group add west node1 --node node2,node3
zelfhome group * = group add auto del delete list ls
zelfhome run S^--f^two^--des^x = run SendFile --file two words --desc x
zelfhome run SendFile --file out/c^ --pm^ = run SendFile --file out/core.dump --pmr
zelfhome status delete * = status delete --all --starttime --starttimebefore --task
zelfhome status list --numbers 5 --TASK daily * = status list --numbers 5 --TASK daily --verbose
zelfhome status list --task * = status list --task DAILY SENDFILE SENDPMRDATA WEEKLY
zelfhome schedule add --task w^ = schedule add --task weekly
zelfhome info list -* = info list --debug --help -Y
zelfhome info change -Y --customer-name "O'Neil: a=b" --email ops@one.example --coun^IE = info change -Y --customer-name O'Neil: a=b --email ops@one.example --country-code IE
zelfhome group delete * = group delete east größe west
zelfhome group delete west * = group delete west
zelfhome group add * west = group add west
zelfhome group add a:b no^1 = group add a:b node1
zelfhome group add west node1 --node node1,* = group add west node1 --node node1,node2 node1,node3 node1,node4
zelfhome group auto --server * = group auto --server all node1 node2 node3 node4
zelfhome nonsense * = nonsense
true && LANG=C zelfhome group del w^| cat = group del west
zelfhome group list >out/co^; zelfhome group list > out/co^ = group list
 = group list
END
expect "files" "out/core.dump" "$(cd "$DESK" && echo out/*)"

session "settings of the shell" "set -eufo noclobber; shopt -s failglob nocasematch; IFS=,:n" <<'END'
zelfhome gr^ad^west node1 --no^node2,node3^ = group add west node1 --node node2,node3
zelfhome group delete * = group delete east größe west
zelfhome status list --v^ --task sendf^ = status list --verbose --task sendfile
zelfhome nonsense^ ^ = nonsense
END

# Nothing to read: no files, no rights, no plain files, no text.
FILES=(/var/zelf/gen/zelfsdr /var/zelf/tmp/_callhomeconfig)
cp "${FILES[0]}" "$DESK/zelfsdr"
# shellcheck disable=SC2016 # for eval
for make in : 'install -m 600 "$DESK/zelfsdr" "$file"' 'mkfifo -m 666 "$file"' 'head -c 100000 /dev/urandom >"$file"'; do
    for file in "${FILES[@]}"; do
        rm -f "$file"
        eval "$make"
    done
    session "$make" "" <<'END'
zelfhome group delete * = group delete
zelfhome group add west * = group add west all
zelfhome group ad^ = group add
END
done

# zsh, where it is there.
if command -v zsh >/dev/null; then
    cat >"$DESK/keys.zsh" <<END
zmodload zsh/zpty
zpty shell zsh -f -i
zpty -w shell 'autoload -Uz compinit; compinit -u -D; cd $DESK; source ./completion'
zpty -w shell 'zelfhome() { print -r -- "\$*" >calls }'
zpty -w -n shell \$'zelfhome gr\tad\twest node1\t--no\tnode2,node3\t\nexit\n'
while zpty -r shell line; do :; done
END
    cp "$DESK/zelfsdr" "${FILES[0]}"
    timeout 20 zsh -f "$DESK/keys.zsh" >/tmp/transcript 2>&1 || true
    expect "zsh" "group add west node1 --node node2,node3" "$(cat "$DESK/calls")"
fi
finish
