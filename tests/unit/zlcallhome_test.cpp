// The call-home configuration in memory, and this node's place in it.
#include "fixture.h"

#include "commands/zlcallhome_excute.h"

namespace {

const std::string TWO_GROUPS = R"(<callhomeTopology>
    <callhomeGroup>
        callhomeChildNodes = node1.zelf.test,node2.zelf.test
        callhomeNode = node2.zelf.test
        name = a
    </callhomeGroup>
    <callhomeGroup>
        callhomeChildNodes = node1.zelf.test,,node3.zelf.test
        callhomeNode = node4.zelf.test
        masterReleaseVersion = 4.2.3.6
        name = b
    </callhomeGroup>
</callhomeTopology>
customer-name = The Name
email = x@y
)";

// What a start needs; the CCR's file is TMP "ccr._callhomeconfig".
class ZlCallhomeTest : public ZelfTest {
protected:
    void SetUp() override
    {
        ZelfTest::SetUp();
        for (const char* tool : {"callhomeutils.pl", "zelfctl", "zelfmonc"}) {
            install(tool, "");
        }
        install("zelfccr",
                "case $1 in fget) cp /var/zelf/tmp/ccr.$2 $3 ;; fput) cp $3 /var/zelf/tmp/ccr.$2 ;; esac");
        setConfigFile(TWO_GROUPS);
        callhome = &makeCallhome({"info", "change"});
    }

    static void setConfigFile(const std::string& text) { writeFile(TMP + "ccr._callhomeconfig", text); }

    ZlCallhome* callhome = nullptr;
};

} // namespace

TEST_F(ZlCallhomeTest, ChangesInMemoryAndWritesTheWholeFileBack)
{
    callhome->config = {{"a", {{"k1", "1"}, {"k2", "2"}, {"k3", "3"}}}, {"b", {{"k", "v"}}}};
    callhome->setConfig({"a", {{"k1", "new"}, {"k2", ""}, {"none", ""}, {"k4", "4"}}});
    callhome->setConfig({"b", {}});
    callhome->setConfig({"c", {{"k", ""}}}); // a new section is stored as it is
    EXPECT_EQ(callhome->config, (std::map<std::string, ZlCallhome::Section>{
                                    {"a", {{"k1", "new"}, {"k3", "3"}, {"k4", "4"}}}, {"c", {{"k", ""}}}}));
    callhome->config.clear(); // reads the file first
    callhome->setConfig({"global", {{"email", ""}, {"enabled", "true"}}});
    EXPECT_EQ(callhome->writeConfig(), 0);
    EXPECT_EQ(contentOf(TMP + "ccr._callhomeconfig"),
              TWO_GROUPS.substr(0, TWO_GROUPS.find("email")) + "enabled = true\n");
    install("zelfccr", "exit 1");
    expectEnd([this] { callhome->writeConfig(); }, 1, "", "Failed\n");
}

TEST_F(ZlCallhomeTest, CommandsThatRecreateASection)
{
    const std::pair<const char*, const char*> cases[] = {
        {"customer-name = A B\nemail = unknown\ncountry-code = DE\ndaily = enabled\nweekly = disabled\n"
         "enabled = true\nproxy-port = 80\nproxy-location = host\nproxy-enabled = true\n"
         "proxy-auth-enabled = true\nname = g\ndisabled = x\n",
         "capability enable\ninfo change --country-code DE --customer-name A B\n"
         "proxy change --proxy-location host --proxy-port 80\nproxy enable --with-proxy-auth\n"
         "schedule add --task DAILY\nschedule delete --task WEEKLY\n"},
        {"enabled = no\nproxy-enabled = true\n", "capability disable\nproxy enable\n"},
        {"proxy-auth-enabled = true\n", "proxy disable\n"}};
    for (const auto& [settings, commands] : cases) {
        setConfigFile(settings);
        std::set<Words> commandSet = {{"old"}};
        EXPECT_EQ(callhome->configSectionToCmds("global", &commandSet, true), 1);
        std::string lines;
        for (const Words& words : commandSet) {
            lines += containerToString(words, " ") + "\n";
        }
        EXPECT_EQ(lines, commands);
    }
}

TEST_F(ZlCallhomeTest, TheChildrenAreReadAnew)
{
    const Names children = {"", "node1.zelf.test", "node2.zelf.test", "node3.zelf.test"};
    EXPECT_EQ(callhome->getCallhomeChilds(), children);
    setConfigFile("");
    EXPECT_TRUE(isOldMaster());
    EXPECT_TRUE(callhome->getCallhomeChilds().empty());
    EXPECT_FALSE(isOldMaster()); // outside every group no master is old
}
