#include "LV2/PlugInHost.h"

#include "ToneUnit/ToneParameters.h"

#include <charconv>
#include <cstring>
#include <stdexcept>

#include <dlfcn.h>
#include <lv2/atom/util.h>
#include <lv2/parameters/parameters.h>

namespace {

const char* const kBundle = TONARO_LV2_BUNDLE "/";

std::string Number(float value)
{
    char text[32];
    return {text, std::to_chars(text, text + sizeof text, value).ptr};
}

using Message = std::vector<std::uint8_t>;

} // namespace

LV2_URID Names::operator()(const std::string& uri)
{
    return mIds.try_emplace(uri, static_cast<LV2_URID>(mIds.size() + 1)).first->second;
}

SharedObject::SharedObject(const std::string& name) : mObject(dlopen((kBundle + name).c_str(), RTLD_NOW | RTLD_LOCAL))
{
    if (!mObject) throw std::runtime_error(dlerror());
}

void SharedObject::Close::operator()(void* object) const { dlclose(object); }

void* SharedObject::find(const char* symbol) const
{
    void* const found = dlsym(mObject.get(), symbol);
    if (!found) throw std::runtime_error(dlerror());
    return found;
}

// --- the sounding half

HostedTone::HostedTone(Names& names, const char* uri, double sampleRateHz) : mNames(names)
{
    auto* const descriptors = mObject.function<const LV2_Descriptor*(std::uint32_t)>("lv2_descriptor");
    for (std::uint32_t i = 0; const LV2_Descriptor* next = descriptors(i); ++i)
        if (next->URI == std::string(uri)) mDescriptor = next;
    if (!mDescriptor) throw std::runtime_error("no such plug-in");
    const LV2_Feature map{LV2_URID__map, names.map()};
    const LV2_Feature* const features[] = {&map, nullptr};
    mHandle = mDescriptor->instantiate(mDescriptor, sampleRateHz, kBundle, features);
    if (!mHandle) throw std::runtime_error("no instance");
    for (std::uint32_t i = 0; i < kParamCount; ++i) {
        controls[i] = kToneParameters[i].defaultValue;
        mDescriptor->connect_port(mHandle, i, &controls[i]);
    }
    mDescriptor->connect_port(mHandle, kPortControl, mInput.data());
    mDescriptor->connect_port(mHandle, kPortNotify, mOutput.data());
    mDescriptor->connect_port(mHandle, kPortLeft, outputs[0].data());
    if (uri == std::string(kTonaroStereoURI)) mDescriptor->connect_port(mHandle, kPortRight, outputs[1].data());
    mDescriptor->activate(mHandle);
}

HostedTone::~HostedTone() { mDescriptor->cleanup(mHandle); }

void HostedTone::send(const void* atom, std::uint32_t size)
{
    const LV2_Atom_Event event{{0}, {size - std::uint32_t{sizeof(LV2_Atom)}, 0}};
    const auto* const head = reinterpret_cast<const std::uint8_t*>(&event.time);
    const auto* const body = static_cast<const std::uint8_t*>(atom);
    mSent.insert(mSent.end(), head, head + sizeof event.time);
    mSent.insert(mSent.end(), body, body + size);
    mSent.resize(lv2_atom_pad_size(static_cast<std::uint32_t>(mSent.size())));
}

void HostedTone::run()
{
    prepareMessages();
    runOnly();
    takeMessages();
}

void HostedTone::prepareMessages()
{
    auto* const input = reinterpret_cast<LV2_Atom_Sequence*>(mInput.data());
    *input = {{std::uint32_t{sizeof(LV2_Atom_Sequence_Body)} + static_cast<std::uint32_t>(mSent.size()),
               mNames(LV2_ATOM__Sequence)},
              {0, 0}};
    std::copy(mSent.begin(), mSent.end(), mInput.begin() + sizeof *input);
    mSent.clear();
    auto* const output = reinterpret_cast<LV2_Atom_Sequence*>(mOutput.data());
    *output = {{std::uint32_t{sizeof mOutput - sizeof(LV2_Atom)}, mNames(LV2_ATOM__Chunk)}, {0, 0}};
}

void HostedTone::runOnly() { mDescriptor->run(mHandle, kFrames); }

void HostedTone::takeMessages()
{
    const auto* const output = reinterpret_cast<const LV2_Atom_Sequence*>(mOutput.data());
    LV2_ATOM_SEQUENCE_FOREACH(output, event)
    {
        const auto* const body = reinterpret_cast<const std::uint8_t*>(&event->body);
        mReceived.emplace_back(body, body + sizeof event->body + event->body.size);
    }
}

std::vector<float> HostedTone::rendered(std::size_t blocks)
{
    std::vector<float> samples;
    for (; blocks > 0; --blocks) {
        run();
        samples.insert(samples.end(), outputs[0].begin(), outputs[0].end());
    }
    return samples;
}

std::vector<Message> HostedTone::takenMessages() { return std::exchange(mReceived, {}); }

namespace {

const LV2_State_Interface& StateOf(const LV2_Descriptor& descriptor)
{
    return *static_cast<const LV2_State_Interface*>(descriptor.extension_data(LV2_STATE__interface));
}

} // namespace

