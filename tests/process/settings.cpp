// The verbs over the settings road: info, proxy, schedule and capability.
#include "support/installation.h"

// Every verb on both roads of the old-master gate: the command line; what the monitoring service gets, if
// anything; what the helper program gets from a member of an old group, if not the line.
const std::tuple<std::string, std::string, std::string> ROADS[] = {
    {"capability enable", "enabled true", ""},
    {"capability disable", "enabled false", ""},
    {"capability list", "", ""},
    {"info list", "", "nobody"}, // the one verb without a gate
    {"info change --email a@b --customer-name A --country-code DE --customer-id 1",
     "country-code DE customer-id 1 customer-name A email a@b", ""}, // in key order
    {"proxy enable", "proxy-auth-enabled false proxy-enabled true", ""},
    {"proxy disable", "proxy-auth-enabled false proxy-enabled false", ""},
    {"proxy list -Y", "", "proxy list"},
    {"proxy change --proxy-port 99 --proxy-location 'a b'", "proxy-location 'a b' proxy-port 99", ""},
    {"schedule list", "", ""},
    // The weekly task stays the weekly task on both roads.
    {"schedule add --task WEEKLY", "weekly enabled", "schedule add -F weekly"},
    {"schedule delete --task Daily", "Daily disabled", "schedule delete -F Daily"},
    {"schedule del --task DAILY", "daily disabled", "schedule delete -F daily"},
};

TEST_F(Installation, TheOldMasterGateDividesTheRoads)
{
    const std::string global = "proxy-location = p\nproxy-port = 1\nproxy-username = u\nproxy-password = x\n";
    const std::tuple<std::string, bool> places[] = {
        {group("outside", "node2", "node2,node3", "4.2.3.6"), false},
        {group("old", "node2", "node1,node2", "4.2.3.6"), true},
        {group("new", "node2", "node1,node2", "4.2.3.7"), false},
        {group("server-that-is-no-child", "node1", "node2", "4.2.3.8"), true}, // so without a version
    };
    for (const auto& [groups, isOld] : places) {
        configure(topology(groups, global));
        for (const auto& [line, service, helper] : ROADS) {
            EXPECT_EQ(runTool(line).status, 0) << groups << line;
            Strings further = {isOld ? "callhomeutils.pl " + (helper.empty() ? line : helper)
                                     : "zelfmonc callhome changeConfig " + service};
            further.resize((isOld ? helper == "nobody" : service.empty()) ? 0 : 1);
            EXPECT_EQ(calls(), startThen(further)) << groups;
        }
    }
}

const std::string CHANGE = "zelfmonc callhome changeConfig ";
const std::string PROXY = "proxy-location = p\nproxy-port = 1\n";
const std::string USER = PROXY + "proxy-username = u\n";
const std::string OLD = configured(group("g", "node2", "node1,node2", "4.2.3.6")) +
                        "echo 'echo done; echo trouble >&2; exit 6' >answers/callhomeutils.pl";
// "a" sorts ahead of "global".
const std::string SECTIONS = configured(
    group("a", "node2", "node3", "", "enabled = TRUE\nproxy-username =\ndaily = enabled\nweekly = odd\n") +
        group("z", "node2", "node3", "", "proxy-location = unseen\n"),
    "enabled = true\nproxy-username = u:1\nproxy-password = s3cret\nproxy-enabled = true\n" + PROXY +
        "weekly = disabled\n");

const Run SETTINGS[] = {
    // What is changed is quoted for the shell.
    {R"(info change --customer-name '\'\'' --customer-id '$(id) `id` "x" &')", "", success(""),
     CHANGE + R"(customer-id '$(id) `id` "x" &' customer-name '\'\'')"},
    {"info change --customer-name ''", "echo \"printf 'Changed.\\n\\n'\" >answers/zelfmonc",
     success("Changed.\n"), CHANGE + "customer-name ''"},
    {"info change --email a@b --EMAIL c@ --customer-name --EMAIL",
     "echo 'echo answer; echo; echo trouble >&2; exit 255' >answers/zelfmonc",
     Result{255, "", "trouble\nanswer\n"}, CHANGE + "customer-name --email email c@"},
    {"info change -I --customer-id -- -Y --dryrun", "", success(""), CHANGE + "customer-id --"},
    {"info change -Y", "", Result{2, "", "No parameters specified\n"}, ""},
    // The helper program gets the arguments in the order typed; with -I the text behind the verb, of which
    // there is none.
    {"info change --email a@b --customer-name 'A $B' -Y --customer-id ''", OLD,
     Result{6, "done\n", "trouble\n"},
     "callhomeutils.pl info change --email a@b --customer-name 'A $B' --customer-id ''"},
    {"info change --email a@b -I", OLD, Result{6, "done\n", "trouble\n"}, "callhomeutils.pl"},

    {"proxy enable", configured("", "proxy-port = 1\n"),
     failed("Please define proxy-location prior to enabling proxy"), ""},
    {"proxy enable", configured("", "proxy-location = p\nproxy-port =\n"),
     failed("Please define proxy-port prior to enabling proxy"), ""},
    {"proxy enable", configured("", PROXY), success(""),
     CHANGE + "proxy-auth-enabled false proxy-enabled true"},
    {"proxy enable --with-proxy-auth", configured("", PROXY + "proxy-password = x\n"),
     failed("Please define proxy-username prior to enabling authenticated proxy"), ""},
    {"proxy enable --with-proxy-auth", configured("", USER),
     failed("Please define proxy-password prior to enabling authenticated proxy"), ""},
    {"proxy enable --with-proxy-auth", configured("", USER + "proxy-password =\n"), success(""),
     CHANGE + "proxy-auth-enabled true proxy-enabled true"}, // an empty password is one

    {"capability list", "", success("group   callHomeNode   status   \n"), ""},
    {"capability list", SECTIONS,
     success("group    callHomeNode      status     \n"
             "-------- ----------------- ---------- \n"
             "global    ---              enabled    \n"
             "a        node2.zelf.test   disabled   \n"),
     ""},
    {"proxy ls -Y", SECTIONS,
     success("zelfhome:proxyLs:HEADER:version:reserved:reserved:group:proxyAuthEnabled:proxyEnabled:"
             "proxyLocation:proxyPort:proxyUsername:\n"
             "zelfhome:proxyLs:0:1:::global::true:p:1:u%3A1:\n"
             "zelfhome:proxyLs:0:1:::a::::::\n"),
     ""},
    {"schedule list", SECTIONS,
     success("=== List of registered schedule tasks ===\n\n"
             "group    scheduleType   isEnabled   confFile      \n"
             "-------- -------------- ----------- ------------- \n"
             "global   weekly         disabled    weekly.conf   \n"
             "a        daily          enabled     daily.conf    \n"
             "a        weekly         odd         weekly.conf   \n"),
     ""},
    {"schedule list -Y", "",
     success(
         "zelfhome:scheduleList:HEADER:version:reserved:reserved:group:scheduleType:isEnabled:confFile:\n"),
     ""},
};

TEST_F(Installation, SettingsAreCheckedPassedOnAndListed)
{
    inEach(SETTINGS, expectRun);
    // Nobody quotes a quote for the helper program: the shell refuses the line.
    shell(OLD);
    EXPECT_NE(runTool("info change --customer-name O'Neil").status, 6);
}
