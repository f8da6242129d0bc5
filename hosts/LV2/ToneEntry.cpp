// What a host finds in the sounding half's object: two plug-ins.

#include "LV2/ToneProcessor.h"

#include <new>
#include <string_view>

namespace {

ToneProcessor& Own(LV2_Handle handle) { return *static_cast<ToneProcessor*>(handle); }

LV2_Handle Instantiate(const LV2_Descriptor*, double sampleRateHz, const char*, const LV2_Feature* const* features)
{
    try {
        return ToneProcessor::create(sampleRateHz, features).release();
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

LV2_State_Status Save(LV2_Handle handle, LV2_State_Store_Function store, LV2_State_Handle state, std::uint32_t,
                      const LV2_Feature* const*)
{
    return Own(handle).save(store, state);
}

LV2_State_Status Restore(LV2_Handle handle, LV2_State_Retrieve_Function retrieve, LV2_State_Handle state, std::uint32_t,
                         const LV2_Feature* const*)
{
    return Own(handle).restore(retrieve, state);
}

const void* ExtensionData(const char* uri)
{
    static constexpr LV2_State_Interface kState{Save, Restore};
    return std::string_view(uri) == LV2_STATE__interface ? &kState : nullptr;
}

constexpr LV2_Descriptor DescriptorOf(const char* uri)
{
    return {
        uri,
        Instantiate,
        [](LV2_Handle handle, std::uint32_t port, void* data) { Own(handle).connect(port, data); },
        [](LV2_Handle handle) { Own(handle).activate(); },
        [](LV2_Handle handle, std::uint32_t frames) { Own(handle).run(frames); },
        nullptr,
        [](LV2_Handle handle) { const std::unique_ptr<ToneProcessor> ended(&Own(handle)); },
        ExtensionData,
    };
}

constexpr LV2_Descriptor kDescriptors[] = {DescriptorOf(kTonaroMonoURI), DescriptorOf(kTonaroStereoURI)};

} // namespace

LV2_SYMBOL_EXPORT const LV2_Descriptor* lv2_descriptor(std::uint32_t index)
{
    return index < std::size(kDescriptors) ? &kDescriptors[index] : nullptr;
}
