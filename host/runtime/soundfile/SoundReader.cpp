#include "runtime/soundfile/SoundReader.h"

#include <sndfile.h>

#include <cmath>
#include <utility>

#include "runtime/soundfile/ByteSource.h"
#include "runtime/soundfile/Framing.h"

namespace host {

struct SoundReader::Decoder {
    explicit Decoder(std::unique_ptr<ByteSource> bytes) : source(std::move(bytes)) {}
    ~Decoder() {
        if (file != nullptr) sf_close(file);
    }
    Decoder(const Decoder&) = delete;
    Decoder& operator=(const Decoder&) = delete;

    std::unique_ptr<ByteSource> source;
    bool isProvedWhole = false;
    std::vector<std::string> comments;
    sf_count_t position = 0;
    SNDFILE* file = nullptr;
    SF_INFO info{};
};

namespace {

// The library's view of a ByteSource; `user` is what sf_open_virtual was given.
template <typename Decoder>
SF_VIRTUAL_IO MakeVirtualIo() {
    SF_VIRTUAL_IO io{};
    io.get_filelen = [](void* user) -> sf_count_t { return static_cast<Decoder*>(user)->source->Size(); };
    io.seek = [](sf_count_t offset, int whence, void* user) -> sf_count_t {
        auto& decoder = *static_cast<Decoder*>(user);
        const sf_count_t base = whence == SEEK_CUR   ? decoder.position
                                : whence == SEEK_END ? decoder.source->Size()
                                                     : sf_count_t{0};
        decoder.position = base + offset;
        return decoder.position;
    };
    io.read = [](void* to, sf_count_t count, void* user) -> sf_count_t {
        auto& decoder = *static_cast<Decoder*>(user);
        const std::size_t got =
            decoder.source->ReadAt(decoder.position, {static_cast<std::byte*>(to), static_cast<std::size_t>(count)});
        decoder.position += static_cast<sf_count_t>(got);
        return static_cast<sf_count_t>(got);
    };
    io.tell = [](void* user) -> sf_count_t { return static_cast<Decoder*>(user)->position; };
    return io;
}

}  // namespace

std::string SoundReader::Library() {
    return sf_version_string();
}

std::unique_ptr<SoundReader> SoundReader::FromMemory(std::vector<std::byte> content, std::string& problem) {
    return FromSource(std::make_unique<MemorySource>(std::move(content)), problem);
}

std::unique_ptr<SoundReader> SoundReader::FromFile(std::unique_ptr<InputFile> file, std::string& problem) {
    return FromSource(std::make_unique<FileSource>(std::move(file)), problem);
}

std::unique_ptr<SoundReader> SoundReader::FromSource(std::unique_ptr<ByteSource> source, std::string& problem) {
    Framing framing = ExamineFraming(*source);
    problem = source->HasFailed() ? ReasonOf(ReadOutcome::kFailed) : framing.fault;
    if (!problem.empty()) return nullptr;
    auto decoder = std::make_unique<Decoder>(std::move(source));
    decoder->isProvedWhole = framing.isProof;
    decoder->comments = std::move(framing.comments);
    SF_VIRTUAL_IO io = MakeVirtualIo<Decoder>();
    decoder->file = sf_open_virtual(&io, SFM_READ, &decoder->info, decoder.get());
    // The library may take a header for whole of which a part could not be read.
    if (decoder->source->HasFailed()) {
        problem = ReasonOf(ReadOutcome::kFailed);
        return nullptr;
    }
    if (decoder->file == nullptr) {
        problem = "it does not decode";
        return nullptr;
    }
    if (decoder->info.frames <= 0 || decoder->info.channels <= 0 || decoder->info.samplerate <= 0) {
        problem = "it has no sound data";
        return nullptr;
    }
    return std::unique_ptr<SoundReader>(new SoundReader(std::move(decoder)));
}

SoundReader::SoundReader(std::unique_ptr<Decoder> decoder) : decoder_(std::move(decoder)) {}

SoundReader::~SoundReader() = default;

int SoundReader::Rate() const noexcept {
    return decoder_->info.samplerate;
}

int SoundReader::Channels() const noexcept {
    return decoder_->info.channels;
}

std::int64_t SoundReader::Frames() const noexcept {
    return decoder_->info.frames;
}

bool SoundReader::IsUnsigned8Bit() const noexcept {
    return (decoder_->info.format & SF_FORMAT_SUBMASK) == SF_FORMAT_PCM_U8;
}

bool SoundReader::IsProvedWhole() const noexcept {
    return decoder_->isProvedWhole;
}

const std::vector<std::string>& SoundReader::Comments() const noexcept {
    return decoder_->comments;
}

std::size_t SoundReader::Read(std::span<float> samples) {
    const auto channels = static_cast<std::size_t>(Channels());
    const auto wanted = static_cast<sf_count_t>(samples.size() / channels);
    const auto got = static_cast<std::size_t>(sf_readf_float(decoder_->file, samples.data(), wanted));
    for (float& sample : samples.first(got * channels)) {
        if (!std::isfinite(sample)) sample = 0;
    }
    return got;
}

std::size_t SoundReader::ReadBytes(std::span<std::uint8_t> samples) {
    const auto channels = static_cast<std::size_t>(Channels());
    const auto wanted = static_cast<sf_count_t>(samples.size() / channels * channels);
    return static_cast<std::size_t>(sf_read_raw(decoder_->file, samples.data(), wanted)) / channels;
}

}  // namespace host
