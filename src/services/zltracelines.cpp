#include "services/zltracelines.h"

#include <array>
#include <cstdint>
#include <cstring>

namespace {

// A packed text is a row of steps: the length of some plain bytes, these bytes, the length of a repetition
// and how far back it began. Numbers have 7 bits in a byte, the lowest first. The last step has no
// repetition.

// In bytes: as many as are hashed.
constexpr size_t SHORTEST_REPETITION = 8;

void putNumber(std::string& out, size_t number)
{
    for (; number >= 0x80; number >>= 7) {
        out.push_back(static_cast<char>(number | 0x80));
    }
    out.push_back(static_cast<char>(number));
}

size_t takeNumber(std::string_view& in)
{
    size_t number = 0;
    for (unsigned shift = 0;; shift += 7) {
        const auto byte = static_cast<unsigned char>(in.front());
        in.remove_prefix(1);
        number |= static_cast<size_t>(byte & 0x7f) << shift;
        if (byte < 0x80) {
            return number;
        }
    }
}

void putPlainBytes(std::string& out, std::string_view bytes)
{
    putNumber(out, bytes.size());
    out.append(bytes);
}

uint64_t eightBytes(const char* bytes)
{
    uint64_t value = 0;
    std::memcpy(&value, bytes, sizeof value);
    return value;
}

// `a` is not shorter than `b`.
size_t commonLength(std::string_view a, std::string_view b)
{
    size_t length = 0;
    while (length + 8 <= b.size() && eightBytes(a.data() + length) == eightBytes(b.data() + length)) {
        length += 8;
    }
    while (length < b.size() && a[length] == b[length]) {
        ++length;
    }
    return length;
}

// Where the bytes of a begin of this hash value were seen last.
class Places {
public:
    // Gives the last place with the bytes that stand at `place`, as far as their hash tells, and notes this
    // one.
    uint32_t exchange(std::string_view text, size_t place)
    {
        uint32_t& last = lastPlace[eightBytes(text.data() + place) * 0x9E3779B97F4A7C15U >> (64 - BITS)];
        const uint32_t found = last;
        last = static_cast<uint32_t>(place);
        return found;
    }

private:
    static constexpr unsigned BITS = 13;
    std::array<uint32_t, 1U << BITS> lastPlace{};
};

std::string pack(std::string_view text)
{
    std::string out;
    Places places;
    size_t plain = 0; // the first byte that no step covers
    for (size_t place = 0; place + SHORTEST_REPETITION <= text.size();) {
        const size_t earlier = places.exchange(text, place);
        const size_t length =
            earlier < place ? commonLength(text.substr(earlier), text.substr(place)) : size_t{0};
        if (length < SHORTEST_REPETITION) {
            ++place;
            continue;
        }
        putPlainBytes(out, text.substr(plain, place - plain));
        putNumber(out, length);
        putNumber(out, place - earlier);
        place += length;
        plain = place;
    }
    putPlainBytes(out, text.substr(plain));
    return out;
}

void unpack(std::string& text, std::string_view packed)
{
    text.clear();
    for (;;) {
        const size_t plain = takeNumber(packed);
        text.append(packed.substr(0, plain));
        packed.remove_prefix(plain);
        if (packed.empty()) {
            return;
        }
        const size_t length = takeNumber(packed);
        // It may reach into what it makes itself.
        for (size_t from = text.size() - takeNumber(packed), end = from + length; from < end; ++from) {
            text.push_back(text[from]);
        }
    }
}

} // namespace

void ZlTraceLines::packText()
{
    packed.push_back(pack(text));
    packed.back().shrink_to_fit();
    text.clear();
}

std::ostream& operator<<(std::ostream& out, const ZlTraceLines& lines)
{
    std::string text;
    for (const std::string& part : lines.packed) {
        unpack(text, part);
        out << text;
    }
    return out << lines.text;
}
