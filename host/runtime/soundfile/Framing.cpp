#include "runtime/soundfile/Framing.h"

#include <array>

namespace host {

namespace {

constexpr unsigned kBitsOfByte = 8;

std::uint32_t LittleEndian32(const std::byte* at) {
    std::uint32_t value = 0;
    for (unsigned i = 0; i < sizeof value; ++i) value |= std::to_integer<std::uint32_t>(at[i]) << (i * kBitsOfByte);
    return value;
}

bool HasTag(const std::byte* at, std::string_view tag) {
    return std::memcmp(at, tag.data(), tag.size()) == 0;
}

// RIFF files are a header of 12 bytes ("RIFF", size, "WAVE") and chunks (name, size, content padded to an even length):
// "Multimedia Programming Interface and Data Specifications 1.0", IBM and Microsoft, 1991.
constexpr std::int64_t kRiffHeaderBytes = 12;
constexpr std::size_t kRiffChunkHeaderBytes = 8;
constexpr std::size_t kChunkSizeAt = 4;

std::string_view FindWavFault(ByteSource& source) {
    std::int64_t offset = kRiffHeaderBytes;
    std::array<std::byte, kRiffChunkHeaderBytes> header;
    while (source.ReadAt(offset, header) == header.size()) {
        const std::int64_t size = LittleEndian32(&header[kChunkSizeAt]);
        offset += static_cast<std::int64_t>(header.size()) + size;
        if (HasTag(header.data(), "data")) return offset <= source.Size() ? "" : "its end is missing";
        offset += size % 2;
    }
    return "it has no sound data";
}

// Ogg pages: RFC 3533, section 6.
constexpr std::size_t kPageHeaderBytes = 27;
constexpr std::size_t kPageFlagsAt = 5;
constexpr std::size_t kPageSerialAt = 14;
constexpr std::size_t kPageSequenceAt = 18;
constexpr std::size_t kPageChecksumAt = 22;
constexpr std::size_t kPageChecksumBytes = 4;
constexpr std::size_t kPageSegmentsAt = 26;
constexpr unsigned kPageIsContinued = 1;
constexpr unsigned kPageIsFirst = 2;
constexpr unsigned kPageIsLast = 4;
constexpr unsigned kFullSegment = 255;
constexpr std::size_t kLongestHeaderBytes = kPageHeaderBytes + kFullSegment;

// A Vorbis stream's three header packets have an odd first byte, its sound packets an even one (Xiph.Org,
// "Vorbis I", 4.2.1 and 4.3.1).
constexpr int kVorbisHeaderPackets = 3;
constexpr std::string_view kVorbisTag = "\x01vorbis";

// The checksum's table for `kTables` bytes at a time: entry n of table k is the checksum of n with k zero bytes behind.
constexpr std::size_t kTables = 4;
constexpr std::size_t kTableEntries = 256;
constexpr unsigned kToTopByte = 24;
using ChecksumTables = std::array<std::array<std::uint32_t, kTableEntries>, kTables>;

constexpr ChecksumTables MakeChecksumTables() {
    constexpr std::uint32_t kPolynomial = 0x04c11db7;
    constexpr std::uint32_t kTopBit = 0x80000000;
    ChecksumTables tables{};
    for (std::uint32_t n = 0; n < kTableEntries; ++n) {
        std::uint32_t value = n << kToTopByte;
        for (unsigned bit = 0; bit < kBitsOfByte; ++bit) {
            value = (value << 1U) ^ ((value & kTopBit) != 0 ? kPolynomial : 0);
        }
        tables[0][n] = value;
    }
    for (std::size_t k = 1; k < kTables; ++k) {
        for (std::size_t n = 0; n < kTableEntries; ++n) {
            const std::uint32_t shorter = tables[k - 1][n];
            tables[k][n] = (shorter << kBitsOfByte) ^ tables[0][shorter >> kToTopByte];
        }
    }
    return tables;
}

constexpr ChecksumTables kChecksumTables = MakeChecksumTables();

std::uint32_t Checksum(std::span<const std::byte> bytes) {
    std::uint32_t crc = 0;
    std::size_t i = 0;
    const auto at = [&](std::size_t index) { return std::to_integer<std::uint32_t>(bytes[index]); };
    for (; i + kTables <= bytes.size(); i += kTables) {
        crc ^= at(i) << 24U | at(i + 1) << 16U | at(i + 2) << 8U | at(i + 3);
        crc = kChecksumTables[3][crc >> 24U] ^ kChecksumTables[2][(crc >> 16U) & 255U] ^
              kChecksumTables[1][(crc >> 8U) & 255U] ^ kChecksumTables[0][crc & 255U];
    }
    for (; i < bytes.size(); ++i) crc = (crc << kBitsOfByte) ^ kChecksumTables[0][(crc >> kToTopByte) ^ at(i)];
    return crc;
}

std::string_view FindOggFault(ByteSource& source) {
    static constexpr std::string_view kDamaged = "it is damaged";
    std::vector<std::byte> page;
    std::int64_t offset = 0;
    std::uint32_t serial = 0;
    std::uint32_t sequence = 0;
    int packets = 0;
    bool isInPacket = false;
    bool hasEnded = false;
    while (offset < source.Size()) {
        page.resize(kLongestHeaderBytes);
        const std::size_t available = source.ReadAt(offset, page);
        if (available < kPageHeaderBytes || !HasTag(page.data(), "OggS"))
            return hasEnded ? kDamaged : "its end is missing";
        const auto flags = std::to_integer<unsigned>(page[kPageFlagsAt]);
        const bool isFirst = offset == 0;
        if (isFirst) serial = LittleEndian32(&page[kPageSerialAt]);
        if (hasEnded || ((flags & kPageIsFirst) != 0) != isFirst || LittleEndian32(&page[kPageSerialAt]) != serial) {
            return "it holds more than one stream";
        }
        const auto segments = std::to_integer<std::size_t>(page[kPageSegmentsAt]);
        std::size_t size = kPageHeaderBytes + segments;
        if (available < size) return "its end is missing";
        const std::size_t body = size;
        for (std::size_t i = 0; i < segments; ++i) size += std::to_integer<std::size_t>(page[kPageHeaderBytes + i]);
        page.resize(size);
        if (source.ReadAt(offset, page) < size) return "its end is missing";

        const std::uint32_t checksum = LittleEndian32(&page[kPageChecksumAt]);
        std::memset(&page[kPageChecksumAt], 0, kPageChecksumBytes);
        if (Checksum({page.data(), size}) != checksum || LittleEndian32(&page[kPageSequenceAt]) != sequence ||
            ((flags & kPageIsContinued) != 0) != isInPacket) {
            return kDamaged;
        }
        if (isFirst && (size < body + kVorbisTag.size() || !HasTag(&page[body], kVorbisTag))) return "it is no Vorbis";

        std::size_t at = body;
        for (std::size_t i = 0; i < segments; ++i) {
            const auto length = std::to_integer<std::size_t>(page[kPageHeaderBytes + i]);
            if (!isInPacket) {
                const bool isHeader = ++packets <= kVorbisHeaderPackets;
                const bool isOdd = length > 0 && (page[at] & std::byte{1}) != std::byte{0};
                if (isHeader != isOdd) return kDamaged;
            }
            at += length;
            isInPacket = length == kFullSegment;
        }
        hasEnded = (flags & kPageIsLast) != 0;
        ++sequence;
        offset += static_cast<std::int64_t>(size);
    }
    return hasEnded && !isInPacket && packets > kVorbisHeaderPackets ? "" : "its end is missing";
}

}  // namespace

std::string_view FindFramingFault(ByteSource& source) {
    std::array<std::byte, kRiffHeaderBytes> start;
    if (source.Size() == 0) return "it is empty";
    if (source.ReadAt(0, start) == start.size()) {
        constexpr std::size_t kFormTypeAt = 8;
        if (HasTag(start.data(), "RIFF") && HasTag(&start[kFormTypeAt], "WAVE")) return FindWavFault(source);
        if (HasTag(start.data(), "OggS")) return FindOggFault(source);
        if (HasTag(start.data(), "fLaC")) return "";
    }
    return "it is neither WAV nor Ogg Vorbis nor FLAC";
}

}  // namespace host
