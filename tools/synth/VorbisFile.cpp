#include "VorbisFile.h"

#include <vorbis/vorbisenc.h>
#include <algorithm>
#include <fstream>
#include <stdexcept>

namespace synth {
namespace {

constexpr float kQuality = 0.9F;            // of 0 to 1
constexpr double kHighestKilohertz = 16.0;  // above it there is nothing to be heard, and bits are better spent below
constexpr std::size_t kFramesAtOnce = 1024;

// The encoder's own objects, in the order in which they depend on each other.
class Encoder {
public:
    Encoder(const std::string& path, const std::vector<std::string>& comments, int serial)
        : path_(path), file_(path, std::ios::binary | std::ios::trunc) {
        vorbis_info_init(&info_);
        vorbis_comment_init(&comment_);
        double highest = kHighestKilohertz;
        if (vorbis_encode_setup_vbr(&info_, 1, static_cast<long>(kRate), kQuality) != 0 ||
            vorbis_encode_ctl(&info_, OV_ECTL_LOWPASS_SET, &highest) != 0 || vorbis_encode_setup_init(&info_) != 0) {
            throw std::runtime_error(path + ": the encoder does not take these settings");
        }
        for (const std::string& comment : comments) {
            vorbis_comment_add(&comment_, comment.c_str());
        }
        vorbis_analysis_init(&state_, &info_);
        vorbis_block_init(&state_, &block_);
        ogg_stream_init(&stream_, serial);

        ogg_packet headers[3];
        vorbis_analysis_headerout(&state_, &comment_, &headers[0], &headers[1], &headers[2]);
        for (ogg_packet& header : headers) {
            ogg_stream_packetin(&stream_, &header);
        }
        ogg_page page;
        while (ogg_stream_flush(&stream_, &page) != 0) {
            Put(page);
        }
    }
    ~Encoder() {
        ogg_stream_clear(&stream_);
        vorbis_block_clear(&block_);
        vorbis_dsp_clear(&state_);
        vorbis_comment_clear(&comment_);
        vorbis_info_clear(&info_);
    }
    Encoder(const Encoder&) = delete;
    Encoder& operator=(const Encoder&) = delete;

    void Encode(const double* frames, std::size_t count) {
        float* const room = vorbis_analysis_buffer(&state_, static_cast<int>(count))[0];
        std::transform(frames, frames + count, room, [](double x) { return static_cast<float>(x); });
        TakeBlocks(count);
    }

    void Finish() {
        TakeBlocks(0);
        file_.close();
        if (!file_) {
            throw std::runtime_error(path_ + ": cannot be written");
        }
    }

private:
    // No frames are the end.
    void TakeBlocks(std::size_t frames) {
        vorbis_analysis_wrote(&state_, static_cast<int>(frames));
        while (vorbis_analysis_blockout(&state_, &block_) == 1) {
            vorbis_analysis(&block_, nullptr);
            vorbis_bitrate_addblock(&block_);
            ogg_packet packet;
            while (vorbis_bitrate_flushpacket(&state_, &packet) != 0) {
                ogg_stream_packetin(&stream_, &packet);
                ogg_page page;
                while (ogg_stream_pageout(&stream_, &page) != 0) {
                    Put(page);
                }
            }
        }
    }

    void Put(const ogg_page& page) {
        file_.write(reinterpret_cast<const char*>(page.header), page.header_len);
        file_.write(reinterpret_cast<const char*>(page.body), page.body_len);
    }

    std::string path_;
    std::ofstream file_;
    vorbis_info info_{};
    vorbis_comment comment_{};
    vorbis_dsp_state state_{};
    vorbis_block block_{};
    ogg_stream_state stream_{};
};

}  // namespace

void VorbisFile::Write(const std::string& path, const Loop& sound, const std::vector<std::string>& comments,
                       int serial) {
    Encoder encoder(path, comments, serial);
    for (std::size_t at = 0; at < sound.size(); at += kFramesAtOnce) {
        encoder.Encode(&sound[at], std::min(kFramesAtOnce, sound.size() - at));
    }
    encoder.Finish();
}

}  // namespace synth
