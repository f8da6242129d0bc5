#pragma once

/// A small host: it loads the built objects as any host does, and writes down what they tell it.

#include "LV2/TonaroPorts.h"

#include <array>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <lv2/atom/atom.h>
#include <lv2/core/lv2.h>
#include <lv2/options/options.h>
#include <lv2/state/state.h>
#include <lv2/ui/ui.h>
#include <lv2/urid/urid.h>

/// Numbers for names, as every host has them.
class Names {
public:
    LV2_URID operator()(const std::string& uri);
    LV2_URID_Map* map() { return &mMap; }

private:
    std::map<std::string, LV2_URID> mIds;
    LV2_URID_Map mMap{this,
                      [](LV2_URID_Map_Handle self, const char* uri) { return (*static_cast<Names*>(self))(uri); }};
};

/// A shared object of the bundle ("tonaro.so"), loaded while this lives.
class SharedObject {
public:
    explicit SharedObject(const std::string& name); ///< @throw std::runtime_error
    template <typename Function> Function* function(const char* symbol) const
    {
        return reinterpret_cast<Function*>(find(symbol));
    }

private:
    struct Close {
        void operator()(void* object) const;
    };
    void* find(const char* symbol) const;
    std::unique_ptr<void, Close> mObject;
};

/// An instance of the sounding half, with its buffers.
class HostedTone {
public:
    static constexpr std::uint32_t kFrames = 256;

    explicit HostedTone(Names& names, const char* uri = kTonaroStereoURI, double sampleRateHz = 48000.0);
    ~HostedTone();
    HostedTone(const HostedTone&) = delete;
    HostedTone& operator=(const HostedTone&) = delete;

    /// One block. Messages that were sent arrive, and those that come back are kept.
    void run();
    void prepareMessages(); ///< of `run`, which is prepareMessages, runOnly and takeMessages
    void runOnly();
    void takeMessages();
    void send(const void* atom, std::uint32_t size); ///< with the next block
    std::vector<float> rendered(std::size_t blocks); ///< of the left side
    /// The messages since the last call, each an atom.
    std::vector<std::vector<std::uint8_t>> takenMessages();
    std::map<LV2_URID, std::int32_t> saved();
    void restore(const std::map<LV2_URID, std::int32_t>& state);

    std::array<float, kParamCount> controls;
    std::array<std::array<float, kFrames>, 2> outputs{};

private:
    Names& mNames;
    SharedObject mObject{"tonaro.so"};
    const LV2_Descriptor* mDescriptor = nullptr;
    LV2_Handle mHandle = nullptr;
    alignas(8) std::array<std::uint8_t, 4096> mInput{}, mOutput{};
    std::vector<std::uint8_t> mSent;
    std::vector<std::vector<std::uint8_t>> mReceived;
};

/// An open editor.
class HostedEditor {
public:
    struct Options {
        std::uint32_t parent = 0; ///< 0 for a host that can't embed
        bool touches = true, echoes = false, maps = true, hasController = true;
        double scale = 1.0, sampleRateHz = 48000.0; ///< 0 leaves them out
        HostedTone* tone = nullptr;                 ///< gets the editor's messages
    };
    HostedEditor(Names& names, const Options& options);
    ~HostedEditor();
    HostedEditor(const HostedEditor&) = delete;
    HostedEditor& operator=(const HostedEditor&) = delete;

    std::uint32_t window() const { return static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(mWidget)); }
    bool idle(); ///< with everything that a host does in between. @return false once it was closed
    void show();
    void hide();
    void portEvent(std::uint32_t port, float value);
    std::vector<std::string> taken() { return std::exchange(mLog, {}); } ///< "touch 1", "write 1 440", "leave 1"
    const std::vector<std::string>& log() const { return mLog; }
    std::pair<int, int> size() const { return mSize; } ///< that it asked for

private:
    void write(std::uint32_t port, std::uint32_t size, std::uint32_t protocol, const void* data);

    static HostedEditor* sWithoutController;
    Names& mNames;
    Options mOptions;
    SharedObject mObject{"tonaro_ui.so"};
    const LV2UI_Descriptor* mDescriptor = nullptr;
    LV2UI_Handle mHandle = nullptr;
    LV2UI_Widget mWidget = nullptr;
    LV2UI_Touch mTouch;
    LV2UI_Resize mResize;
    std::vector<std::string> mLog;
    std::vector<std::pair<std::uint32_t, float>> mEchoes;
    std::pair<int, int> mSize;
};