std::map<LV2_URID, std::int32_t> HostedTone::saved()
{
    using State = std::map<LV2_URID, std::int32_t>;
    State state;
    const auto store = [](LV2_State_Handle handle, std::uint32_t key, const void* value, std::size_t size,
                          std::uint32_t, std::uint32_t) {
        std::int32_t number = 0;
        if (size != sizeof number) return LV2_STATE_ERR_BAD_TYPE;
        std::memcpy(&number, value, size);
        (*static_cast<State*>(handle))[key] = number;
        return LV2_STATE_SUCCESS;
    };
    StateOf(*mDescriptor).save(mHandle, store, &state, 0, nullptr);
    return state;
}

void HostedTone::restore(const std::map<LV2_URID, std::int32_t>& state)
{
    struct Stored {
        const std::map<LV2_URID, std::int32_t>& state;
        LV2_URID type;
    } stored{state, mNames(LV2_ATOM__Int)};
    const auto retrieve = [](LV2_State_Handle handle, std::uint32_t key, std::size_t* size, std::uint32_t* type,
                             std::uint32_t*) -> const void* {
        const Stored& from = *static_cast<const Stored*>(handle);
        const auto found = from.state.find(key);
        if (found == from.state.end()) return nullptr;
        *size = sizeof found->second;
        *type = from.type;
        return &found->second;
    };
    StateOf(*mDescriptor).restore(mHandle, retrieve, &stored, 0, nullptr);
}

// --- the editor

HostedEditor* HostedEditor::sWithoutController = nullptr;

HostedEditor::HostedEditor(Names& names, const Options& options)
    : mNames(names),
      mOptions(options),
      mTouch{this,
             [](LV2UI_Feature_Handle self, std::uint32_t port, bool isHeld) {
                 static_cast<HostedEditor*>(self)->mLog.push_back((isHeld ? "touch " : "leave ") +
                                                                  std::to_string(port));
             }},
      mResize{this, [](LV2UI_Feature_Handle self, int width, int height) {
                  static_cast<HostedEditor*>(self)->mSize = {width, height};
                  return 0;
              }}
{
    mDescriptor = mObject.function<const LV2UI_Descriptor*(std::uint32_t)>("lv2ui_descriptor")(0);
    const float scale = static_cast<float>(options.scale), rate = static_cast<float>(options.sampleRateHz);
    const LV2_URID floatType = names(LV2_ATOM__Float);
    std::vector<LV2_Options_Option> list;
    const auto add = [&](const char* key, const float& value) {
        if (value > 0) list.push_back({LV2_OPTIONS_INSTANCE, 0, names(key), sizeof value, floatType, &value});
    };
    add(LV2_UI__scaleFactor, scale);
    add(LV2_PARAMETERS__sampleRate, rate);
    list.push_back({});
    const LV2_Feature map{LV2_URID__map, names.map()}, optionList{LV2_OPTIONS__options, list.data()},
        resize{LV2_UI__resize, &mResize}, touch{LV2_UI__touch, &mTouch},
        parent{LV2_UI__parent, reinterpret_cast<void*>(std::uintptr_t{options.parent})},
        idleFeature{LV2_UI__idleInterface, nullptr};
    std::vector<const LV2_Feature*> features{&idleFeature, &resize};
    if (options.maps) features.insert(features.end(), {&map, &optionList});
    if (options.touches) features.push_back(&touch);
    if (options.parent) features.push_back(&parent);
    features.push_back(nullptr);
    const auto write = [](LV2UI_Controller self, std::uint32_t port, std::uint32_t size, std::uint32_t protocol,
                          const void* data) {
        (self ? static_cast<HostedEditor*>(self) : sWithoutController)->write(port, size, protocol, data);
    };
    if (!options.hasController) sWithoutController = this;
    mHandle = mDescriptor->instantiate(mDescriptor, kTonaroStereoURI, kBundle, write,
                                       options.hasController ? this : nullptr, &mWidget, features.data());
    if (!mHandle) throw std::runtime_error("no editor");
}

HostedEditor::~HostedEditor() { mDescriptor->cleanup(mHandle); }

void HostedEditor::write(std::uint32_t port, std::uint32_t size, std::uint32_t protocol, const void* data)
{
    if (protocol == 0 && size == sizeof(float)) {
        float value = 0;
        std::memcpy(&value, data, size);
        mLog.push_back("write " + std::to_string(port) + " " + Number(value));
        if (mOptions.echoes) mEchoes.emplace_back(port, value);
    } else if (port == kPortControl && protocol == mNames(LV2_ATOM__eventTransfer) && mOptions.tone) {
        mOptions.tone->send(data, size);
    }
}

bool HostedEditor::idle()
{
    for (const auto& [port, value] : std::exchange(mEchoes, {})) portEvent(port, value);
    if (mOptions.tone) {
        mOptions.tone->run();
        for (const Message& message : mOptions.tone->takenMessages())
            mDescriptor->port_event(mHandle, kPortNotify, static_cast<std::uint32_t>(message.size()),
                                    mNames(LV2_ATOM__eventTransfer), message.data());
    }
    return static_cast<const LV2UI_Idle_Interface*>(mDescriptor->extension_data(LV2_UI__idleInterface))
               ->idle(mHandle) == 0;
}

void HostedEditor::show()
{
    static_cast<const LV2UI_Show_Interface*>(mDescriptor->extension_data(LV2_UI__showInterface))->show(mHandle);
}

void HostedEditor::hide()
{
    static_cast<const LV2UI_Show_Interface*>(mDescriptor->extension_data(LV2_UI__showInterface))->hide(mHandle);
}

void HostedEditor::portEvent(std::uint32_t port, float value)
{
    mDescriptor->port_event(mHandle, port, sizeof value, 0, &value);
}
