#include "runtime/sound/BreathFile.h"

#include <algorithm>
#include <array>
#include <utility>

#include "backend/Storage.h"
#include "runtime/Console.h"
#include "runtime/sound/PhoneConverter.h"
#include "runtime/sound/PhoneFormat.h"
#include "runtime/soundfile/SoundReader.h"

namespace host {

namespace {

constexpr std::int64_t kLongestSeconds = 3600;
constexpr std::size_t kFramesAtOnce = 2048;

std::unique_ptr<SoundReader> OpenReader(const Storage& storage, const std::string& path, std::string& fault) {
    auto file = storage.OpenInput(path, fault);
    return file == nullptr ? nullptr : SoundReader::FromFile(std::move(file), fault);
}

bool DecodesToItsEnd(SoundReader& reader) {
    std::vector<float> samples(kFramesAtOnce * static_cast<std::size_t>(reader.Channels()));
    std::int64_t frames = 0;
    while (const std::size_t got = reader.Read(samples)) frames += static_cast<std::int64_t>(got);
    return frames == reader.Frames();
}

}  // namespace

BreathFile::BreathFile(Console& console, std::string path) : console_(console), path_(std::move(path)) {}

BreathFile::~BreathFile() = default;

std::unique_ptr<BreathFile> BreathFile::Open(const Storage& storage, Console& console, const std::string& path,
                                             std::string& problem) {
    std::unique_ptr<BreathFile> file(new BreathFile(console, path));
    std::string fault;
    file->reader_ = OpenReader(storage, path, fault);
    if (file->reader_ != nullptr) {
        const SoundReader& reader = *file->reader_;
        const bool isPhones =
            reader.IsUnsigned8Bit() && reader.Channels() == kPhoneChannels && reader.Rate() == kPhoneRate;
        if (!isPhones) file->converter_ = PhoneConverter::Make(reader.Rate(), reader.Channels());
        if (reader.Frames() > kLongestSeconds * reader.Rate()) {
            fault = "it is longer than an hour";
        } else if (!isPhones && file->converter_ == nullptr) {
            fault = "its rate cannot be converted";
        } else if (!reader.IsProvedWhole()) {
            // Decoding is the proof, and then begins anew.
            if (DecodesToItsEnd(*file->reader_)) {
                file->reader_ = OpenReader(storage, path, fault);
            } else {
                fault = "it does not decode to its end";
            }
        }
    }
    if (fault.empty()) return file;
    problem = path + ": " + fault;
    return nullptr;
}

void BreathFile::Read(std::span<std::uint8_t> bytes) {
    while (!bytes.empty()) {
        if (bytesAt_ == bytes_.size() && !ReadMore()) {
            std::fill(bytes.begin(), bytes.end(), kPhoneSilence);
            return;
        }
        const std::size_t count = std::min(bytes.size(), bytes_.size() - bytesAt_);
        std::copy_n(bytes_.begin() + static_cast<std::ptrdiff_t>(bytesAt_), count, bytes.begin());
        bytesAt_ += count;
        bytes = bytes.subspan(count);
    }
}

void BreathFile::Skip(std::uint64_t frames) {
    std::array<std::uint8_t, kFramesAtOnce * kPhoneChannels> passedOver;
    while (frames > 0 && !hasEnded_) {
        const std::uint64_t count = std::min<std::uint64_t>(frames, kFramesAtOnce);
        Read({passedOver.data(), static_cast<std::size_t>(count) * kPhoneChannels});
        frames -= count;
    }
}

bool BreathFile::ReadMore() {
    bytes_.clear();
    bytesAt_ = 0;
    if (converter_ == nullptr) {
        bytes_.resize(kFramesAtOnce * kPhoneChannels);
        const std::size_t frames = reader_->ReadBytes(bytes_);
        bytes_.resize(frames * kPhoneChannels);
        framesRead_ += static_cast<std::int64_t>(frames);
        hasEnded_ = bytes_.empty();
    }
    while (bytes_.empty() && !hasEnded_) {
        const auto channels = static_cast<std::size_t>(reader_->Channels());
        samples_.resize(kFramesAtOnce * channels);
        const std::size_t frames = reader_->Read(samples_);
        framesRead_ += static_cast<std::int64_t>(frames);
        hasEnded_ = frames == 0;
        converter_->Convert({samples_.data(), frames * channels},
                            hasEnded_ ? PhoneConverter::Input::kEndsHere : PhoneConverter::Input::kGoesOn, bytes_);
    }
    if (hasEnded_) TakeEnd();
    return !bytes_.empty();
}

// The file was whole when it was opened, so what is missing now was lost on the way.
void BreathFile::TakeEnd() {
    if (framesRead_ < reader_->Frames()) {
        console_.ReportLoss(path_ + ": the rest of the breath cannot be read, and is silence");
    }
}

}  // namespace host
