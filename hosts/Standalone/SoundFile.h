#pragma once

/// Samples to a sound file: mono, 24 bits, WAV or FLAC.
///
/// Samples beyond full scale are limited to it. A WAV file that would pass four gigabytes becomes one with 64-bit
/// lengths (RF64).
///
/// Failure: SoundFileError with a reason, without the file's name.

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

enum class SoundFileKind { wav, flac };

/// By the end of the name, in letters of any size: "a.WAV" is a WAV file; nothing for other names.
std::optional<SoundFileKind> soundFileKind(std::string_view name);

struct SoundFileError {
    std::string reason; ///< "No space left on device"
};

class SoundFile {
public:
    /// @param descriptor  where to write; stays the caller's and outlives this object
    /// @param sampleRate  Hz
    /// @param frames      how many will be written
    SoundFile(int descriptor, SoundFileKind kind, double sampleRate, std::uint64_t frames);
    ~SoundFile();
    SoundFile(const SoundFile&) = delete;
    SoundFile& operator=(const SoundFile&) = delete;

    void write(std::span<const float> samples);
    void finish(); ///< writes what is left: the lengths in the header; nothing can be written after it

private:
    struct Writer;
    std::unique_ptr<Writer> mWriter;
};
