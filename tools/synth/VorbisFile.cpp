#include "VorbisFile.h"

#include <sndfile.h>
#include <algorithm>
#include <cmath>
#include <cstring>
#include <fstream>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <vector>

namespace synth {
namespace {

constexpr double kQuality = 0.9;             // of 0 to 1
constexpr std::size_t kFramesAtOnce = 4096;  // the encoder keeps a copy of a piece on its stack

using Bytes = std::vector<unsigned char>;

void Encode(const std::string& path, const Loop& loop) {
    SF_INFO info = {};
    info.samplerate = static_cast<int>(kRate);
    info.channels = 1;
    info.format = SF_FORMAT_OGG | SF_FORMAT_VORBIS;
    const std::unique_ptr<SNDFILE, int (*)(SNDFILE*)> file(sf_open(path.c_str(), SFM_WRITE, &info), sf_close);
    if (!file) {
        throw std::runtime_error(path + ": " + sf_strerror(nullptr));
    }

    double quality = kQuality;
    sf_command(file.get(), SFC_SET_VBR_ENCODING_QUALITY, &quality, sizeof quality);
    for (std::size_t at = 0; at < loop.size(); at += kFramesAtOnce) {
        const auto count = static_cast<sf_count_t>(std::min(kFramesAtOnce, loop.size() - at));
        if (sf_write_double(file.get(), &loop[at], count) != count) {
            throw std::runtime_error(path + ": " + sf_strerror(file.get()));
        }
    }
}

Loop Decode(const std::string& path) {
    SF_INFO info = {};
    const std::unique_ptr<SNDFILE, int (*)(SNDFILE*)> file(sf_open(path.c_str(), SFM_READ, &info), sf_close);
    Loop loop(static_cast<std::size_t>(info.frames));
    if (!file || info.channels != 1 || sf_read_double(file.get(), loop.data(), info.frames) != info.frames) {
        throw std::runtime_error(path + ": does not decode");
    }
    return loop;
}

void PutLittleEndian(unsigned char* at, std::uint32_t value) {
    constexpr unsigned kBits = 8;
    for (unsigned i = 0; i < sizeof value; ++i) {
        at[i] = static_cast<unsigned char>(value >> (i * kBits));
    }
}

// The CRC of an Ogg page, with its own field as 0 (RFC 3533, 6).
std::uint32_t PageChecksum(const unsigned char* page, std::size_t size) {
    constexpr std::uint32_t kPolynomial = 0x04c11db7;
    constexpr std::uint32_t kTopBit = 0x80000000;
    constexpr int kBits = 8;
    constexpr int kToTopByte = 24;
    std::uint32_t crc = 0;
    for (std::size_t i = 0; i < size; ++i) {
        crc ^= static_cast<std::uint32_t>(page[i]) << kToTopByte;
        for (int bit = 0; bit < kBits; ++bit) {
            crc = (crc << 1U) ^ ((crc & kTopBit) != 0 ? kPolynomial : 0);
        }
    }
    return crc;
}

// Puts the serial number into every page (RFC 3533, 6: the header's fields).
void SetSerial(const std::string& path, Bytes& bytes, std::uint32_t serial) {
    constexpr std::size_t kSerialAt = 14;
    constexpr std::size_t kChecksumAt = 22;
    constexpr std::size_t kSegmentsAt = 26;
    for (std::size_t at = 0; at < bytes.size();) {
        unsigned char* page = &bytes[at];
        const std::size_t left = bytes.size() - at;
        std::size_t size = kSegmentsAt + 1;
        if (left >= size) {
            size += page[kSegmentsAt];
        }
        if (left < size || std::memcmp(page, "OggS", 4) != 0) {
            throw std::runtime_error(path + ": no page of Ogg where one should begin");
        }
        for (std::size_t i = 0; i < page[kSegmentsAt]; ++i) {
            size += page[kSegmentsAt + 1 + i];
        }
        if (left < size) {
            throw std::runtime_error(path + ": its last page is cut off");
        }
        PutLittleEndian(page + kSerialAt, serial);
        PutLittleEndian(page + kChecksumAt, 0);
        PutLittleEndian(page + kChecksumAt, PageChecksum(page, size));
        at += size;
    }
}

}  // namespace

double VorbisFile::Write(const std::string& path, const Loop& loop, std::uint32_t serial) {
    Encode(path, loop);

    std::ifstream in(path, std::ios::binary);
    Bytes bytes{std::istreambuf_iterator<char>(in), {}};
    in.close();
    SetSerial(path, bytes, serial);

    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    out.close();
    if (!out) {
        throw std::runtime_error(path + ": cannot be written");
    }

    const Loop decoded = Decode(path);
    if (decoded.size() != loop.size()) {
        throw std::runtime_error(path + ": does not decode to its own length");
    }
    return std::abs((decoded.front() - decoded.back()) - (loop.front() - loop.back()));
}

}  // namespace synth
