# shellcheck shell=sh disable=SC2016 # the text in quotes is awk's
# What the completions of both shells know of zelfhome. Nothing is run here but one awk over a local file: neither the
# tool nor the network is asked. What cannot be read is not offered, and nothing is ever printed.

# The commands: subjects, under them the verbs, under these what a verb takes, options and, as #N#, positionals, each
# with the type of its value. Of those that begin with "|" a command takes one. What stands above the first subject
# holds for all. A test holds these rows against the tool.
_zelfhome_rows() {
    printf '%s\n' '    --debug: Print debug messages while the command runs
    --help: Show the usage of the subject
    -Y: Print lists as colon records, for scripts
  --help: Show the usage of the subject
--help: Show the usage
--version: Show the version
group: Groups of nodes, each with one call-home server
  add: Create a group
    #0#=text: Name of the new group
    #1#=nodes: The call-home server
    --node=nodes: The other nodes of the group
  list,ls: Show the groups
    --long: Show long names of the nodes
  delete,del: Remove a group
    #0#=group: Name of the group
  auto: Make groups of the nodes of the cluster
    |--server=nodes: Take these nodes for servers
    |--force: Give the settings to all servers, and make all groups anew
    |--enable: Enable the capability for the cluster first
    |--disable: Tell the auto-configuration to disable
capability: The switch for all of call home
  list,ls: Show the state of the cluster and its groups
  enable: Switch call home on
  disable: Switch call home off
info: Who the customer is
  list,ls: Show the data
  change: Change what is given
    --customer-name=text: Name of the customer
    --customer-id=text: Number of the customer
    --email=email: Address for questions of the support
    --country-code=country: Country, in two capital letters
proxy: The way to the support service
  list,ls: Show the settings
  enable: Use the proxy
    --with-proxy-auth: Log in to the proxy
  disable: Connect directly
  change: Change what is given
    --proxy-location=text: Host name or address of the proxy
    --proxy-port=integer: Port of the proxy
    --proxy-username=text: Name to log in with
    --proxy-password=text: Password to log in with
schedule: The daily and weekly runs
  list,ls: Show which runs are set
  add: Enable a run
    --task=DAILY|WEEKLY: The run
  delete,del: Disable a run
    --task=DAILY|WEEKLY: The run
run: Gather and send now
  GatherSend: Do what a scheduled run does
    --task=DAILY|WEEKLY: The run
  SendFile: Send one file
    --file=file: The file, on this node
    |--desc=text: Description to go with the file
    |--pmr=case: Support case that the file belongs to
status: How the runs went
  list: Show the runs
    --task=DAILY|WEEKLY|SENDFILE|SENDPMRDATA: Only the runs of this task
    --numbers=integer: Only so many runs
    --verbose: Show return codes, identifiers and file names too
  delete,del: Remove records of runs
    |--task=DAILY|WEEKLY|SENDFILE|SENDPMRDATA: Those of this task
    |--starttime=text: That of the run with this start time
    |--starttimebefore=text: Those of all earlier runs
    |--all: All
test: The connection to the support service
  connection: Test the connection from the server of this group
zelfmon: The monitoring service on this node
  query: Pass one request on, for other nodes
    #0#=text: The request'
}

# _zelfhome_read FILE PROGRAM: prints the names that an awk program finds and that are plain text to a shell.
_zelfhome_read() {
    [ ! -f "$1" ] || LC_ALL=C command awk -F: "
        function show(name) { if (name ~ /^[A-Za-z0-9_\200-\377][A-Za-z0-9._+%\200-\377-]*\$/) print name }
        $2" "$1" 2>/dev/null || :
}

# _zelfhome_node_names FIELD: those in field 16 are short, those in field 8 are long.
_zelfhome_node_names() { _zelfhome_read /var/zelf/gen/zelfsdr '/20_MEMBER_NODE/ && NF >= 18 { show($'"$1"') }'; }

_zelfhome_group_names() {
    _zelfhome_read /var/zelf/tmp/_callhomeconfig '
        /<callhomeGroup>/ { inside = 1 }
        /<\/callhomeGroup>/ { inside = 0 }
        inside && /^[ \t]*name[ \t]*=/ { gsub(/^[^=]*=[ \t]*|[ \t\r]+$/, ""); show($0) }'
}
