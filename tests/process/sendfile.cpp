// run SendFile: the checks ahead of the fork, and what the detached child does with the file.
#include "support/installation.h"

#include <chrono>
#include <filesystem>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

const std::string DUMP = "/var/zelf/dump";
const std::string CHUNK = DUMP + "/callhomeChunk_77_";
const std::string FILE_TO_SEND = "/var/zelf/core";
const std::string LINE = "run SendFile --file " + FILE_TO_SEND + " --pmr 12345.ABC.000";
const Result STARTED = success("Task initialized.\nChunk size: 10\nJob ID: 77\n");
const std::string HEADER = ":HEADER:version:reserved:reserved:";
const std::string JOB = "Chunk size:Job ID";

std::string records(const std::string& columns, const std::string& values)
{
    return "echo 'p:t" + HEADER + columns + ":'; echo 'p:t:0:1:::" + values + ":'";
}

// A job of this chunk size. The service takes the chunks that it is told of into /var/zelf/case, and says in
// /var/zelf/told what it was told.
std::string service(const std::string& chunkSize, const std::string& refuse = "false")
{
    return "case $2 in computeChunkSize) " + records(JOB, chunkSize + ":77") +
           ";; sendChunk) echo \"$3 $4 $5 $6 $7\" >>/var/zelf/told; " + refuse +
           " && exit 1; cat \"$4\" >>/var/zelf/case;; esac";
}

std::string bytes(size_t count)
{
    std::string text;
    while (text.size() < count) {
        text += std::to_string(text.size());
    }
    return text.substr(0, count);
}

// This node is the server of a group, or its child.
void join(const std::string& server, const std::string& version = "5.0")
{
    configure(topology(group("g", server, "node1", version, "enabled = true\n")));
}

class SendFile : public Installation {
protected:
    void SetUp() override
    {
        Installation::SetUp();
        std::filesystem::create_directory(DUMP);
        join("node1");
        answer("zelfdiag", records("name:value", "other:/tmp") + "; " +
                               records("name:value", "dataStructureDump:%2Fvar%2Fzelf%2Fdump"));
        answer("zelfmonc", service("10"));
        writeFile(FILE_TO_SEND, bytes(25));
    }

    // The child outlives the tool, and comes to this process then.
    static void SetUpTestSuite() { ASSERT_EQ(prctl(PR_SET_CHILD_SUBREAPER, 1), 0); }

    // Waits until the child and all that it started have ended.
    static void awaitChild()
    {
        pid_t ended = 0;
        for (int i = 0; i < 1000 && ended != -1; ++i) {
            std::this_thread::sleep_for(std::chrono::milliseconds(ended == 0 && i > 0 ? 10 : 0));
            ended = waitpid(-1, nullptr, WNOHANG);
        }
        EXPECT_EQ(ended, -1) << "the child has not ended";
        EXPECT_EQ(logged("Trace messager end at: ").size(), 2U) << "of parent and child";
    }

    // Starts a send, and sees it through.
    static void send(const Result& expected = STARTED, const std::string& options = "")
    {
        EXPECT_EQ(runTool(LINE + options), expected);
        awaitChild();
    }
};

} // namespace

