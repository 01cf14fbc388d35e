// SoundReader where libsndfile is not to be had: libvorbisfile decodes Ogg Vorbis, and plain WAV samples are read here.

#include <vorbis/vorbisfile.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <utility>

#include "runtime/soundfile/ByteSource.h"
#include "runtime/soundfile/Framing.h"
#include "runtime/soundfile/SoundReader.h"

namespace host {

namespace {

constexpr std::size_t kFramesAtOnce = 1024;

std::uint32_t LittleEndian(std::span<const std::byte> bytes) {
    constexpr unsigned kByteBits = 8;
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        value |= std::to_integer<std::uint32_t>(bytes[i]) << (i * kByteBits);
    }
    return value;
}

/// What kind of file it is, and its frames one after another.
class Format {
public:
    virtual ~Format() = default;

    int rate = 0;
    int channels = 0;
    std::int64_t frames = 0;
    bool isUnsigned8Bit = false;

    /// Whole frames, interleaved; fewer than fit only at the end or where it does not decode.
    virtual std::size_t Read(std::span<float> samples) = 0;
    virtual std::size_t ReadBytes(std::span<std::uint8_t> /*samples*/) { return 0; }
};

class VorbisFormat final : public Format {
public:
    explicit VorbisFormat(ByteSource& source) : source_(source) {
        const ov_callbacks callbacks{ReadSource, SeekSource, nullptr, TellSource};
        isOpen_ = ov_open_callbacks(this, &file_, nullptr, 0, callbacks) == 0;
        if (!isOpen_) return;
        const vorbis_info* const info = ov_info(&file_, -1);
        rate = static_cast<int>(info->rate);
        channels = info->channels;
        frames = ov_pcm_total(&file_, -1);
    }
    ~VorbisFormat() override {
        if (isOpen_) ov_clear(&file_);
    }
    VorbisFormat(const VorbisFormat&) = delete;
    VorbisFormat& operator=(const VorbisFormat&) = delete;

    [[nodiscard]] bool IsOpen() const noexcept { return isOpen_; }

    std::size_t Read(std::span<float> samples) override {
        const auto width = static_cast<std::size_t>(channels);
        const std::size_t wanted = samples.size() / width;
        std::size_t count = 0;
        while (count < wanted) {
            float** planes = nullptr;
            const long got = ov_read_float(&file_, &planes, static_cast<int>(wanted - count), nullptr);
            if (got <= 0) break;
            for (std::size_t frame = 0; frame < static_cast<std::size_t>(got); ++frame, ++count) {
                for (std::size_t i = 0; i < width; ++i) samples[count * width + i] = planes[i][frame];
            }
        }
        return count;
    }

private:
    static std::size_t ReadSource(void* to, std::size_t size, std::size_t count, void* user) {
        auto& self = *static_cast<VorbisFormat*>(user);
        const std::size_t got = self.source_.ReadAt(self.position_, {static_cast<std::byte*>(to), size * count});
        self.position_ += static_cast<std::int64_t>(got);
        return size == 0 ? 0 : got / size;
    }
    static int SeekSource(void* user, ogg_int64_t offset, int whence) {
        auto& self = *static_cast<VorbisFormat*>(user);
        const std::int64_t base = whence == SEEK_CUR ? self.position_ : whence == SEEK_END ? self.source_.Size() : 0;
        self.position_ = base + offset;
        return 0;
    }
    static long TellSource(void* user) { return static_cast<long>(static_cast<VorbisFormat*>(user)->position_); }

