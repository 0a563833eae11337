#include "cli/zloption.h"

#include <algorithm>
#include <optional>

#include "cli/zlcli.h"
#include "cluster/zlclusterinfo.h"
#include "cluster/zlnodesdefinition.h"

namespace {

bool isIP(const std::string& arg)
{
    const std::vector<std::string> parts = split(arg, ".");
    return parts.size() == 4 && std::ranges::all_of(parts, [](const auto& part) { return isInt(part) != 0; });
}

bool isEmail(const std::string& arg)
{
    return std::ranges::count(arg, '@') == 1 && arg[0] != '@';
}

bool isCountryCode(const std::string& arg)
{
    return arg.size() == 2 && std::ranges::all_of(arg, [](char byte) { return byte >= 'A' && byte <= 'Z'; });
}

// Rewrites a node definition to the names that it resolved to. Each node must have `role`, if any.
bool takeNodes(std::string& arg, const ZlNodesDefinition& nodes, const std::string& role)
{
    if (!nodes.getUnresolved().empty()) {
        return false;
    }
    if (!role.empty()) {
        std::set<std::string> withRole;
        std::set<std::string> withoutRole;
        ZlClusterInfo::filterNodes(role, nodes.getResolved(), &withRole, &withoutRole);
        if (!withoutRole.empty()) {
            return false;
        }
    }
    arg = toString(nodes.getResolved(), ",");
    return true;
}

const char* const CES_ROLE = "X";

} // namespace

ZlOption::ZlOption(ZlCli* cli, const std::string& optionName, ZlCmd::valueType valueType, bool isMandatory,
                   const std::string& tokenText, int (*function)(), nodeLevel_t level)
    : cliP(cli), name(optionName), type(valueType), required(isMandatory), token(tokenText),
      errorServiceP(nullptr), nodeLevel(level), cmdFunc(function)
{
    ZL_TRACE();
    errorServiceP = ZlErrorService::getInstance();
}

void ZlOption::operator()(const std::string& newName, ZlCmd::valueType newType, bool newRequired,
                          const std::string& newToken)
{
    ZL_TRACE();
    name = newName;
    type = newType;
    required = newRequired;
    token = newToken;
}

ZlCmd::optionValue ZlOption::hasValue() const
{
    ZL_TRACE();
    switch (type) {
    case ZlCmd::NO:
        return ZlCmd::VALUE_NONE;
    case ZlCmd::TOKEN_OPTION:
    case ZlCmd::NO_OR_ANY:
        return ZlCmd::VALUE_OPTIONAL;
    default:
        return ZlCmd::VALUE_REQUIRED;
    }
}

std::string ZlOption::getTypeStrg() const
{
    ZL_TRACE();
    switch (type) {
    case ZlCmd::NO:
        return "NO argument";
    case ZlCmd::ANY:
        return "ANY argument";
    case ZlCmd::ANY_INFINITE:
        return "ANY arguments";
    case ZlCmd::INT:
        return "INTEGER";
    case ZlCmd::DECIMAL:
        return "DECIMAL";
    case ZlCmd::ALPHA:
        return "ALPHA = [a-z][A-Z]";
    case ZlCmd::IP:
        return "IP number";
    case ZlCmd::EMAIL:
        return "EMAIL address";
    case ZlCmd::COUNTRY_CODE:
        return "A valid ISO 3166-1 alpha-2 code (A-Z)";
    case ZlCmd::TOKEN_OPTION:
    case ZlCmd::TOKEN:
        return "member of {" + token + "}";
    case ZlCmd::TOKEN_AS_TYPE:
        return token;
    case ZlCmd::NODE:
        return "Node(s) as ID, short / long name, IP, node class or nodes file.";
    case ZlCmd::CES_NODE:
        return "CES Node(s) as ID, short / long name, IP, node class or nodes file.";
    case ZlCmd::NO_OR_ANY:
        return "NO or ANY argument.";
    case ZlCmd::EXCLUSIV_CHAR:
        return "string without any char out of {" + token + "}";
    case ZlCmd::TICKET_NUMBER:
        return "A PMR identifier, in the format xxxxx.yyy.zzz or a Case identifier, in the format "
               "TSxxxxxxxxx";
    }
    return "UNKNOWN";
}

std::string ZlOption::toStrg() const
{
    ZL_TRACE();
    return name + " " + getTypeStrg() + (required ? " which is required." : " which is not requiered. ");
}

const bool ZlOption::checkArgType(std::string& arg)
{
    ZL_TRACE();
    std::optional<ZlNodesDefinition> nodes;
    if (type == ZlCmd::NODE || type == ZlCmd::CES_NODE) {
        nodes.emplace(arg);
    }
    if (!procesTokenAsType()) {
        return false;
    }
    switch (type) {
    case ZlCmd::INT:
        return isInt(arg) != 0;
    case ZlCmd::DECIMAL:
        return isDecimal(arg) != 0;
    case ZlCmd::ALPHA:
        return isStringAlpha(arg) != 0;
    case ZlCmd::IP:
        return isIP(arg);
    case ZlCmd::EMAIL:
        return isEmail(arg);
    case ZlCmd::COUNTRY_CODE:
        return isCountryCode(arg);
    case ZlCmd::TOKEN_OPTION:
        return arg.empty() || verifyToken(arg);
    case ZlCmd::TOKEN:
        return verifyToken(arg);
    case ZlCmd::NODE:
        return takeNodes(arg, *nodes, emptyStrg);
    case ZlCmd::CES_NODE:
        return takeNodes(arg, *nodes, CES_ROLE);
    case ZlCmd::EXCLUSIV_CHAR:
        return verifyExclusiveChar(arg);
    case ZlCmd::TICKET_NUMBER:
        return isStringPMR(arg) != 0;
    default:
        return true;
    }
}

const bool ZlOption::verifyToken(std::string value) const
{
    ZL_TRACE();
    std::string alternatives = token;
    if (!cliP->hasAnyParserResultBits(PARSER_TOKEN_CASE)) {
        toUpper(value);
        toUpper(alternatives);
    }
    return contains(split(alternatives, " | "), value);
}

const bool ZlOption::verifyExclusiveChar(std::string& arg) const
{
    ZL_TRACE();
    return _verifyExclusiveChar(token, arg);
}

bool ZlOption::procesTokenAsType()
{
    ZL_TRACE();
    if (type != ZlCmd::TOKEN_AS_TYPE) {
        return true;
    }
    const std::vector<std::string> words = split(token, " | ");
    if (words.size() > 1) {
        errorServiceP->pushNewMsg("ZlOption::procesTokenAsType: Error: Wrong token as type definition: " +
                                  token);
        return false;
    }
    if (words[0] == "INT") {
        type = ZlCmd::INT;
    } else if (words[0] == "DECIMAL") {
        type = ZlCmd::DECIMAL;
    } else if (words[0] == "ALPHA") {
        type = ZlCmd::ALPHA;
    }
    return true;
}

std::ostream& operator<<(std::ostream& out, const ZlOption& option)
{
    return out << option.toStrg();
}

bool _verifyExclusiveChar(const std::string& chars, const std::string& text)
{
    return text.find_first_of(chars) == std::string::npos;
}
