# What the tests of the documents share. They run as in-namespace bash SCRIPT ARGUMENT..., where the shipped paths
# are the test's own.
# shellcheck shell=bash

ROOT=$(readlink -f "$(dirname "${BASH_SOURCE[0]}")/../..")
export ROOT LC_ALL=C.UTF-8
FAILED=0

# expect NAME WANTED GOT: notes a difference.
expect() {
    [[ $2 != "$3" ]] || return 0
    FAILED=1
    printf 'FAILED: %s\n' "$1"
    diff -u --label wanted --label got <(printf '%s\n' "$2") <(printf '%s\n' "$3") || true
}

finish() {
    ((FAILED == 0)) || exit 1
    echo passed
}

# make_installation TOOL: the tool in PATH among programs that do nothing, and a configuration with two groups. This
# node is the server of one.
make_installation() {
    local program
    ln -s "$1" /opt/zelf/bin/zelfhome
    PATH=/opt/zelf/bin:$PATH
    for program in zelf{ccr,monc,ctl,adm,mgr,prod,run,crclass,chclass,delclass} callhomeutils.pl; do
        ln -s /bin/true "/opt/zelf/bin/$program"
    done
    cat >/var/zelf/tmp/_callhomeconfig <<'END'
<callhomeTopology>
    <callhomeGroup>
        callhomeChildNodes = node3.zelf.test
        callhomeNode = node3.zelf.test
        masterReleaseVersion = 5.0.2.0
        name = east
    </callhomeGroup>
    <callhomeGroup>
        callhomeChildNodes = node1.zelf.test,node2.zelf.test
        callhomeNode = node1.zelf.test
        enabled = true
        masterReleaseVersion = 5.0.2.0
        name = west
    </callhomeGroup>
</callhomeTopology>
customer-name = 100% O'Neil: Ltd
daily = enabled
enabled = true
proxy-username = zelf
END
    mkdir -p /var/zelf/tmp/callhome/progress
    echo 'x|daily|20260101000000||success|||RC=0|/t/callhome.node1.20260101.gat_daily.tar|id|a:b|' \
        >/var/zelf/tmp/callhome/progress/callhome-progress.daily
}
