// The windows of libvorbis, computed where the library has them as tables of 32 kB that no packing makes smaller. The
// names are those of its internal header window.h.
#include <array>
#include <cmath>
#include <cstdlib>
#include <numbers>
#include <vector>

extern "C" {

// The rising half of the window of 64 << `size` frames: Xiph.Org, "Vorbis I specification", 1.3.2. It lives as long as
// the program. One thread.
const float* _vorbis_window_get(int size) {  // NOLINT(bugprone-reserved-identifier)
    constexpr int kSizes = 8;
    constexpr std::size_t kShortestHalf = 32;
    static std::array<std::vector<float>, kSizes> halves;
    std::vector<float>& half = halves[static_cast<std::size_t>(size)];
    if (!half.empty()) return half.data();
    half.resize(kShortestHalf << size);
    constexpr double kQuarterTurn = std::numbers::pi / 2;
    for (std::size_t frame = 0; frame < half.size(); ++frame) {
        const double place = (static_cast<double>(frame) + 0.5) / static_cast<double>(half.size());
        const double sine = std::sin(place * kQuarterTurn);
        half[frame] = static_cast<float>(std::sin(kQuarterTurn * sine * sine));
    }
    return half.data();
}

// Only the encoder asks for it, and there is none.
void _vorbis_apply_window(float*, int*, long*, int, int, int) {  // NOLINT(bugprone-reserved-identifier)
    std::abort();
}
}
