#include "runtime/soundfile/VorbisWriter.h"

#include <vorbis/vorbisenc.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>
#include <vector>

namespace host {

namespace {

// Of -0.1..1; transparent for a single wind instrument.
constexpr float kQuality = 0.6F;
// Only what is chained or multiplexed needs different ones.
constexpr int kSerialNumber = 1;
// The encoder is handed over so many frames at once.
constexpr std::size_t kFramesAtOnce = 1024;

}  // namespace

struct VorbisWriter::Encoder {
    explicit Encoder(int rate) {
        vorbis_info_init(&info);
        vorbis_comment_init(&comment);
        isWorking = vorbis_encode_init_vbr(&info, 1, rate, kQuality) == 0;
        if (!isWorking) return;
        vorbis_analysis_init(&state, &info);
        vorbis_block_init(&state, &block);
        ogg_stream_init(&stream, kSerialNumber);
        std::array<ogg_packet, 3> headers{};
        vorbis_analysis_headerout(&state, &comment, &headers[0], &headers[1], &headers[2]);
        for (ogg_packet& header : headers) ogg_stream_packetin(&stream, &header);
    }
    ~Encoder() {
        if (isWorking) {
            ogg_stream_clear(&stream);
            vorbis_block_clear(&block);
            vorbis_dsp_clear(&state);
        }
        vorbis_comment_clear(&comment);
        vorbis_info_clear(&info);
    }
    Encoder(const Encoder&) = delete;
    Encoder& operator=(const Encoder&) = delete;

    vorbis_info info{};
    vorbis_comment comment{};
    vorbis_dsp_state state{};
    vorbis_block block{};
    ogg_stream_state stream{};
    bool isWorking = false;
};

VorbisWriter::VorbisWriter(std::unique_ptr<OutputFile> file, int rate)
    : encoder_(std::make_unique<Encoder>(rate)), file_(std::move(file)), isFull_(!encoder_->isWorking) {
    if (!isFull_) WritePages();  // The headers have pages of their own.
}

VorbisWriter::~VorbisWriter() = default;

bool VorbisWriter::Write(std::span<const float> frames) {
    while (!isFull_ && !frames.empty()) {
        const auto piece = frames.first(std::min(frames.size(), kFramesAtOnce));
        float* const room = vorbis_analysis_buffer(&encoder_->state, static_cast<int>(piece.size()))[0];
        std::transform(piece.begin(), piece.end(), room, [](float frame) { return std::clamp(frame, -1.0F, 1.0F); });
        vorbis_analysis_wrote(&encoder_->state, static_cast<int>(piece.size()));
        frames = frames.subspan(piece.size());
        if (frames.empty()) WritePages();
    }
    return !isFull_;
}

bool VorbisWriter::Close() {
    if (!isFull_) {
        vorbis_analysis_wrote(&encoder_->state, 0);  // The end.
        WritePages();
    }
    return file_->Close() && !isFull_;
}

std::string VorbisWriter::Problem() const {
    return file_->Problem().empty() ? "it cannot be encoded" : file_->Problem();
}

void VorbisWriter::WritePages() {
    ogg_packet packet;
    while (vorbis_analysis_blockout(&encoder_->state, &encoder_->block) == 1) {
        vorbis_analysis(&encoder_->block, nullptr);
        vorbis_bitrate_addblock(&encoder_->block);
        while (vorbis_bitrate_flushpacket(&encoder_->state, &packet) == 1) {
            ogg_stream_packetin(&encoder_->stream, &packet);
        }
    }
    ogg_page page;
    while (!isFull_ && ogg_stream_flush(&encoder_->stream, &page) != 0) {
        std::vector<unsigned char> bytes(page.header, page.header + page.header_len);
        bytes.insert(bytes.end(), page.body, page.body + page.body_len);
        isFull_ = !file_->Append(std::as_bytes(std::span(bytes)));
    }
}

}  // namespace host
