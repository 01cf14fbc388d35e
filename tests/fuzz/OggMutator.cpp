#include "OggMutator.h"

#include <ogg/ogg.h>

#include <cstring>
#include <numeric>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);

namespace {

// A page is a header of 27 bytes, as many lengths as its last byte says, and the bytes of those lengths together:
// RFC 3533, 6.
constexpr std::size_t kFixedHeaderBytes = 27;
constexpr std::size_t kSegmentsAt = 26;

}  // namespace

void MendOggChecksums(std::uint8_t* data, std::size_t size) {
    for (std::size_t at = 0; at + kFixedHeaderBytes <= size; ++at) {
        if (std::memcmp(data + at, "OggS", 4) != 0) continue;
        const std::size_t segments = data[at + kSegmentsAt];
        const std::size_t header = kFixedHeaderBytes + segments;
        if (at + header > size) return;
        const std::size_t body = std::accumulate(data + at + kFixedHeaderBytes, data + at + header, std::size_t{0});
        if (at + header + body > size) return;
        ogg_page page{};
        page.header = data + at;
        page.header_len = static_cast<long>(header);
        page.body = data + at + header;
        page.body_len = static_cast<long>(body);
        ogg_page_checksum_set(&page);
        at += header + body - 1;
    }
}

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t maxSize,
                                               unsigned int seed) {
    const std::size_t mutated = LLVMFuzzerMutate(data, size, maxSize);
    // Some stay damaged, which must be seen, too.
    constexpr unsigned kDamagedOneIn = 16;
    if (seed % kDamagedOneIn != 0) MendOggChecksums(data, mutated);
    return mutated;
}