TEST_F(SendFile, EveryFailureIsToldAheadOfTheFork)
{
    const std::string wrong = "Received wrong results from the sysmonitor when querying for a chunk size";
    const std::string noDump = "Could not determine the value of dataStructureDump";
    const std::tuple<std::string, std::string, std::string> rows[] = {
        {"zelfdiag", "echo x; exit 2", "Could not read the cluster configuration"},
        {"zelfdiag", "", noDump},
        {"zelfdiag", records("name:value", "dataStructureDump:"), noDump},
        {"zelfmonc", "exit 3", "Failed while executing a query to sysmonitor"},
        {"zelfmonc", "echo garbage; echo; echo :", wrong},
        {"zelfmonc", "echo 'p:t" + HEADER + JOB + ":'", wrong},
        {"zelfmonc", records(JOB, "0:5"), wrong},
        {"zelfmonc", records(JOB, "many:5"), wrong},
        {"zelfmonc", records(JOB, "10:"), wrong},
    };
    inEach(rows, [](const std::string& program, const std::string& script, const std::string& response) {
        answer(program, script);
        EXPECT_EQ(runTool(LINE), failed(response)) << script;
        EXPECT_TRUE(std::filesystem::is_empty(DUMP));
    });
    SetUp();
    for (const std::string file : {"/var/zelf/none", "/var/zelf"}) {
        EXPECT_EQ(runTool("run SendFile --pmr TS123456789 --file " + file),
                  failed("Could not read the specified file"));
    }
    join("node2", "4.2.3.6");
    EXPECT_EQ(runTool(LINE), failed("The release level of the callhome node node2.zelf.test is too low for "
                                    "this operation (required 4.2.3.7+)"));
    // Without a case it is the helper program's job.
    EXPECT_EQ(runTool("run SendFile --desc 'a b' --file /x").status, 0);
    EXPECT_EQ(calls().back(), "callhomeutils.pl run sendFile --desc 'a b' -F /x");
}

TEST_F(SendFile, ChunksAreWholeNamedByIndexAndToldByOffset)
{
    for (const size_t size : {0, 1, 9, 10, 11, 205}) {
        SCOPED_TRACE(size);
        SetUp();
        writeFile(FILE_TO_SEND, bytes(size));
        send();
        std::string told;
        for (size_t i = 0; i < (size + 9) / 10; ++i) {
            const std::string chunk = CHUNK + std::to_string(i);
            told += "77 " + chunk + " " + std::to_string(10 * i) + " --wait 86400\n";
            // On the server nobody but the service removes a chunk. All permission bits are set.
            EXPECT_EQ(readFile(chunk), bytes(size).substr(10 * i, 10));
            EXPECT_EQ(std::filesystem::status(chunk).permissions(), std::filesystem::perms(0666));
        }
        EXPECT_EQ(readFile("/var/zelf/told"), size == 0 ? "(no such file)" : told);
        EXPECT_EQ(readFile("/var/zelf/case"), size == 0 ? "(no such file)" : bytes(size));
        EXPECT_EQ(readFile(FILE_TO_SEND), bytes(size));
    }
}

TEST_F(SendFile, TheQueryTellsSizeSpaceFileAndCase)
{
    // Scripts get the reply with its line ends doubled.
    send(success("p:t" + HEADER + JOB + ":\n\np:t:0:1:::10:77:\n"), " -Y");
    // The child inherits what the parent has traced, and logs it a second time.
    const Strings query =
        logged("ZlCli::executeCMD: cmd = /opt/zelf/bin/zelfmonc callhome computeChunkSize 25 ");
    ASSERT_EQ(query, Strings(2, query.at(0)));
    EXPECT_EQ(query[0].substr(query[0].find(' ')), " SendPMRData " + FILE_TO_SEND + " 12345.ABC.000 -Y");
    EXPECT_GT(std::stoull(query[0]), 0U);
}

// A stand-in takes the place of scp.
TEST_F(SendFile, AChildNodeCopiesEachChunkAndRemovesItsOwn)
{
    join("node2");
    answer("zelfrun", "case $4 in *computeChunkSize*) " + records(JOB, "10:77") + ";; esac");
    answer("scp", "ls " + DUMP + " >>/var/zelf/held; case $1 in *_1) exit 1;; esac");
    shell("cp stand-in bin/scp; mount --bind bin/scp /usr/bin/scp");
    send();
    shell("umount /usr/bin/scp");
    EXPECT_TRUE(std::filesystem::is_empty(DUMP));
    EXPECT_EQ(readFile("/var/zelf/held"), "callhomeChunk_77_0\ncallhomeChunk_77_1\ncallhomeChunk_77_2\n");
    Strings moves = calls();
    moves.erase(moves.begin(), moves.end() - 6);
    for (const char index : {'0', '1', '2'}) {
        const size_t place = 2 * static_cast<size_t>(index - '0');
        EXPECT_EQ(moves[place], "scp " + CHUNK + index + " node2.zelf.test:" + DUMP);
        // A copy that failed is asked for all the same.
        EXPECT_EQ(moves[place + 1], R"(zelfrun on1 node2.zelf.test execzelfhome_2 '"zelfmon query )"
                                    "sendChunk%2077%20%2Fvar%2Fzelf%2Fdump%2FcallhomeChunk%5F77%5F" +
                                        std::string(1, index) + "%20" +
                                        (index == '0' ? "" : std::string(1, index)) +
                                        R"(0%20%2D%2Dwait%2086400"')");
    }
}

