#include "runtime/soundfile/WavWriter.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <limits>
#include <string_view>
#include <utility>
#include <vector>

namespace host {

namespace {

constexpr std::uint16_t kSampleBytes = 2;
constexpr std::uint16_t kBitsOfByte = 8;
constexpr std::uint16_t kBitsOfSample = 16;

// A RIFF file with the chunks "fmt " and "data": "Multimedia Programming Interface and Data Specifications 1.0", IBM
// and Microsoft, 1991.
constexpr std::size_t kHeaderBytes = 44;
constexpr std::uint32_t kBytesBeforeRiffSize = 8;
constexpr std::uint32_t kFormatBytes = 16;
constexpr std::uint16_t kIntegerSamples = 1;
constexpr std::uint16_t kMono = 1;
constexpr std::uint32_t kMostDataBytes = std::numeric_limits<std::uint32_t>::max() - kHeaderBytes;

std::byte LowByte(unsigned value) {
    constexpr unsigned kByte = 0xFF;
    return static_cast<std::byte>(value & kByte);
}

class HeaderBuilder {
public:
    HeaderBuilder& Tag(std::string_view tag) {
        std::memcpy(bytes_.data() + size_, tag.data(), tag.size());
        size_ += tag.size();
        return *this;
    }
    /// Of the size of `Number`, the lowest byte first.
    template <typename Number>
    HeaderBuilder& Add(Number value) {
        for (std::size_t i = 0; i < sizeof value; ++i)
            bytes_[size_++] = LowByte(std::uint32_t{value} >> (i * kBitsOfByte));
        return *this;
    }
    [[nodiscard]] std::span<const std::byte> Bytes() const { return bytes_; }

private:
    std::array<std::byte, kHeaderBytes> bytes_{};
    std::size_t size_ = 0;
};

}  // namespace

WavWriter::WavWriter(std::unique_ptr<OutputFile> file, int rate) : file_(std::move(file)), rate_(rate) {
    // The header's place; its sizes are told as they grow.
    isFull_ = !file_->Append(HeaderBuilder().Bytes()) || !WriteHeader();
}

bool WavWriter::WriteHeader() {
    const auto rate = static_cast<std::uint32_t>(rate_);
    HeaderBuilder header;
    header.Tag("RIFF").Add(static_cast<std::uint32_t>(kHeaderBytes) - kBytesBeforeRiffSize + dataBytes_).Tag("WAVE");
    header.Tag("fmt ").Add(kFormatBytes).Add(kIntegerSamples).Add(kMono).Add(rate).Add(rate * kSampleBytes);
    header.Add(kSampleBytes).Add(kBitsOfSample).Tag("data").Add(dataBytes_);
    return file_->Overwrite(0, header.Bytes());
}

bool WavWriter::Write(std::span<const float> frames) {
    constexpr float kFullScale = 32767;
    const std::size_t room = (kMostDataBytes - dataBytes_) / kSampleBytes;
    std::vector<std::byte> bytes;
    bytes.reserve(frames.size() * kSampleBytes);
    for (const float frame : frames.first(std::min(frames.size(), room))) {
        const auto sample = static_cast<unsigned>(std::lrint(std::clamp(frame, -1.0F, 1.0F) * kFullScale));
        bytes.push_back(LowByte(sample));
        bytes.push_back(LowByte(sample >> kBitsOfByte));
    }
    if (isFull_ || !file_->Append(bytes)) {
        isFull_ = true;
        return false;
    }
    dataBytes_ += static_cast<std::uint32_t>(bytes.size());
    isFull_ = !WriteHeader() || frames.size() > room;
    return !isFull_;
}

std::string WavWriter::Problem() const {
    return file_->Problem().empty() ? "a WAV file can hold no more" : file_->Problem();
}

bool WavWriter::Close() {
    return file_->Close() && !isFull_;
}

}  // namespace host
