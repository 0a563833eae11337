// An index of many texts, which stay where they are.
//
// Its table takes 8 bytes a place and so stays in the caches for as long as it can: with 100,000 texts,
// looking in nodes all over the memory, as std::unordered_map does, costs several times as much.
#pragma once

#include <bit>
#include <cstdint>
#include <functional>
#include <string_view>
#include <utility>
#include <vector>

class ZlTextIndex {
public:
    static constexpr size_t NONE = SIZE_MAX;

    // Has place for `count` texts, and must not be given more.
    explicit ZlTextIndex(size_t count) : slots(std::bit_ceil(2 * count + 1)) {}

    // Gives the number of the text, counted from 0 in the order of arrival, and whether it is new.
    std::pair<size_t, bool> insert(std::string_view text)
    {
        Slot& slot = slots[placeOf(text)];
        const bool isNew = slot.number == 0;
        if (isNew) {
            texts.push_back(text);
            slot = {tagOf(std::hash<std::string_view>()(text)), static_cast<uint32_t>(texts.size())};
        }
        return {slot.number - 1, isNew};
    }

    // Gives the number of the text, or NONE.
    size_t find(std::string_view text) const
    {
        const Slot& slot = slots[placeOf(text)];
        return slot.number == 0 ? NONE : slot.number - 1;
    }

private:
    struct Slot {
        uint32_t tag;    // of the text's hash
        uint32_t number; // of the text, counted from 1; 0 in a free slot
    };

    static uint32_t tagOf(size_t hash) { return static_cast<uint32_t>(hash >> 32); }

    // Gives the place of the text, or the free one where it belongs.
    size_t placeOf(std::string_view text) const
    {
        const size_t hash = std::hash<std::string_view>()(text);
        for (size_t place = hash & (slots.size() - 1);; place = (place + 1) & (slots.size() - 1)) {
            const Slot& slot = slots[place];
            if (slot.number == 0 || (slot.tag == tagOf(hash) && texts[slot.number - 1] == text)) {
                return place;
            }
        }
    }

    std::vector<Slot> slots;
    std::vector<std::string_view> texts;
};