TEST_F(SendFile, WhatGoesWrongBehindTheForkStopsNothing)
{
    const std::string file = bytes(25);
    const std::tuple<const char*, std::string, std::string> rows[] = {
        {"one chunk refused", "[ $5 = 10 ]", file.substr(0, 10) + file.substr(20)},
        {"vanishes", "rm -f " + FILE_TO_SEND + "; false", file}, // the child holds it open
        {"shrinks", "truncate -s 12 " + FILE_TO_SEND + "; false", file.substr(0, 12)},
    };
    inEach(rows, [](const char*, const std::string& script, const std::string& uploaded) {
        answer("zelfmonc", service("10", script));
        send();
        EXPECT_EQ(readFile("/var/zelf/case"), uploaded);
    });
    // A full disk: the chunk is short, and the service is told all the same.
    SetUp();
    shell("mount -t tmpfs -o size=4k none " + DUMP);
    writeFile(FILE_TO_SEND, bytes(10000));
    answer("zelfmonc", service("5000"));
    send(success("Task initialized.\nChunk size: 5000\nJob ID: 77\n"));
    shell("umount " + DUMP);
    EXPECT_EQ(readFile("/var/zelf/case"), bytes(10000).substr(0, 4096));
}

TEST_F(SendFile, TheChildLeavesSessionAndStreamsOfTheParent)
{
    answer("zelfmonc", service("100", "{ ps -o sid= -p $$; readlink /proc/$$/fd/0 /proc/$$/fd/2; } "
                                      ">/var/zelf/child; false"));
    send(success("Task initialized.\nChunk size: 100\nJob ID: 77\n"));
    const Strings child = split(readFile("/var/zelf/child"), '\n');
    ASSERT_EQ(child.size(), 3U);
    EXPECT_NE(std::stoi(child[0]), getsid(0));
    EXPECT_EQ(child[1] + child[2], "/dev/null/dev/null");
}

// A sparse file: the parent's time has nothing to do with its size, nor with the service's pace.
TEST_F(SendFile, TheParentReturnsAtOnceAndAChildThatIsKilledLeavesItsLog)
{
    shell("truncate -s 100G " + FILE_TO_SEND);
    answer("zelfmonc",
           "if [ $2 = sendChunk ]; then i=100; until [ -e /var/zelf/go ] || [ $((i -= 1)) = 0 ]; do "
           "sleep 0.1; done; kill $(ps -o ppid= -p $PPID); fi; " +
               service("1048576"));
    EXPECT_EQ(runTool(LINE), success("Task initialized.\nChunk size: 1048576\nJob ID: 77\n"));
    EXPECT_EQ(logged("Trace messager end at: ").size(), 1U) << "the parent alone";
    writeFile("/var/zelf/go", "");
    awaitChild();
}

// Some files of the kernel's are none that it copies by itself.
TEST_F(SendFile, AFileThatCannotBeCopiedInTheKernelIsReadAndWritten)
{
    const std::string file = "/proc/bus/pci/00/00.0";
    if (!std::filesystem::exists(file)) {
        GTEST_SKIP() << "no " << file;
    }
    answer("zelfmonc", service("1000"));
    send(success("Task initialized.\nChunk size: 1000\nJob ID: 77\n"), " --file " + file);
    EXPECT_EQ(readFile("/var/zelf/case").size(), std::filesystem::file_size(file));
    EXPECT_EQ(logged("Could not fill ").size(), 0U);
}
