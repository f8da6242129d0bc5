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

} // namespace

void renderTone(const Options& options)
{
    ToneUnit unit;
    applySettings(unit, options.settings);
    ToneSettings settings = unit.settings();
    if (settings.sampleRate == 0) settings.sampleRate = kToneDefaultSampleRate;

    const Interruption interruption;
    NewFile file(options.file);
    try {
        SoundFile sound(file.descriptor(), soundFileKind(options.file).value(), settings.sampleRate,
                        ToneLengthInSamples(settings));
        ProgressBar progress(options.file);
        writeTone(settings, sound, progress, interruption);
    } catch (const SoundFileError& error) {
        throw InputError{options.file + ": " + error.reason};
    }
    file.keep();
}
