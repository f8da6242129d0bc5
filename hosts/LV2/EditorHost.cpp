#include "LV2/EditorHost.h"

#include <cmath>
#include <cstring>

#include <lv2/atom/atom.h>
#include <lv2/core/lv2_util.h>
#include <lv2/parameters/parameters.h>

EditorHost::EditorHost(LV2UI_Write_Function writer, LV2UI_Controller controller, const LV2_Feature* const* features)
    : mWrite(writer), mController(controller)
{
    mMap = static_cast<LV2_URID_Map*>(lv2_features_data(features, LV2_URID__map));
    mTouch = static_cast<const LV2UI_Touch*>(lv2_features_data(features, LV2_UI__touch));
    mResize = static_cast<const LV2UI_Resize*>(lv2_features_data(features, LV2_UI__resize));
    mParent = reinterpret_cast<NSNativeWindow>(lv2_features_data(features, LV2_UI__parent));
    if (!mMap) return;
    mEventTransfer = mMap->map(mMap->handle, LV2_ATOM__eventTransfer);
    readOptions(static_cast<const LV2_Options_Option*>(lv2_features_data(features, LV2_OPTIONS__options)));
}

void EditorHost::readOptions(const LV2_Options_Option* options)
{
    const auto id = [this](const char* uri) { return mMap->map(mMap->handle, uri); };
    const LV2_URID sampleRate = id(LV2_PARAMETERS__sampleRate), scale = id(LV2_UI__scaleFactor),
                   title = id(LV2_UI__windowTitle), string = id(LV2_ATOM__String);
    for (; options && options->key; ++options) {
        if (!options->value) continue;
        if (options->key == sampleRate) mSampleRate = numberOf(*options);
        if (options->key == scale) mScale = numberOf(*options);
        if (options->key == title && options->type == string) {
            const auto* const text = static_cast<const char*>(options->value);
            mWindowTitle.assign(text, strnlen(text, options->size)); // the end may be missing
        }
    }
}

/// 0 for what is no positive number.
double EditorHost::numberOf(const LV2_Options_Option& option) const
{
    const auto holds = [&](const char* type, std::size_t size) {
        return option.type == mMap->map(mMap->handle, type) && option.size == size;
    };
    const auto read = [&]<typename T>(T value) {
        std::memcpy(&value, option.value, sizeof value);
        return static_cast<double>(value);
    };
    double number = 0.0;
    if (holds(LV2_ATOM__Float, sizeof(float))) number = read(float{});
    if (holds(LV2_ATOM__Double, sizeof(double))) number = read(double{});
    if (holds(LV2_ATOM__Int, sizeof(std::int32_t))) number = read(std::int32_t{});
    if (holds(LV2_ATOM__Long, sizeof(std::int64_t))) number = read(std::int64_t{});
    return std::isfinite(number) && number > 0.0 ? number : 0.0;
}

void EditorHost::write(std::uint32_t port, std::uint32_t size, LV2_URID protocol, const void* data) const
{
    if (mWrite) mWrite(mController, port, size, protocol, data);
}

void EditorHost::touch(std::uint32_t port, bool isHeld) const
{
    if (mTouch && mTouch->touch) mTouch->touch(mTouch->handle, port, isHeld);
}

void EditorHost::resize(CGSize pixels) const
{
    if (mResize && mResize->ui_resize)
        mResize->ui_resize(mResize->handle, static_cast<int>(pixels.width), static_cast<int>(pixels.height));
}
