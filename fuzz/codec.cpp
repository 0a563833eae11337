// The percent codec: what was encoded comes back, and any bytes can be decoded, save a percent sign at the
// end.
#include <stdexcept>

#include "fuzz.h"
#include "services/zlutils.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size)
{
    FuzzedDataProvider input(bytes, size);
    const std::string set = input.ConsumeRandomLengthString(8) + "%";
    const std::string text = input.ConsumeRemainingBytesAsString();

    std::string encoded;
    percentEncode(encoded, text, set);
    DEMAND(encoded.size() >= text.size() && encoded.size() <= 3 * text.size());
    std::string decoded;
    percentDecode(decoded, encoded);
    DEMAND(decoded == text);

    bool wasCut = false;
    try {
        percentDecode(decoded, text);
        DEMAND(decoded.size() <= text.size());
    } catch (const std::out_of_range&) {
        wasCut = true;
    }
    // Only a percent sign among the last two bytes may be refused.
    DEMAND(!wasCut || text.rfind('%') + 2 >= text.size());
    return 0;
}
