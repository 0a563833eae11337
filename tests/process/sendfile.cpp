// run SendFile: the checks ahead of the fork, and what the detached child does with the file.
#include "support/installation.h"

#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

const std::string CHUNK = "/var/zelf/dump/callhomeChunk_77_";
const std::string LINE = "run SendFile --file /var/zelf/core --pmr 12345.ABC.000";
const std::string HEADER = "p:t:HEADER:version:reserved:reserved:";
const std::string JOB = HEADER + "Chunk size:Job ID:";

std::string records(const std::string& header, const std::string& values)
{
    return "echo '" + header + "'; echo 'p:t:0:1:::" + values + ":'; ";
}

// The service notes each chunk in /var/zelf/told, and adds it to /var/zelf/case unless `refuse` succeeds.
std::string service(const std::string& refuse)
{
    return "cd /var/zelf; case $2 in computeChunkSize) " + records(JOB, "1000:77") +
           ";; sendChunk) echo \"$3 $4 $5 $6 $7\" >>told; " + refuse + " && exit 1; cat \"$4\" >>case;; esac";
}

class SendFile : public Installation {
protected:
    // The file has 2500 bytes; chunks have 1000. The child outlives the tool, and comes to this process then.
    void SetUp() override
    {
        Installation::SetUp();
        prctl(PR_SET_CHILD_SUBREAPER, 1);
        shell(configured(group("g", "node1", "node1", "5.0", "enabled = true\n")));
        answer("zelfdiag", records(HEADER + "name:value:", "other:/tmp") +
                               records(HEADER + "name:value:", "dataStructureDump:%2Fvar%2Fzelf%2Fdump"));
        answer("zelfmonc", service("false"));
        shell("cd /var/zelf; mkdir dump; seq 1000 | head -c 2500 | tee all >core");
    }

    // Starts a send, and waits until the child and all that it started have ended.
    static void send(const std::string& reply = "Task initialized.\nChunk size: 1000\nJob ID: 77\n",
                     const std::string& options = "")
    {
        EXPECT_EQ(runTool(LINE + options), success(reply));
        awaitChild();
    }

    static void awaitChild()
    {
        while (wait(nullptr) > 0) {
        }
        shell("[ $(grep -c '^Trace messager end at: ' $TMP/zelfhome.log) = 2 ]"); // of parent and child
    }
};

} // namespace

TEST_F(SendFile, EveryFailureIsToldAheadOfTheFork)
{
    const std::string wrong = "Received wrong results from the sysmonitor when querying for a chunk size";
    const std::string noFile = "Could not read the specified file";
    const std::tuple<std::string, std::string> rows[] = {
        {"echo 'echo x; exit 2' >answers/zelfdiag", "Could not read the cluster configuration"},
        {"rm answers/zelfdiag", "Could not determine the value of dataStructureDump"},
        {"echo exit 3 >answers/zelfmonc", "Failed while executing a query to sysmonitor"},
        {"echo 'echo garbage; echo; echo :' >answers/zelfmonc", wrong},
        {"sed -i s/1000:77/0:5/ answers/zelfmonc", wrong},
        {"sed -i s/1000:77/10:/ answers/zelfmonc", wrong},
        {"rm /var/zelf/core", noFile},
        {"cd /var/zelf; rm core; mkdir core", noFile},
        {"sed -i 's/= 5.0/= 4.2.3.6/' ccr/*",
         "The release level of the callhome node node1.zelf.test is too low for this operation (required "
         "4.2.3.7+)"},
    };
    inEach(rows, [](const std::string& damage, const std::string& response) {
        shell(damage);
        EXPECT_EQ(runTool(LINE), failed(response));
    });
    // Without a case it is the helper program's job.
    runTool("run SendFile --desc 'a b' --file /x");
    EXPECT_EQ(calls().back(), "callhomeutils.pl run sendFile --desc 'a b' -F /x");
}

