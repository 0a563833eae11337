// Says what the documents must say: "describe grammar" prints the commands as the tool declares them,
// "describe table" a table of awkward cells as colon records.
#include <array>
#include <cstdlib>
#include <iostream>
#include <string_view>

#include "callhome/zlcallhome.h"
#include "services/plaintable.h"
#include "services/zlutils.h"

namespace {

// The page's words for the types of values, at their numbers. What is empty occurs in no command.
constexpr std::array<const char*, 17> TYPE_WORDS = {
    "", "text", "", "integer", "", "", "", "email", "country", "", "", "", "nodes", "", "", "", "case",
};

// Gives "--name", "--name=type" or "#0#=type"; for a token its list in place of the type. "!": required.
std::string describe(const ZlOption& option)
{
    std::string text = option.getName();
    if (option.hasValue() != ZlCmd::VALUE_NONE) {
        text += '=';
        if (option.getType() == ZlCmd::TOKEN) {
            const std::string list = option.getTypeStrg(); // member of {A | B}
            const size_t begin = list.find('{') + 1;
            for (const char byte : list.substr(begin, list.rfind('}') - begin)) {
                text += byte == ' ' ? "" : std::string(1, byte);
            }
        } else {
            text += TYPE_WORDS.at(option.getType());
        }
    }
    return option.isRequired() ? text + '!' : text;
}

// A line for each command, "@server" behind the verbs that the group's server runs; the letters of the
// framework's options.
void describeGrammar()
{
    char words[][9] = {"zelfhome", "group", "list"};
    char* argv[] = {words[0], words[1], words[2], nullptr};
    const auto* tool = new ZlCallhome(3, argv); // its end would print
    for (const ZlCmd& command : tool->cmds) {
        std::cout << "command " << command.getSubject() << ' '
                  << containerToString(split(command.getVerb(), " | "), ",")
                  << (command.getRemoteNodeHandling() == ZlCmd::REMOTE_NORMAL ? " @server" : "");
        for (const ZlOption& option : command.getOptions()) {
            std::cout << ' ' << describe(option);
        }
        std::cout << '\n';
    }
    std::cout << "letters " << ZlCli::optstring << '\n';
}

void printTable()
{
    const PlainTable table = {
        {"name", "share:%", "notes"},
        {"12:30", "50%", "one\ntwo"},
        {"%3A", "100%25", ""},
        {"", "\r\t|", "C:\\x y\n\n%0A"},
    };
    extendedMachineReadableOutput("zelfhome", "test", "list", table, true);
    std::cout << '\n'; // as behind each line of a send's answer
    machineReadableOutput("zelfhome", "test", "list", {table[0], table[1]});
}

} // namespace

int main(int argc, char** argv)
{
    argc == 2 && std::string_view(argv[1]) == "grammar" ? describeGrammar() : printTable();
    std::cout.flush();
    std::_Exit(0);
}
