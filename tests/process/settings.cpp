// The verbs over the settings road: info, proxy, schedule and capability.
#include "support/installation.h"

// Every verb on both roads of the old-master gate: the command line; what the helper program gets from a
// member of an old group; what the monitoring service gets otherwise, outside every group, too. Empty for a
// list, which asks nobody.
const std::tuple<std::string, std::string, std::string> ROADS[] = {
    {"capability enable", "capability enable", "enabled true"},
    {"capability disable", "capability disable", "enabled false"},
    {"capability list", "capability list", ""},
    {"info list", "", ""}, // the one verb without a gate
    {"info change --email a@b --customer-name A --country-code DE --customer-id 1",
     "info change --email a@b --customer-name A --country-code DE --customer-id 1",
     "country-code DE customer-id 1 customer-name A email a@b"}, // in key order
    {"proxy enable", "proxy enable", "proxy-auth-enabled false proxy-enabled true"},
    {"proxy enable --with-proxy-auth", "proxy enable --with-proxy-auth",
     "proxy-auth-enabled true proxy-enabled true"},
    {"proxy disable", "proxy disable", "proxy-auth-enabled false proxy-enabled false"},
    {"proxy list -Y", "proxy list", ""},
    {"proxy change --proxy-port 99 --proxy-location 'a b'",
     "proxy change --proxy-port 99 --proxy-location 'a b'", "proxy-location 'a b' proxy-port 99"},
    {"schedule list", "schedule list", ""},
    // The weekly task stays the weekly task on both roads.
    {"schedule add --task WEEKLY", "schedule add -F weekly", "weekly enabled"},
    {"schedule delete --task Daily", "schedule delete -F Daily", "Daily disabled"},
    {"schedule del --task DAILY", "schedule delete -F daily", "daily disabled"},
};

TEST_F(Installation, TheOldMasterGateDividesTheRoads)
{
    inEach(ROADS, [](const std::string& line, const std::string& helper, const std::string& service) {
        const std::string global =
            "proxy-location = p\nproxy-port = 1\nproxy-username = u\nproxy-password = x\n";
        const Strings toHelper = helper.empty() ? Strings{} : Strings{"callhomeutils.pl " + helper};
        const Strings toService =
            service.empty() ? Strings{} : Strings{"zelfmonc callhome changeConfig " + service};
        for (const std::string version : {"", "4.2.3.6", "4.2.3.7"}) {
            configure(topology(version.empty() ? "" : group("g", "node2", "node1,node2", version), global));
            EXPECT_EQ(runTool(line).status, 0) << version;
            EXPECT_EQ(calls(), startThen(version == "4.2.3.6" ? toHelper : toService)) << version;
        }
    });
}

TEST_F(Installation, TheOldMasterGateIsForMembersOfOldGroups)
{
    const std::pair<std::string, bool> groups[] = {
        {group("outside", "node2", "node2,node3", "4.2.3.6"), false},
        {group("no-version", "node2", "node1,node2", ""), true},
        {group("server", "node1", "node1,node2", "unknown"), true},
        {group("server-that-is-no-child", "node1", "node2", "4.2.3.8"), true}, // so without a version
    };
    for (const auto& [text, goesToHelper] : groups) {
        configure(topology(text));
        runTool("info change --email a@b");
        EXPECT_EQ(calls().back(), goesToHelper ? "callhomeutils.pl info change --email a@b"
                                               : "zelfmonc callhome changeConfig email a@b");
    }
}

// The options, the shell text behind "changeConfig", and what the client gets of it.
const std::tuple<std::string, std::string, std::string> CHANGES[] = {
    {R"(--customer-name '\'\'' --customer-id '$(id) `id` "x" &')",
     R"('customer-id' '$(id) `id` "x" &' 'customer-name' ''\'''\''')",
     R"(customer-id '$(id) `id` "x" &' customer-name '\'\'')"},
    {"--customer-name ''", "'customer-name' ''", "customer-name ''"},
    {"--email a@b --EMAIL c@ --customer-name --EMAIL", "'customer-name' '--email' 'email' 'c@'",
     "customer-name --email email c@"},
    {"-I --customer-id -- -Y --dryrun", "'customer-id' '--'", "customer-id --"},
};

TEST_F(Installation, InfoChangeQuotesForTheShell)
{
    inEach(CHANGES, [](const std::string& options, const std::string& command, const std::string& words) {
        answer("zelfmonc", "printf 'Changed.\\n\\n'");
        EXPECT_EQ(runTool("info change " + options), success("Changed.\n"));
        EXPECT_EQ(logged("ZlCli::executeCMD: cmd = /opt/zelf/bin/zelfmonc callhome changeConfig "),
                  Strings{command});
        EXPECT_EQ(calls(), startThen({"zelfmonc callhome changeConfig " + words}));
    });
}

TEST_F(Installation, InfoChangePassesTheAnswerOfTheMonitoringServiceOn)
{
    const std::pair<const char*, Result> answers[] = {
        {"echo one; echo two", success("one\ntwo\n")},
        {"echo", success("")},
        {"echo answer; echo trouble >&2; exit 255", {255, "", "trouble\nanswer\n"}},
        {"printf '%9000s' x; exit 3", {3, "", std::string(8999, ' ') + "x\n"}},
    };
    for (const auto& [script, expected] : answers) {
        answer("zelfmonc", script);
        EXPECT_EQ(runTool("info change --email a@b"), expected) << script;
    }
    EXPECT_EQ(runTool("info change -Y"), (Result{2, "", "No parameters specified\n"}));
}

