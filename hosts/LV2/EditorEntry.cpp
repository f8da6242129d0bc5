// What a host finds in the editor's object. No exception leaves it.

#include "LV2/PlugInEditor.h"

#include "Foundation/NSLog.h"

#include <exception>
#include <string_view>

namespace {

PlugInEditor& Own(LV2UI_Handle handle) { return *static_cast<PlugInEditor*>(handle); }

/// What `call` answers; `failed` where it throws, and a line in the log.
template <typename Call, typename Answer> Answer Guarded(Answer failed, Call call)
{
    try {
        return call();
    } catch (const std::exception& error) {
        NSLog("the editor: %s", error.what());
    } catch (...) {
        NSLog("the editor: an unknown failure");
    }
    return failed;
}

LV2UI_Handle Instantiate(const LV2UI_Descriptor*, const char* plugin, const char* bundlePath,
                         LV2UI_Write_Function write, LV2UI_Controller controller, LV2UI_Widget* widget,
                         const LV2_Feature* const* features)
{
    const std::string_view uri(plugin);
    if (uri != kTonaroMonoURI && uri != kTonaroStereoURI) return nullptr;
    return Guarded<>(LV2UI_Handle{}, [&]() -> LV2UI_Handle {
        auto editor = std::make_unique<PlugInEditor>(EditorHost(write, controller, features), bundlePath);
        *widget = reinterpret_cast<LV2UI_Widget>(editor->nativeWindow());
        return editor.release();
    });
}

void Cleanup(LV2UI_Handle handle)
{
    Guarded(0, [&] {
        const std::unique_ptr<PlugInEditor> ended(&Own(handle));
        return 0;
    });
}

void PortEvent(LV2UI_Handle handle, std::uint32_t port, std::uint32_t size, std::uint32_t protocol, const void* data)
{
    Guarded(0, [&] {
        Own(handle).portEvent(port, size, protocol, data);
        return 0;
    });
}

int Idle(LV2UI_Handle handle)
{
    return Guarded(0, [&] { return Own(handle).idle() ? 0 : 1; });
}

int Show(LV2UI_Handle handle)
{
    return Guarded(1, [&] {
        Own(handle).show();
        return 0;
    });
}

int Hide(LV2UI_Handle handle)
{
    return Guarded(1, [&] {
        Own(handle).hide();
        return 0;
    });
}

const void* ExtensionData(const char* uri)
{
    static constexpr LV2UI_Idle_Interface kIdle{Idle};
    static constexpr LV2UI_Show_Interface kShow{Show, Hide};
    if (std::string_view(uri) == LV2_UI__idleInterface) return &kIdle;
    if (std::string_view(uri) == LV2_UI__showInterface) return &kShow;
    return nullptr;
}

constexpr LV2UI_Descriptor kDescriptor{kTonaroEditorURI, Instantiate, Cleanup, PortEvent, ExtensionData};

} // namespace

LV2_SYMBOL_EXPORT const LV2UI_Descriptor* lv2ui_descriptor(std::uint32_t index)
{
    return index == 0 ? &kDescriptor : nullptr;
}
