#pragma once

/// Atoms that somebody else wrote, read no further than they go.
///
/// What says that it is longer than what it lies in isn't read, nor is anything behind it. None of this allocates.

#include <cstdint>
#include <cstring>
#include <optional>

#include <lv2/atom/atom.h>
#include <lv2/urid/urid.h>

/// The content, where the atom has that type and the size of it.
template <typename T> std::optional<T> AtomContent(const LV2_Atom& atom, LV2_URID type)
{
    if (atom.type != type || atom.size != sizeof(T)) return std::nullopt;
    T content;
    std::memcpy(&content, &atom + 1, sizeof content);
    return content;
}

/// Whether something of the size of an atom's body can be an object.
constexpr bool HoldsObject(const LV2_Atom& atom) { return atom.size >= sizeof(LV2_Atom_Object_Body); }

/// Calls `take` with each record of a body, and its atom, until that answers true. @param at  of the first one
template <typename Record, typename Take>
void ForEachAtom(const void* body, std::uint64_t at, std::uint64_t size, LV2_Atom Record::*atom, Take take)
{
    constexpr std::uint64_t kAlignment = 8;
    while (at + sizeof(Record) <= size) {
        const auto& record = *reinterpret_cast<const Record*>(static_cast<const std::uint8_t*>(body) + at);
        at += sizeof record + (record.*atom).size;
        if (at > size || take(record)) return;
        at = (at + kAlignment - 1) / kAlignment * kAlignment;
    }
}

/// Calls `take` with the atom of each event.
template <typename Take> void ForEachEvent(const LV2_Atom_Sequence& sequence, Take take)
{
    ForEachAtom(&sequence.body, sizeof sequence.body, sequence.atom.size, &LV2_Atom_Event::body,
                [&](const LV2_Atom_Event& event) { return take(event.body), false; });
}

/// The value of a property; null where the object has none of that key.
inline const LV2_Atom* PropertyOf(const LV2_Atom_Object& object, LV2_URID key)
{
    const LV2_Atom* value = nullptr;
    ForEachAtom(&object.body, sizeof object.body, object.atom.size, &LV2_Atom_Property_Body::value,
                [&](const LV2_Atom_Property_Body& property) {
                    if (property.key == key) value = &property.value;
                    return value != nullptr;
                });
    return value;
}