TEST_F(Installation, HelperProgramGetsQuotedArgumentsInTheOrderTyped)
{
    const std::pair<std::string, std::string> cases[] = {
        {"--email a@b --customer-name 'A $B' -Y --customer-id ''",
         " info change '--email' 'a@b' '--customer-name' 'A $B' '--customer-id' ''"},
        // Started with -I, it gets the text behind the verb, which a command line never has.
        {"--email a@b -I", "  "},
    };
    configure(topology(group("g", "node2", "node1,node2", "4.2.3.6")));
    answer("callhomeutils.pl", "echo done; echo trouble >&2; exit 6");
    for (const auto& [options, command] : cases) {
        writeFile(LOG, "");
        EXPECT_EQ(runTool("info change " + options), (Result{6, "done\n", "trouble\n"})) << options;
        EXPECT_EQ(logged("ZlCli::executeCMD: cmd = /opt/zelf/bin/callhomeutils.pl"), Strings{command});
    }
    // Nobody quotes a quote on this road: the shell refuses the line.
    calls();
    EXPECT_NE(runTool("info change --customer-name O'Neil").status, 0);
    EXPECT_EQ(calls(), startThen({}));
}

TEST_F(Installation, AProxyIsEnabledWhenItIsComplete)
{
    const std::string proxy = "proxy-location = p\nproxy-port = 1\n";
    const std::string auth = proxy + "proxy-username = u\n";
    const std::tuple<std::string, bool, std::string> rows[] = {
        // settings, with authentication, what is missing
        {"proxy-port = 1\n", false, "proxy-location prior to enabling proxy"},
        {"proxy-location = unknown\nproxy-port = 1\n", false, "proxy-location prior to enabling proxy"},
        {"proxy-location = p\nproxy-port =\n", true, "proxy-port prior to enabling proxy"},
        {proxy, false, ""},
        {proxy + "proxy-password = x\n", true, "proxy-username prior to enabling authenticated proxy"},
        {auth + "proxy-password = unknown\n", true, "proxy-password prior to enabling authenticated proxy"},
        {auth + "proxy-password =\n", true, ""}, // an empty password is one
    };
    answer("zelfmonc", "echo enabled");
    for (const auto& [global, authenticated, missing] : rows) {
        configure(topology("", global));
        EXPECT_EQ(runTool(authenticated ? "proxy enable --with-proxy-auth" : "proxy enable"),
                  missing.empty() ? success("enabled\n") : failed("Please define " + missing))
            << global;
    }
}

TEST_F(Installation, ListsShowTheGlobalRowAheadOfTheGroups)
{
    // "a" sorts ahead of "global".
    const std::string groups = group("a", "node2", "node3", "",
                                     "enabled = TRUE\nproxy-username =\ndaily = enabled\nweekly = odd\n") +
                               group("z", "node2", "node3", "", "proxy-location = unseen\n");
    configure(topology(groups, "enabled = true\nproxy-username = u:1\nproxy-password = s3cret\n"
                               "proxy-enabled = true\nweekly = disabled\n"));
    EXPECT_EQ(runTool("capability list"), success("group    callHomeNode      status     \n"
                                                  "-------- ----------------- ---------- \n"
                                                  "global    ---              enabled    \n"
                                                  "a        node2.zelf.test   disabled   \n"));
    EXPECT_EQ(
        runTool("proxy list -Y"),
        success("zelfhome:proxyList:HEADER:version:reserved:reserved:group:proxyAuthEnabled:proxyEnabled:"
                "proxyLocation:proxyPort:proxyUsername:\n"
                "zelfhome:proxyList:0:1:::global::true:::u%3A1:\n"
                "zelfhome:proxyList:0:1:::a::::::\n"));
    EXPECT_EQ(runTool("schedule list"), success("=== List of registered schedule tasks ===\n\n"
                                                "group    scheduleType   isEnabled   confFile      \n"
                                                "-------- -------------- ----------- ------------- \n"
                                                "global   weekly         disabled    weekly.conf   \n"
                                                "a        daily          enabled     daily.conf    \n"
                                                "a        weekly         odd         weekly.conf   \n"));
    EXPECT_EQ(runTool("schedule list -Y").out.find("==="), std::string::npos);

    configure(topology(group("g", "node1", "node1", "5"),
                       "customer-name = Example and Sons Ltd\nemail = a@b\ncustomer-id = 12345678901\n"));
    EXPECT_EQ(runTool("info ls --dryrun -I"),
              success("group    customerName           customerID    email   countryCode   \n"
                      "-------- ---------------------- ------------- ------- ------------- \n"
                      "global   Example and Sons Ltd   12345678901   a@b                   \n"));
    EXPECT_EQ(runTool("info ls -Y").out.rfind("zelfhome:infoLs:HEADER:", 0), 0u); // the verb as typed
    // Nothing to list is no error.
    EXPECT_EQ(runTool("capability list"), success("group   callHomeNode   status   \n"));
}
