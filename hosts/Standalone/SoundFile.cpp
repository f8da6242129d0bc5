#include "Standalone/SoundFile.h"

#include "TonaroLetterCase.h"
#include "ToneUnit/ToneParameters.h"

#include <array>
#include <cerrno>
#include <cmath>
#include <cstring>

#include <sndfile.h>
#include <unistd.h>

namespace {

constexpr int kBytesPerFrame = 3;
constexpr std::uint64_t kLargestWav = 0xFFFFFFFFU - 4096; // bytes of samples; the header needs some, too

struct Suffix {
    std::string_view text;
    SoundFileKind kind;
};
constexpr Suffix kSuffixes[] = {{".wav", SoundFileKind::wav}, {".flac", SoundFileKind::flac}};

bool endsWith(std::string_view name, std::string_view suffix)
{
    return name.size() >= suffix.size() && equalIgnoringCase(name.substr(name.size() - suffix.size()), suffix);
}

int formatOf(SoundFileKind kind, std::uint64_t frames)
{
    if (kind == SoundFileKind::flac) return SF_FORMAT_FLAC | SF_FORMAT_PCM_24;
    return (frames > kLargestWav / kBytesPerFrame ? SF_FORMAT_RF64 : SF_FORMAT_WAV) | SF_FORMAT_PCM_24;
}

struct CloseSoundFile {
    void operator()(SNDFILE* file) const { sf_close(file); }
};

} // namespace

// Writes through functions of our own, since the library does not tell of every write that fails.
struct SoundFile::Writer {
    int descriptor;
    int error = 0; ///< of the first write that failed
    std::unique_ptr<SNDFILE, CloseSoundFile> file;

    static sf_count_t length(void* self)
    {
        const sf_count_t here = seek(0, SEEK_CUR, self), end = seek(0, SEEK_END, self);
        seek(here, SEEK_SET, self);
        return end;
    }
    static sf_count_t seek(sf_count_t offset, int whence, void* self)
    {
        return lseek(static_cast<Writer*>(self)->descriptor, offset, whence);
    }
    static sf_count_t tell(void* self) { return seek(0, SEEK_CUR, self); }
    static sf_count_t read(void* bytes, sf_count_t count, void* self)
    {
        return ::read(static_cast<Writer*>(self)->descriptor, bytes, static_cast<std::size_t>(count));
    }
    static sf_count_t write(const void* bytes, sf_count_t count, void* self)
    {
        return static_cast<Writer*>(self)->writeAll(static_cast<const char*>(bytes), count);
    }
    sf_count_t writeAll(const char* bytes, sf_count_t count)
    {
        sf_count_t done = 0;
        while (done < count && error == 0) {
            const ssize_t written = ::write(descriptor, bytes + done, static_cast<std::size_t>(count - done));
            if (written > 0)
                done += written;
            else if (errno != EINTR)
                error = errno;
        }
        return done;
    }
    void check(const char* reason) const
    {
        if (error != 0) throw SoundFileError{std::strerror(error)};
        if (reason) throw SoundFileError{reason};
    }
};

std::optional<SoundFileKind> soundFileKind(std::string_view name)
{
    for (const Suffix& suffix : kSuffixes)
        if (endsWith(name, suffix.text)) return suffix.kind;
    return std::nullopt;
}

SoundFile::SoundFile(int descriptor, SoundFileKind kind, double sampleRate, std::uint64_t frames)
    : mWriter(new Writer{descriptor, 0, nullptr})
{
    if (!IsToneSampleRate(sampleRate) || sampleRate != std::floor(sampleRate))
        throw SoundFileError{"a sound file can't hold this sample rate"};
    if (lseek(descriptor, 0, SEEK_CUR) < 0) throw SoundFileError{"a sound file can't be written into a pipe"};
    SF_INFO info{};
    info.samplerate = static_cast<int>(sampleRate);
    info.channels = 1;
    info.format = formatOf(kind, frames);
    SF_VIRTUAL_IO functions{Writer::length, Writer::seek, Writer::read, Writer::write, Writer::tell};
    mWriter->file.reset(sf_open_virtual(&functions, SFM_WRITE, &info, mWriter.get()));
    if (!mWriter->file) mWriter->check(sf_strerror(nullptr));
    sf_command(mWriter->file.get(), SFC_SET_CLIPPING, nullptr, SF_TRUE);
}

SoundFile::~SoundFile() = default;

void SoundFile::write(std::span<const float> samples)
{
    const auto count = static_cast<sf_count_t>(samples.size());
    const bool whole = sf_writef_float(mWriter->file.get(), samples.data(), count) == count;
    mWriter->check(whole ? nullptr : sf_strerror(mWriter->file.get()));
}

void SoundFile::finish()
{
    const int error = sf_close(mWriter->file.release());
    mWriter->check(error == SF_ERR_NO_ERROR ? nullptr : sf_error_number(error));
}
