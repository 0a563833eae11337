// The first stage of reading a command line. It knows nothing of the grammar.
#include "cli/zlcli.h"

#include <algorithm>
#include <string_view>
#include <unistd.h>

#include "cluster/zlclusterinfo.h"

namespace {

bool isHelpWord(std::string_view arg)
{
    constexpr std::string_view HELP_WORDS[] = {"-?", "-h", "h", "-H", "H", "help", "--help", "?"};
    return std::ranges::find(HELP_WORDS, arg) != std::end(HELP_WORDS);
}

void takeArgument(ZlCli& cli, const std::string& arg)
{
    cli.cmdLineArgs.push_back(arg);
    cli.cmdOptions.push_back(arg);
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
    size_t letter = 0;
    optind = 1;
    while (optind < argc) {
        std::string arg = argv[optind];
        if (arg.find_first_of(illegalChars) != std::string::npos) {
            giveUp("Parameter " + arg + " contains illegal character.",
                   "Illegal characters: " + illegalChars);
        }
        // A help word counts at any place, even as the value of an option.
        if (isHelpWord(arg)) {
            setParserResultBit(PARSER_HELP);
            helpRequested = true;
        }
        if (optind <= VERB_PLACE && helpRequested) {
            arg = "--help";
        }
        if (optind > VERB_PLACE && !arg.starts_with("--")) {
            takeFrameworkOption(argc, argv, letter);
            continue;
        }
        if (optind > VERB_PLACE) {
            toLower(arg);
        }
        if (optind == SUBJECT_PLACE) {
            subject = arg;
            cmdLineArgs.push_back(arg);
        } else if (arg == "--dryrun") {
            setParserResultBit(PARSER_DRY_RUN);
        } else if (optind == VERB_PLACE) {
            verb = arg;
            cmdLineArgs.push_back(arg);
        } else if (arg == "--debug") {
            ZlErrorService::controlFlags |= ZlErrorService::DEBUG_TO_STDOUT;
        } else {
            takeArgument(*this, arg);
        }
        ++optind;
    }
    errorServiceP->pushNewMsg("ZlCli::parseCmdLine: detected args: " + subject + " " + verb + " " +
                              containerToString(cmdOptions, " "));
    errorServiceP->pushNewMsg("ZlCli::parseCmdLine: parserResult = " + toString(parserResult));
    errorServiceP->pushNewMsg("ZlCli::parseCmdLine: number of bad args:  " + toString(badArgs.size()));
    return static_cast<int>(badArgs.size());
}

// Takes one result of getopt(3): a framework option or a plain word. The leading "-" of the option string
// hands out plain words in their place, as the value 1. `letter` counts the letters read of a bundle:
// getopt's own word on a bad one, optopt, is not to be had for "?", which is a letter of ours as well.
void ZlCli::takeFrameworkOption(int argc, char** argv, size_t& letter)
{
    ZL_TRACE();
    const int place = optind;
    ++letter;
    const auto recordBadArg = [&](const std::string& kind) {
        badArgs[kind].push_back(argv[place][letter]);
        setParserResultBit(PARSER_BAD_ARGS);
    };
    switch (getopt(argc, argv, optstring.c_str())) {
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
        takeArgument(*this, "--help");
        break;
    case 'v':
        takeArgument(*this, "--verbose");
        break;
    case 1:
        takeArgument(*this, optarg);
        break;
    case ':': // -N alone takes a value
        recordBadArg("missing value for:");
        setParserResultBit(PARSER_NODE_LIST);
        break;
    case '?':
        recordBadArg("invalid option:");
        break;
    default:
        recordBadArg("parser error: ");
        break;
    }
    if (optind != place) {
        letter = 0;
    }
}

void ZlCli::takeNodeOption(const char* definition, const std::string& option, uint64_t bit)
{
    ZL_TRACE();
    resolveNodeDefinition(definition);
    setRemoteExecution(true);
    remoteOption = option;
    if (hasAnyParserResultBits(PARSER_ALL_NODES | PARSER_NODE_LIST)) {
        repeatedRemoteOptions.push_back(option); // nobody reads it so far
    }
    setParserResultBit(bit);
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

void ZlCli::setMachineReadableOutput(bool value)
{
    ZL_TRACE();
    if (value) {
        setParserResultBit(PARSER_MACHINE_READABLE);
    } else {
        unsetParserResultBit(PARSER_MACHINE_READABLE);
    }
}
