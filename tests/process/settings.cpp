// The verbs over the settings road: proxy, schedule and capability.
#include "support/installation.h"

// Every verb on both roads of the old-master gate: the command line; what the helper program gets from a
// member of an old group; what the monitoring service gets otherwise, empty for a list, which asks nobody.
const std::tuple<std::string, std::string, std::string> ROADS[] = {
    {"capability enable", "capability enable", "enabled true"},
    {"capability disable", "capability disable", "enabled false"},
    {"capability list", "capability list", ""},
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
        const Strings direct =
            service.empty() ? Strings{} : Strings{"zelfmonc callhome changeConfig " + service};
        const std::pair<std::string, Strings> cases[] = {
            {group("g", "node2", "node1,node2", "4.2.3.6"), {"callhomeutils.pl " + helper}},
            {group("g", "node2", "node1,node2", "4.2.3.7"), direct},
            {group("g", "node2", "node1,node2", "4.2.3.8"), direct},
            {group("g", "node2", "node2,node3", "4.2.3.6"), direct},
            {"", direct},
        };
        size_t seen = 0;
        for (const auto& [groups, further] : cases) {
            configure(topology(groups, global));
            EXPECT_EQ(runTool(line).status, 0) << groups;
            const Strings all = calls();
            EXPECT_EQ(Strings(all.begin() + static_cast<std::ptrdiff_t>(seen), all.end()), startThen(further))
                << groups;
            seen = all.size();
        }
    });
}

TEST_F(Installation, AProxyIsEnabledWhenItIsComplete)
{
    const std::string auth = "proxy-location = p\nproxy-port = 1\nproxy-username = u\n";
    const std::string location = "proxy-location prior to enabling proxy";
    const std::string port = "proxy-port prior to enabling proxy";
    const std::tuple<std::string, bool, std::string> rows[] = {
        // settings, with authentication, what is missing
        {"proxy-port = 1\n", false, location},
        {"proxy-location = unknown\nproxy-port = 1\n", false, location},
        {"proxy-location = p\n", true, port},
        {"proxy-location = p\nproxy-port =\n", false, port},
        {"proxy-location = p\nproxy-port = 1\n", false, ""},
        {"proxy-location = p\nproxy-port = 1\nproxy-password = x\n", true,
         "proxy-username prior to enabling authenticated proxy"},
        {auth + "proxy-password = unknown\n", true, "proxy-password prior to enabling authenticated proxy"},
        {auth + "proxy-password =\n", true, ""}, // an empty password is one
    };
    answer("zelfmonc", "[ $2 = ensureConfigInCCR ] || echo enabled");
    for (const auto& [global, authenticated, missing] : rows) {
        configure(topology("", global));
        EXPECT_EQ(
            runTool(authenticated ? "proxy enable --with-proxy-auth" : "proxy enable"),
            (missing.empty() ? Result{0, "enabled\n", ""} : Result{1, "", "Please define " + missing + "\n"}))
            << global;
    }
}

TEST_F(Installation, ListsShowTheGlobalRowAheadOfTheGroups)
{
    // "a" sorts ahead of "global".
    const std::string groups = group("a", "node2", "node3", "",
                                     "enabled = TRUE\nproxy-username =\ndaily = enabled\nweekly = odd\n") +
                               group("z", "node2", "node3", "", "proxy-location = unseen\n");
    configure(topology(groups,
                       "enabled = true\nproxy-username = u:1\nproxy-password = s3cret\nproxy-enabled = "
                       "true\nweekly = disabled\n"));
    EXPECT_EQ(runTool("capability list"), (Result{0,
                                                  "group    callHomeNode      status     \n"
                                                  "-------- ----------------- ---------- \n"
                                                  "global    ---              enabled    \n"
                                                  "a        node2.zelf.test   disabled   \n",
                                                  ""}));
    EXPECT_EQ(
        runTool("proxy list -Y"),
        (Result{0,
                "zelfhome:proxyList:HEADER:version:reserved:reserved:group:proxyAuthEnabled:proxyEnabled:"
                "proxyLocation:proxyPort:proxyUsername:\n"
                "zelfhome:proxyList:0:1:::global::true:::u%3A1:\n"
                "zelfhome:proxyList:0:1:::a::::::\n",
                ""}));
    EXPECT_EQ(runTool("schedule list"), (Result{0,
                                                "=== List of registered schedule tasks ===\n\n"
                                                "group    scheduleType   isEnabled   confFile      \n"
                                                "-------- -------------- ----------- ------------- \n"
                                                "global   weekly         disabled    weekly.conf   \n"
                                                "a        daily          enabled     daily.conf    \n"
                                                "a        weekly         odd         weekly.conf   \n",
                                                ""}));
    EXPECT_EQ(runTool("schedule list -Y").out.find("==="), std::string::npos);
    configure(topology("")); // nothing is no error
    EXPECT_EQ(runTool("capability list"), (Result{0, "group   callHomeNode   status   \n", ""}));
}
