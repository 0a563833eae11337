// Values of a command line against the types of options. Types that resolve nodes are left out: they read any
// file that the value names.
#include "cli/zloption.h"
#include "fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size)
{
    constexpr ZlCmd::valueType TYPES[] = {
        ZlCmd::NO,           ZlCmd::ANY,           ZlCmd::ANY_INFINITE,
        ZlCmd::INT,          ZlCmd::DECIMAL,       ZlCmd::ALPHA,
        ZlCmd::IP,           ZlCmd::EMAIL,         ZlCmd::COUNTRY_CODE,
        ZlCmd::TOKEN_OPTION, ZlCmd::TOKEN,         ZlCmd::TOKEN_AS_TYPE,
        ZlCmd::NO_OR_ANY,    ZlCmd::EXCLUSIV_CHAR, ZlCmd::TICKET_NUMBER,
    };
    FuzzedDataProvider input(bytes, size);
    const ZlCmd::valueType type = input.PickValueInArray(TYPES);
    const std::string token = input.ConsumeRandomLengthString(40);
    const std::string value = input.ConsumeRemainingBytesAsString();

    const ZlOption option(&FuzzCli::instance(), "--option", type, false, token, nullptr, 0);
    ZlOption copy = option;
    std::string checked = value;
    const bool passed = copy.checkArgType(checked);
    DEMAND(checked == value);
    DEMAND(copy.checkArgType(checked) == passed);
    DEMAND(!option.toStrg().empty());
    dropTrace();
    return 0;
}
