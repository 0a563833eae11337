// The first stage of reading a command line. It knows nothing of the grammar.
#include "cli/zlcli.h"

#include <string_view>
#include <unistd.h>

#include "cluster/zlclusterinfo.h"
#include "services/zlerrorservice.h"
#include "services/zlutils.h"

const std::string ZlCli::optstring = "-:N:aI?hHYv";

namespace {

bool isHelpWord(std::string_view arg)
{
    constexpr std::string_view HELP_WORDS[] = {"-?", "-h", "h", "-H", "H", "help", "--help", "?"};
    for (const std::string_view word : HELP_WORDS) {
        if (arg == word) {
            return true;
        }
    }
    return false;
}

// Places of subject and verb in argv. What stands behind them is an argument.
constexpr int SUBJECT_PLACE = 1;
constexpr int VERB_PLACE = 2;

} // namespace

int ZlCli::parseCmdLine(int argc, char** argv)
{
    ZL_TRACE();
    interactive = false;
    repeatedRemoteOptions.clear();
    badArgs.clear();
    helpRequested = false;
    setRemoteExecution(false);
    if (argc > 0 && std::string_view(argv[argc - 1]) == "--fullDecode") {
        --argc;
    }
    // getopt(3) keeps its own place in a bundle such as -aY; the loop comes back to the same element until
    // the bundle is used up.
    optind = 1;
    while (optind < argc) {
        std::string arg = argv[optind];
        if (arg.find_first_of(illegalChars) != std::string::npos) {
            userResponse = "Parameter " + arg + " contains illegal character.";
            pushMessage("Illegal characters: " + illegalChars);
            terminateProgram(1);
        }
        // A help word counts at any place, even as the value of an option.
        if (isHelpWord(arg)) {
            setParserResultBit(PARSER_HELP);
            helpRequested = true;
        }
        if (optind <= VERB_PLACE && helpRequested) {
            arg = "--help";
        }
        if (optind == SUBJECT_PLACE) {
            subject = arg;
            cmdLineArgs.push_back(arg);
            ++optind;
        } else if (optind == VERB_PLACE) {
            if (arg == "--dryrun") {
                setParserResultBit(PARSER_DRY_RUN);
            } else {
                verb = arg;
                cmdLineArgs.push_back(arg);
            }
            ++optind;
        } else if (arg.compare(0, 2, "--") == 0) {
            toLower(arg);
            if (arg == "--dryrun") {
                setParserResultBit(PARSER_DRY_RUN);
            } else if (arg == "--debug") {
                ZlErrorService::controlFlags |= ZlErrorService::DEBUG_TO_STDOUT;
            } else {
                takeArgument(arg);
            }
            ++optind;
        } else {
            takeFrameworkOption(argc, argv);
        }
    }
    errorServiceP->pushNewMsg("ZlCli::parseCmdLine: detected args: " + subject + " " + verb + " " +
                              containerToString(cmdOptions, " "));
    errorServiceP->pushNewMsg("ZlCli::parseCmdLine: parserResult = " + toString(parserResult));
    errorServiceP->pushNewMsg("ZlCli::parseCmdLine: number of bad args:  " + toString(badArgs.size()));
    return static_cast<int>(badArgs.size());
}

// Takes one result of getopt(3): a framework option or a plain word. The leading "-" of the option string
// hands out plain words in their place, as the value 1.
void ZlCli::takeFrameworkOption(int argc, char** argv)
{
    const int result = getopt(argc, argv, optstring.c_str());
    switch (result) {
    case 'I':
        interactive = true;
        setParserResultBit(PARSER_INTERACTIVE);
        break;
    case 'a':
        takeNodeOption("all", "-a", PARSER_ALL_NODES);
        break;
    case 'N':
        takeNodeOption(optarg, "-N", PARSER_NODE_LIST);
        break;
    case 'Y':
        setMachineReadableOutput(true);
        break;
    case 'h':
    case 'H':
        takeArgument("--help");
        break;
    case 'v':
        takeArgument("--verbose");
        break;
    case 1:
        takeArgument(optarg);
        break;
    case -1:
        takeArgument(argv[optind]);
        ++optind;
        break;
    case ':':
        recordBadArg("missing value for:");
        if (optopt == 'N') {
            setParserResultBit(PARSER_NODE_LIST);
        }
        break;
    case '?':
        recordBadArg("invalid option:");
        break;
    default:
        recordBadArg("parser error: ");
        break;
    }
}

void ZlCli::takeNodeOption(const char* definition, const std::string& option, uint64_t bit)
{
    resolveNodeDefinition(definition);
    setRemoteExecution(true);
    remoteOption = option;
    if (hasAnyParserResultBits(PARSER_ALL_NODES | PARSER_NODE_LIST)) {
        repeatedRemoteOptions.push_back(option);
    }
    setParserResultBit(bit);
}

void ZlCli::takeArgument(const std::string& arg)
{
    cmdLineArgs.push_back(arg);
    cmdOptions.push_back(arg);
}

void ZlCli::recordBadArg(const std::string& kind)
{
    // getopt(3) names the letter of a fault. "?" is a letter of ours and no fault, so it may have none.
    badArgs[kind].push_back(optopt != 0 ? static_cast<char>(optopt) : '?');
    setParserResultBit(PARSER_BAD_ARGS);
}

void ZlCli::resolveNodeDefinition(const char* text)
{
    ZL_TRACE();
    nodeDefinition = text;
    ZlClusterInfo::saveNodeDefinition(text, ZlClusterInfo::nodeDefinitionP);
    ZlClusterInfo::extractNodes(ZlClusterInfo::nodeDefinitionP, ZlClusterInfo::validNodesP,
                                ZlClusterInfo::invalidNodeDefinitionsP);
    processBadNodes(ZlClusterInfo::getBadNodesDefinition());
}

uint64_t ZlCli::getParserBits() const
{
    ZL_TRACE();
    return parserResult;
}

uint64_t ZlCli::getParserResultBit(uint64_t bit) const
{
    ZL_TRACE();
    return parserResult & bit;
}

bool ZlCli::hasAnyParserResultBits(uint64_t mask) const
{
    ZL_TRACE();
    return (parserResult & mask) != 0;
}

void ZlCli::setParserResultBit(uint64_t bits)
{
    ZL_TRACE();
    parserResult |= bits;
}

void ZlCli::unsetParserResultBit(uint64_t bits)
{
    ZL_TRACE();
    parserResult &= ~bits;
}

void ZlCli::setMachineReadableOutput(bool value)
{
    ZL_TRACE();
    if (value) {
        setParserResultBit(PARSER_MACHINE_READABLE);
    } else {
        unsetParserResultBit(PARSER_MACHINE_READABLE);
    }
}

bool ZlCli::getMachineReadableOutput() const
{
    ZL_TRACE();
    return hasAnyParserResultBits(PARSER_MACHINE_READABLE);
}