    ByteSource& source_;
    std::int64_t position_ = 0;
    OggVorbis_File file_{};
    bool isOpen_ = false;
};

// The layout of a WAV file: see Framing.cpp. These are the offsets within the chunk "fmt ".
constexpr std::size_t kChannelsAt = 2;
constexpr std::size_t kRateAt = 4;
constexpr std::size_t kBitsAt = 14;
constexpr std::size_t kFormatBytes = 16;
constexpr std::uint32_t kInteger = 1;
constexpr std::uint32_t kFloat = 3;
constexpr std::uint32_t kByteBits = 8;
constexpr std::uint32_t kSampleBits = 32;

class WavFormat final : public Format {
public:
    explicit WavFormat(ByteSource& source) : source_(source) {
        constexpr std::int64_t kFileHeaderBytes = 12;
        constexpr std::size_t kChunkHeaderBytes = 8;
        constexpr std::size_t kNameBytes = 4;
        std::array<std::byte, kChunkHeaderBytes> header{};
        std::int64_t offset = kFileHeaderBytes;
        while (source_.ReadAt(offset, header) == header.size()) {
            const std::int64_t size = LittleEndian(std::span(header).subspan(kNameBytes));
            offset += static_cast<std::int64_t>(header.size());
            if (std::memcmp(header.data(), "fmt ", kNameBytes) == 0) ReadFormat(offset);
            if (std::memcmp(header.data(), "data", kNameBytes) == 0) {
                position_ = offset;
                frames = FrameBytes() > 0 ? size / static_cast<std::int64_t>(FrameBytes()) : 0;
                left_ = frames;
                return;
            }
            offset += size + size % 2;
        }
    }

    [[nodiscard]] bool IsKnown() const noexcept { return sampleBytes_ > 0; }

    std::size_t Read(std::span<float> samples) override {
        const auto width = static_cast<std::size_t>(channels);
        std::size_t count = 0;
        while (count < samples.size() / width) {
            const std::size_t got = Fetch(std::min(kFramesAtOnce, samples.size() / width - count));
            if (got == 0) break;
            for (std::size_t i = 0; i < got * width; ++i) samples[count * width + i] = SampleAt(i);
            count += got;
        }
        return count;
    }

    std::size_t ReadBytes(std::span<std::uint8_t> samples) override {
        const auto width = static_cast<std::size_t>(channels);
        const std::size_t got = Fetch(samples.size() / width);
        for (std::size_t i = 0; i < got * width; ++i) samples[i] = std::to_integer<std::uint8_t>(bytes_[i]);
        return got;
    }

private:
    [[nodiscard]] std::size_t FrameBytes() const { return sampleBytes_ * static_cast<std::size_t>(channels); }

    void ReadFormat(std::int64_t offset) {
        constexpr std::uint32_t kMostSampleBytes = 4;
        std::array<std::byte, kFormatBytes> bytes{};
        if (source_.ReadAt(offset, bytes) < bytes.size()) return;
        const std::span<const std::byte> all(bytes);
        const std::uint32_t kind = LittleEndian(all.first(2));
        const std::uint32_t bits = LittleEndian(all.subspan(kBitsAt, 2));
        channels = static_cast<int>(LittleEndian(all.subspan(kChannelsAt, 2)));
        rate = static_cast<int>(LittleEndian(all.subspan(kRateAt, 4)));
        const bool isInteger =
            kind == kInteger && bits % kByteBits == 0 && bits > 0 && bits / kByteBits <= kMostSampleBytes;
        isFloat_ = kind == kFloat && bits == kSampleBits;
        isUnsigned8Bit = isInteger && bits == kByteBits;
        sampleBytes_ = isInteger || isFloat_ ? bits / kByteBits : 0;
    }

    std::size_t Fetch(std::size_t count) {
        const auto wanted = static_cast<std::size_t>(std::min<std::int64_t>(left_, static_cast<std::int64_t>(count)));
        bytes_.resize(wanted * FrameBytes());
        const std::size_t got = bytes_.empty() ? 0 : source_.ReadAt(position_, bytes_) / FrameBytes();
        position_ += static_cast<std::int64_t>(got * FrameBytes());
        left_ = got < wanted ? 0 : left_ - static_cast<std::int64_t>(got);
        return got;
    }

