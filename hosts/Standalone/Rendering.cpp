#include "Standalone/Rendering.h"

#include "Standalone/Interruption.h"
#include "Standalone/NewFile.h"
#include "Standalone/ProgressBar.h"
#include "Standalone/Settings.h"
#include "Standalone/SoundFile.h"
#include "ToneUnit/ToneRenderer.h"

#include <vector>

namespace {

constexpr std::size_t kBlock = 4096; // samples

void writeTone(const ToneSettings& settings, SoundFile& file, ProgressBar& progress, const Interruption& interruption)
{
    const std::uint64_t length = ToneLengthInSamples(settings);
    ToneRenderer renderer;
    std::vector<float> block(kBlock);
    for (std::uint64_t done = 0; done < length;) {
        interruption.check();
        progress.show(done, length);
        const std::span<float> part(block.data(), std::min<std::uint64_t>(kBlock, length - done));
        renderer.render(settings, part);
        file.write(part);
        done += part.size();
    }
    file.finish();
    interruption.check();
    progress.show(length, length);
}

void writeFile(const ToneSettings& settings, const std::string& name, const Interruption& interruption)
{
    NewFile file(name);
    try {
        SoundFile sound(file.descriptor(), soundFileKind(name).value(), settings.sampleRate,
                        ToneLengthInSamples(settings));
        ProgressBar progress(name);
        writeTone(settings, sound, progress, interruption);
    } catch (const SoundFileError& error) {
        throw InputError{name + ": " + error.reason};
    }
    file.keep();
}

} // namespace

void renderTone(const Options& options)
{
    ToneUnit unit;
    applySettings(unit, options.settings);
    ToneSettings settings = unit.settings();
    if (settings.sampleRate == 0) settings.sampleRate = kToneDefaultSampleRate;

    const Interruption interruption;
    try {
        writeFile(settings, options.file, interruption);
    } catch (const InputError&) {
        interruption.check(); // a signal also lets a call fail that waits: for the reader of a pipe
        throw;
    }
}