TEST_F(SendFile, TheServiceIsToldOfEachChunkAndGetsWhatIsThere)
{
    // What is done ahead, when the service refuses a chunk, and a command for what it gets.
    const std::tuple<const char*, std::string, std::string, std::string> rows[] = {
        {"empty", ": >core", "false", ":"},
        {"whole chunks", "truncate -s 2000 core", "false", "head -c 2000 all"},
        {"a byte more", "truncate -s 2001 core", "false", "head -c 2001 all"},
        {"many", "seq 2500 >core", "false", "cat core"},
        {"one chunk refused", "", "[ $5 = 1000 ]", "head -c 1000 all; tail -c 500 all"},
        {"the file vanishes", "", "rm -f core; false", "cat all"}, // the child holds it open
        {"the file shrinks", "", "truncate -s 1200 core; false", "head -c 1200 all"},
        // Each file has a page of it at the least.
        {"full disk", "mount -t tmpfs -o size=4k none dump", "false", "head -c 1000 all"},
        // Some files of the kernel's are none that it copies by itself.
        {"no copy in the kernel", "[ ! -e $PCI ] || mount --bind $PCI core", "false", "cat core"},
        {"the child is in a session of its own, without the streams of the parent", "",
         "[ $(ps -o sid= -p $$) = " + std::to_string(getsid(0)) + " ] || [ ! /proc/$$/fd/2 -ef /dev/null ]",
         "cat all"},
    };
    inEach(rows, [](const char*, const auto& ahead, const auto& refuse, const auto& got) {
        answer("zelfmonc", service(refuse));
        shell("PCI=/proc/bus/pci/00/00.0; cd /var/zelf; touch told case; " + ahead +
              "\nstat -c %s core >size");
        send();
        std::string told;
        for (int offset = 0; offset < std::stoi(contentOf("/var/zelf/size")); offset += 1000) {
            told += "77 " + CHUNK + std::to_string(offset / 1000) + " " + std::to_string(offset) +
                    " --wait 86400\n";
        }
        EXPECT_EQ(contentOf("/var/zelf/told"), told);
        // On the server nobody but the service removes a chunk. All permission bits are set.
        shell("cd /var/zelf; { " + got + "; } | cmp - case && while read -r job chunk rest; do " +
              "[ $(stat -c %a $chunk) = 666 ] || exit; done <told");
    });
}

TEST_F(SendFile, TheQueryTellsSizeSpaceFileAndCase)
{
    // Scripts get the reply with its line ends doubled.
    send(JOB + "\n\np:t:0:1:::1000:77:\n", " -Y");
    shell("grep -qx 'zelfmonc callhome computeChunkSize 2500 [1-9][0-9]* SendPMRData /var/zelf/core "
          "12345.ABC.000 -Y' calls");
}

TEST_F(SendFile, AChildNodeCopiesEachChunkAndRemovesItsOwn)
{
    shell("sed -i 's/callhomeNode = node1/callhomeNode = node2/' ccr/*");
    answer("zelfrun", "case $4 in *computeChunkSize*) " + records(JOB, "1000:77") + ";; esac");
    // A copy that failed is asked for all the same.
    answer("scp", "ls /var/zelf/dump >>/opt/zelf/calls; exit 1");
    shell("cp stand-in bin/scp; mount --bind bin/scp /usr/bin/scp");
    send();
    shell("[ -z \"$(ls /var/zelf/dump)\" ]");
    const std::string encoded = "%2Fvar%2Fzelf%2Fdump%2FcallhomeChunk%5F77%5F";
    Strings expected = startThen({});
    for (const std::string index : {"0", "1", "2"}) {
        expected.push_back("scp " + CHUNK + index + " node2.zelf.test:/var/zelf/dump");
        expected.push_back("callhomeChunk_77_" + index);
        expected.push_back("zelfrun on1 node2.zelf.test execzelfhome_2 '\"zelfmon query sendChunk%2077%20" +
                           encoded + index + "%20" + (index == "0" ? "0" : index + "000") +
                           "%20%2D%2Dwait%2086400\"'");
    }
    Strings all = calls();
    all.erase(all.begin() + 3, all.begin() + 5); // the queries ahead
    EXPECT_EQ(all, expected);
}

// A sparse file: the parent's time has nothing to do with its size, nor with the service's pace.
TEST_F(SendFile, TheParentReturnsAtOnceAndAChildThatIsKilledLeavesItsLog)
{
    shell("truncate -s 100G /var/zelf/core");
    answer("zelfmonc", service("for i in $(seq 100); do [ -e go ] || sleep 0.1; done; "
                               "kill $(ps -o ppid= -p $PPID)"));
    runTool(LINE);
    shell("[ $(grep -c '^Trace messager end at: ' $TMP/zelfhome.log) = 1 ]"); // the parent alone
    writeFile("/var/zelf/go", "");
    awaitChild();
}