    [[nodiscard]] float SampleAt(std::size_t index) const {
        constexpr float kFullScale = 2147483648.0F;  // 2^31
        constexpr float kMiddleOf8Bits = 128;
        const std::uint32_t value = LittleEndian(std::span(bytes_).subspan(index * sampleBytes_, sampleBytes_));
        if (isUnsigned8Bit) return (static_cast<float>(value) - kMiddleOf8Bits) / kMiddleOf8Bits;
        if (isFloat_) {
            float sample = 0;
            std::memcpy(&sample, &value, sizeof sample);
            return sample;
        }
        const auto unused = static_cast<std::uint32_t>(kSampleBits - sampleBytes_ * kByteBits);
        return static_cast<float>(static_cast<std::int32_t>(value << unused)) / kFullScale;
    }

    ByteSource& source_;
    std::size_t sampleBytes_ = 0;  ///< 0 for a kind that is not known here
    bool isFloat_ = false;
    std::int64_t position_ = 0;
    std::int64_t left_ = 0;  ///< frames
    std::vector<std::byte> bytes_;
};

}  // namespace

struct SoundReader::Decoder {
    std::unique_ptr<ByteSource> source;
    bool isProvedWhole = false;
    std::vector<std::string> comments;
    std::unique_ptr<Format> format;
};

std::string SoundReader::Library() {
    return vorbis_version_string();
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
    auto decoder = std::make_unique<Decoder>();
    decoder->source = std::move(source);
    decoder->isProvedWhole = framing.isProof;
    decoder->comments = std::move(framing.comments);

    std::array<std::byte, 1> first{};
    static_cast<void>(decoder->source->ReadAt(0, first));
    bool isOpen = false;
    // ExamineFraming lets two kinds pass: "RIFF" and "OggS".
    if (first[0] == std::byte{'R'}) {
        auto wav = std::make_unique<WavFormat>(*decoder->source);
        isOpen = wav->IsKnown();
        decoder->format = std::move(wav);
    } else {
        auto vorbis = std::make_unique<VorbisFormat>(*decoder->source);
        isOpen = vorbis->IsOpen();
        decoder->format = std::move(vorbis);
    }
    if (decoder->source->HasFailed()) {
        problem = ReasonOf(ReadOutcome::kFailed);
        return nullptr;
    }
    if (!isOpen) {
        problem = "it does not decode";
        return nullptr;
    }
    if (decoder->format->frames <= 0 || decoder->format->channels <= 0 || decoder->format->rate <= 0) {
        problem = "it has no sound data";
        return nullptr;
    }
    return std::unique_ptr<SoundReader>(new SoundReader(std::move(decoder)));
}

SoundReader::SoundReader(std::unique_ptr<Decoder> decoder) : decoder_(std::move(decoder)) {}

SoundReader::~SoundReader() = default;

int SoundReader::Rate() const noexcept {
    return decoder_->format->rate;
}

int SoundReader::Channels() const noexcept {
    return decoder_->format->channels;
}

std::int64_t SoundReader::Frames() const noexcept {
    return decoder_->format->frames;
}

bool SoundReader::IsUnsigned8Bit() const noexcept {
    return decoder_->format->isUnsigned8Bit;
}

bool SoundReader::IsProvedWhole() const noexcept {
    return decoder_->isProvedWhole;
}

const std::vector<std::string>& SoundReader::Comments() const noexcept {
    return decoder_->comments;
}

std::size_t SoundReader::Read(std::span<float> samples) {
    const std::size_t got = decoder_->format->Read(samples);
    for (float& sample : samples.first(got * static_cast<std::size_t>(Channels()))) {
        if (!std::isfinite(sample)) sample = 0;
    }
    return got;
}

std::size_t SoundReader::ReadBytes(std::span<std::uint8_t> samples) {
    return decoder_->format->ReadBytes(samples);
}

}  // namespace host
