#include "runtime/soundfile/OggFraming.h"

#include <ogg/ogg.h>
#include <vorbis/codec.h>

namespace host {

namespace {

constexpr std::string_view kDamaged = "it is damaged";
constexpr std::string_view kCut = "its end is missing";

// A Vorbis stream begins with three packets of headers: Xiph.Org, "Vorbis I", 4.2.
constexpr int kHeaderPackets = 3;

// The sound of a packet and the one before it overlap: together they complete a quarter of both their lengths
// ("Vorbis I", 4.3.8).
constexpr long kOverlap = 4;

/// Follows one Vorbis stream page by page. The pages' checksums and numbers tell damage and gaps. The lengths of the
/// packets, which stand in their first bits, tell how many frames the decoder will make.
class OggStream {
public:
    OggStream() {
        ogg_sync_init(&sync_);
        vorbis_info_init(&info_);
        vorbis_comment_init(&comment_);
    }
    ~OggStream() {
        if (pages_ > 0) ogg_stream_clear(&stream_);
        vorbis_comment_clear(&comment_);
        vorbis_info_clear(&info_);
        ogg_sync_clear(&sync_);
    }
    OggStream(const OggStream&) = delete;
    OggStream& operator=(const OggStream&) = delete;

    [[nodiscard]] Framing Examine(ByteSource& source);

private:
    [[nodiscard]] std::string_view TakePage(ogg_page& page);
    [[nodiscard]] std::string_view TakePacket(ogg_packet& packet);
    void CompareFrames(const ogg_packet& packet);
    [[nodiscard]] std::vector<std::string> Comments() const;

    ogg_sync_state sync_{};
    ogg_stream_state stream_{};
    vorbis_info info_{};
    vorbis_comment comment_{};
    long pages_ = 0;
    int headers_ = 0;
    bool isInPacket_ = false;  ///< the last page ended within a packet
    bool hasEnded_ = false;
    long lastBlock_ = 0;              ///< the last packet's length in frames; 0 before the first one
    ogg_int64_t frames_ = 0;          ///< what the packets so far decode to
    ogg_int64_t framesPromised_ = 0;  ///< what the pages so far say that they decode to
    bool areFramesAsPromised_ = true;
};

Framing OggStream::Examine(ByteSource& source) {
    constexpr long kBytesAtOnce = 65536;
    for (std::int64_t offset = 0; offset < source.Size();) {
        auto* bytes = reinterpret_cast<std::byte*>(ogg_sync_buffer(&sync_, kBytesAtOnce));
        const std::size_t count = source.ReadAt(offset, {bytes, static_cast<std::size_t>(kBytesAtOnce)});
        if (count == 0) return {kCut};
        offset += static_cast<std::int64_t>(count);
        ogg_sync_wrote(&sync_, static_cast<long>(count));
        ogg_page page;
        // Negative where bytes had to be skipped to find a page.
        while (const long size = ogg_sync_pageseek(&sync_, &page)) {
            if (size < 0) return {kDamaged};
            if (const std::string_view fault = TakePage(page); !fault.empty()) return {fault};
        }
    }
    const bool hasRest = sync_.fill > sync_.returned;
    if (hasRest || !hasEnded_ || isInPacket_ || lastBlock_ == 0) return {kCut};
    return {"", areFramesAsPromised_, Comments()};
}

std::vector<std::string> OggStream::Comments() const {
    std::vector<std::string> comments;
    comments.reserve(static_cast<std::size_t>(comment_.comments));
    for (int i = 0; i < comment_.comments; ++i) {
        comments.emplace_back(comment_.user_comments[i], static_cast<std::size_t>(comment_.comment_lengths[i]));
    }
    return comments;
}

std::string_view OggStream::TakePage(ogg_page& page) {
    const long number = pages_++;
    const bool isFirst = number == 0;
    if (isFirst) ogg_stream_init(&stream_, ogg_page_serialno(&page));
    if (hasEnded_ || (ogg_page_bos(&page) != 0) != isFirst || ogg_page_serialno(&page) != stream_.serialno) {
        return "it holds more than one stream";
    }
    if (ogg_page_pageno(&page) != number || (ogg_page_continued(&page) != 0) != isInPacket_) return kDamaged;
    hasEnded_ = ogg_page_eos(&page) != 0;
    constexpr unsigned char kGoesOn = 255;
    isInPacket_ = page.header_len > 0 && page.header[page.header_len - 1] == kGoesOn;
    if (ogg_stream_pagein(&stream_, &page) != 0) return kDamaged;
    ogg_packet packet;
    while (const int outcome = ogg_stream_packetout(&stream_, &packet)) {
        if (outcome < 0) return kDamaged;
        if (const std::string_view fault = TakePacket(packet); !fault.empty()) return fault;
    }
    return "";
}

std::string_view OggStream::TakePacket(ogg_packet& packet) {
    if (headers_ < kHeaderPackets) {
        if (headers_ == 0 && vorbis_synthesis_idheader(&packet) == 0) return "it is no Vorbis";
        ++headers_;
        return vorbis_synthesis_headerin(&info_, &comment_, &packet) == 0 ? "" : kDamaged;
    }
    const long block = vorbis_packet_blocksize(&info_, &packet);
    if (block <= 0) return kDamaged;
    if (lastBlock_ > 0) frames_ += (lastBlock_ + block) / kOverlap;
    lastBlock_ = block;
    CompareFrames(packet);
    return "";
}

// The last packet of a page tells how many frames there are up to its end. The stream's last one may tell fewer than
// its packets hold, since a sound need not end with a packet.
void OggStream::CompareFrames(const ogg_packet& packet) {
    constexpr ogg_int64_t kUntold = -1;
    if (packet.granulepos == kUntold) return;
    const bool isTrue = packet.e_o_s != 0 ? packet.granulepos <= frames_ && packet.granulepos >= framesPromised_
                                          : packet.granulepos == frames_;
    areFramesAsPromised_ = areFramesAsPromised_ && isTrue;
    framesPromised_ = packet.granulepos;
}

}  // namespace

Framing ExamineOggFraming(ByteSource& source) {
    return OggStream().Examine(source);
}

}  // namespace host
