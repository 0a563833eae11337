// zelfhome run SendFile: one file for the support service.
//
// With a case number the tool moves the data itself: it asks the monitoring service on the call home node how
// large the pieces may be, cuts the file into chunk files, copies each to that node and has the service
// upload it. The parent reports the job and returns at once; a detached child does the rest, which may take
// hours. The record of its outcome is the service's job.
#include "commands/zlcallhome_excute.h"

#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <iostream>
#include <sys/stat.h>
#include <unistd.h>

#include "cli/cmdtable.h"
#include "commands/chunkfile.h"
#include "commands/colonformat.h"
#include "services/zlerrorservice.h"
#include "services/zlutils.h"

namespace {

struct SendJob {
    std::string path;
    std::string caseNumber;
    int64_t fileSize = 0;
    std::string dumpDirectory; // of chunk files, alike on this node and on the call home node
    std::string callhomeNode;
    bool isCallhomeNode = false;
    std::string chunkSizeText;
    int64_t chunkSize = 0;
    std::string jobId;
    std::vector<std::string> reply; // to the query that set up the job

    std::string chunkPath(int32_t index) const
    {
        return dumpDirectory + "/callhomeChunk_" + jobId + "_" + toString(index);
    }
};

// --- ahead of the fork: every failure is the user's to see -----------------------------------------------

// Takes file and case number out of the arguments; the file's option may be mapped or not.
void readArguments(SendJob& job)
{
    const std::vector<std::string>& args = chServiceP->getCmdOptionVector();
    for (size_t i = 0; i + 1 < args.size(); ++i) {
        if (args[i] == "--file" || args[i] == "-F") {
            job.path = args[++i];
        } else if (args[i] == "--pmr") {
            job.caseNumber = args[++i];
        }
    }
}

// Gives the folder for chunk files, as the daemon's configuration names it.
std::string findDumpDirectory()
{
    std::vector<std::string> lines;
    if (chServiceP->executeCMD("/opt/zelf/bin/zelfdiag --config -Y", &lines) != 0) {
        chServiceP->giveUp("Could not read the cluster configuration");
    }
    std::string directory;
    for (const ColonRecord& record :
         parseColonFormat(linesOf(containerToString(lines, emptyStrg)), COLON_HEADER)) {
        if (valueOr(record, "name") == "dataStructureDump") {
            directory = valueOr(record, "value");
        }
    }
    if (directory.empty()) {
        chServiceP->giveUp("Could not determine the value of dataStructureDump");
    }
    return directory;
}

// Has the monitoring service set up the job: chunk size and job id.
void setUp(SendJob& job)
{
    const std::string query = "computeChunkSize " + toString(job.fileSize) + " " +
                              toString(getFreeDiskSpace(job.dumpDirectory)) + " SendPMRData " + job.path +
                              " " + job.caseNumber + " -Y";
    if (chServiceP->runZelfmonCmdOnCallhomeNode(query, &job.reply) != 0) {
        chServiceP->giveUp("Failed while executing a query to sysmonitor");
    }
    const std::vector<ColonRecord> records =
        parseColonFormat(linesOf(containerToString(job.reply, emptyStrg)), COLON_HEADER);
    if (!records.empty()) {
        job.chunkSizeText = valueOr(records.front(), "Chunk size");
        job.chunkSize = std::strtoll(job.chunkSizeText.c_str(), nullptr, 10);
        job.jobId = valueOr(records.front(), "Job ID");
    }
    if (job.jobId.empty() || job.chunkSize <= 0) {
        chServiceP->giveUp("Received wrong results from the sysmonitor when querying for a chunk size");
    }
}

void report(const SendJob& job)
{
    if (chServiceP->getMachineReadableOutput()) {
        // Each line brought its own line end, and scripts know the blank lines.
        std::cout << containerToString(job.reply, "\n");
    } else {
        std::cout << "Task initialized.\nChunk size: " << job.chunkSizeText << "\nJob ID: " << job.jobId
                  << "\n";
    }
    chServiceP->userResponse = "silent";
}

// --- the child: nobody is there to see a failure ---------------------------------------------------------

// Leaves the session and the streams of the parent. False when a stream cannot be reopened.
bool detach()
{
    setsid();
    const bool in = std::freopen("/dev/null", "r", stdin) != nullptr;
    const bool out = std::freopen("/dev/null", "w", stdout) != nullptr;
    const bool err = std::freopen("/dev/null", "w", stderr) != nullptr;
    return in && out && err;
}

// Moves the chunks, one after another: the next is not cut before the service has answered on this one.
void sendChunks(const SendJob& job)
{
    // Chunk files have all permission bits: the service may run as another user.
    umask(0);
    const auto chunkCount =
        static_cast<int32_t>(job.fileSize / job.chunkSize + (job.fileSize % job.chunkSize != 0 ? 1 : 0));
    const int file = open(job.path.c_str(), O_RDONLY | O_CLOEXEC);
    std::vector<std::string> output;
    for (int32_t index = 0; index < chunkCount; ++index) {
        const int64_t offset = index * job.chunkSize;
        const std::string chunk = job.chunkPath(index);
        copyChunk(file, offset, job.chunkSize, chunk);
        if (!job.isCallhomeNode) {
            chServiceP->executeCMD("/usr/bin/scp " + chunk + " " + job.callhomeNode + ":" + job.dumpDirectory,
                                   &output);
            unlink(chunk.c_str());
        }
        chServiceP->runZelfmonCmdOnCallhomeNode(
            "sendChunk " + job.jobId + " " + chunk + " " + toString(offset) + " --wait 86400", &output);
    }
    close(file);
}

int runChild(const SendJob& job)
{
    if (!detach()) {
        ZlErrorService::errorServiceP->pushNewMsg("Could not detach the tty");
        return 1;
    }
    sendChunks(job);
    chServiceP->userResponse = "silent";
    chServiceP->terminateProgram(0);
}

int sendForCase()
{
    SendJob job;
    job.callhomeNode = chServiceP->getCallhomeNode();
    const ZelfVersion version = chServiceP->getThisGroupMasterVersion();
    if (version < ZelfVersion(MONITORING_ROUTE_VERSION)) {
        return chServiceP->execCmdRc = fail("The release level of the callhome node " + job.callhomeNode +
                                            " is too low for this operation (required 4.2.3.7+)");
    }
    readArguments(job);
    job.fileSize = getFileSize(job.path);
    if (job.fileSize == -1) {
        chServiceP->giveUp("Could not read the specified file");
    }
    job.dumpDirectory = findDumpDirectory();
    job.isCallhomeNode = chServiceP->getLocalNodeName() == job.callhomeNode;
    setUp(job);

    // What stands in the streams' buffers belongs to the parent.
    std::fflush(nullptr);
    if (fork() == 0) {
        return runChild(job);
    }
    report(job);
    return 0;
}

} // namespace

int runSendFile(char* /*prompt*/, char* args, bool /*interactive*/)
{
    ZL_TRACE();
    mapOption(args, "--file", "-F");
    if (runCmdPreCheck() != 0) {
        return 1;
    }
    if (!contains(chServiceP->getCmdOptionVector(), "--pmr")) {
        // The helper program's spelling of the verb.
        return forwardToHelper("run", "sendFile", args);
    }
    return sendForCase();
}
