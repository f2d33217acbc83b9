#include "framework/windows/MessageMap.h"

namespace framework {
namespace {

/// The first entry that `matches`, from a class's map up to the first class's.
template <class Matches>
const MessageEntry* search(const MessageMap* map, Matches matches) {
    for (; map; map = map->base ? map->base() : nullptr)
        for (const MessageEntry* entry = map->entries; entry->invoke; ++entry)
            if (matches(*entry)) return entry;
    return nullptr;
}

} // namespace

const MessageEntry* findMessageEntry(const MessageMap* map, UINT message) {
    return search(map, [&](const MessageEntry& entry) {
        return (entry.registered ? *entry.registered : entry.message) == message;
    });
}

const MessageEntry* findControlEntry(const MessageMap* map, UINT message, UINT code, UINT id) {
    return search(map, [&](const MessageEntry& entry) {
        return entry.message == message && entry.code == code && entry.firstId <= id && id <= entry.lastId;
    });
}

} // namespace framework
