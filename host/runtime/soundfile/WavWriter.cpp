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

constexpr std::uint32_t kSampleBytes = 2;
constexpr unsigned kBitsOfByte = 8;

// A RIFF file with the chunks "fmt " and "data": "Multimedia Programming Interface and Data Specifications 1.0", IBM
// and Microsoft, 1991.
constexpr std::size_t kHeaderBytes = 44;
constexpr std::uint32_t kBytesBeforeRiffSize = 8;
constexpr std::uint32_t kFormatBytes = 16;
constexpr std::uint32_t kIntegerSamples = 1;
constexpr std::uint32_t kMono = 1;
constexpr std::uint32_t kMostDataBytes = std::numeric_limits<std::uint32_t>::max() - kHeaderBytes;

class HeaderBuilder {
public:
    HeaderBuilder& Tag(std::string_view tag) {
        std::memcpy(bytes_.data() + size_, tag.data(), tag.size());
        size_ += tag.size();
        return *this;
    }
    HeaderBuilder& Number(std::uint32_t value, std::size_t bytes) {
        for (std::size_t i = 0; i < bytes; ++i) {
            bytes_[size_++] = static_cast<std::byte>(value >> (i * kBitsOfByte) & 0xFFU);
        }
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
    header.Tag("RIFF").Number(kHeaderBytes - kBytesBeforeRiffSize + dataBytes_, 4).Tag("WAVE");
    header.Tag("fmt ").Number(kFormatBytes, 4).Number(kIntegerSamples, 2).Number(kMono, 2).Number(rate, 4);
    header.Number(rate * kSampleBytes, 4).Number(kSampleBytes, 2).Number(kSampleBytes * kBitsOfByte, 2);
    header.Tag("data").Number(dataBytes_, 4);
    return file_->Overwrite(0, header.Bytes());
}

bool WavWriter::Write(std::span<const float> frames) {
    constexpr float kFullScale = 32767;
    const std::size_t room = (kMostDataBytes - dataBytes_) / kSampleBytes;
    std::vector<std::byte> bytes;
    bytes.reserve(frames.size() * kSampleBytes);
    for (const float frame : frames.first(std::min(frames.size(), room))) {
        const auto sample = static_cast<unsigned>(std::lrint(std::clamp(frame, -1.0F, 1.0F) * kFullScale));
        bytes.push_back(static_cast<std::byte>(sample & 0xFFU));
        bytes.push_back(static_cast<std::byte>(sample >> kBitsOfByte & 0xFFU));
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
