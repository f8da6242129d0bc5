#include "Foundation/NSClass.h"

#include <unordered_map>

namespace {

using Registry = std::unordered_map<std::string_view, const NSClass*>;

Registry& TheRegistry()
{
    static Registry& registry = *new Registry; // never destroyed: tables are asked for until the very end
    return registry;
}

template <typename Entry, typename Name>
const Entry* Find(const NSClass* table, std::vector<Entry> NSClass::*list, Name Entry::*name, std::string_view wanted)
{
    for (; table; table = table->superclass)
        for (const Entry& entry : table->*list)
            if (wanted == entry.*name) return &entry;
    return nullptr;
}

} // namespace

const NSClass::Action* NSClass::findAction(std::string_view selector) const
{
    return Find(this, &NSClass::actions, &Action::selector, selector);
}

const NSClass::OutletEntry* NSClass::findOutlet(std::string_view outlet) const
{
    return Find(this, &NSClass::outlets, &OutletEntry::name, outlet);
}

const NSClass::Key* NSClass::findKey(std::string_view key) const { return Find(this, &NSClass::keys, &Key::name, key); }

bool NSClass::isSubclassOf(const NSClass& other) const
{
    for (const NSClass* table = this; table; table = table->superclass)
        if (table == &other) return true;
    return false;
}

const NSClass* NSClassFromString(std::string_view name)
{
    const auto found = TheRegistry().find(name);
    return found == TheRegistry().end() ? nullptr : found->second;
}

void NSRegisterClass(const NSClass& table) { TheRegistry().try_emplace(table.name, &table); }
