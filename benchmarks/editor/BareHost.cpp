#include "BareHost.h"

#include <dlfcn.h>
#include <map>
#include <stdexcept>

#include <lv2/atom/atom.h>
#include <lv2/core/lv2.h>
#include <lv2/options/options.h>
#include <lv2/parameters/parameters.h>
#include <lv2/urid/urid.h>

namespace {

constexpr float kSampleRate = 48000.0F, kUpdateRate = 30.0F;

std::map<std::string, LV2_URID>& Names()
{
    static std::map<std::string, LV2_URID> names;
    return names;
}

LV2_URID Map(LV2_URID_Map_Handle, const char* uri)
{
    return Names().emplace(uri, static_cast<LV2_URID>(Names().size() + 1)).first->second;
}

const char* Unmap(LV2_URID_Unmap_Handle, LV2_URID id)
{
    for (const auto& [uri, number] : Names())
        if (number == id) return uri.c_str();
    return nullptr;
}

int Resize(LV2UI_Feature_Handle, int, int) { return 0; } // the host's window is larger than any editor
void Touch(LV2UI_Feature_Handle, std::uint32_t, bool) {}

} // namespace

EditorLibrary::EditorLibrary(const EditorFacts& facts)
{
    void* const library = dlopen(facts.library.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!library) throw std::runtime_error(dlerror());
    const auto find = reinterpret_cast<LV2UI_DescriptorFunction>(dlsym(library, "lv2ui_descriptor"));
    for (std::uint32_t i = 0; find && !mDescriptor; ++i) {
        const LV2UI_Descriptor* descriptor = find(i);
        if (!descriptor) break;
        if (facts.editor == descriptor->URI) mDescriptor = descriptor;
    }
    if (!mDescriptor) throw std::runtime_error(facts.library + ": has no " + facts.editor);
}

OpenEditor::OpenEditor(const EditorLibrary& library, const EditorFacts& facts, xcb_window_t parent)
    : mDescriptor(library.descriptor()), mFacts(facts)
{
    // what an editor may call as long as it is open
    static LV2_URID_Map map{nullptr, Map};
    static LV2_URID_Unmap unmap{nullptr, Unmap};
    static LV2UI_Resize resize{nullptr, Resize};
    static LV2UI_Touch touch{nullptr, Touch};
    const auto option = [](const char* key, const float& value) {
        return LV2_Options_Option{LV2_OPTIONS_INSTANCE,          0,     Map(nullptr, key), sizeof value,
                                  Map(nullptr, LV2_ATOM__Float), &value};
    };
    const LV2_Options_Option options[] = {option(LV2_PARAMETERS__sampleRate, kSampleRate),
                                          option(LV2_UI__scaleFactor, facts.scale),
                                          option(LV2_UI__updateRate, kUpdateRate),
                                          {LV2_OPTIONS_INSTANCE, 0, 0, 0, 0, nullptr}};
    const LV2_Feature features[] = {{LV2_URID__map, &map},
                                    {LV2_URID__unmap, &unmap},
                                    {LV2_UI__parent, reinterpret_cast<void*>(static_cast<std::uintptr_t>(parent))},
                                    {LV2_UI__resize, &resize},
                                    {LV2_UI__touch, &touch},
                                    {LV2_UI__idleInterface, nullptr},
                                    {LV2_OPTIONS__options, const_cast<LV2_Options_Option*>(options)}};
    const LV2_Feature* list[std::size(features) + 1] = {};
    for (std::size_t i = 0; i < std::size(features); ++i) list[i] = &features[i];

    LV2UI_Widget widget = nullptr;
    mHandle =
        mDescriptor.instantiate(&mDescriptor, facts.plugin.c_str(), facts.bundle.c_str(), write, this, &widget, list);
    if (!mHandle) throw std::runtime_error(facts.editor + ": doesn't open");
    if (mDescriptor.extension_data)
        mIdle = static_cast<const LV2UI_Idle_Interface*>(mDescriptor.extension_data(LV2_UI__idleInterface));
}

OpenEditor::~OpenEditor() { mDescriptor.cleanup(mHandle); }

void OpenEditor::tellAllPorts()
{
    for (const auto& [port, value] : mFacts.ports) tell(port, value);
}

void OpenEditor::tell(std::uint32_t port, float value)
{
    if (mDescriptor.port_event) mDescriptor.port_event(mHandle, port, sizeof value, 0, &value);
}

void OpenEditor::idle()
{
    if (mIdle) mIdle->idle(mHandle);
}

void OpenEditor::write(LV2UI_Controller self, std::uint32_t, std::uint32_t, std::uint32_t protocol, const void*)
{
    if (protocol == 0) ++static_cast<OpenEditor*>(self)->mWritten;
}
