#include "backend/cairo/PixelScaling.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <span>
#include <vector>

namespace host {

namespace {

// The weights of a target pixel add up to this, so that a sum of weighted 8-bit channels fits into 16 bits.
constexpr unsigned kWholeWeight = 256;
constexpr int kWeightBits = 8;

// A pixel's four channels side by side in one number, 16 bits each: one multiplication weighs all four.
using Lanes = std::uint64_t;
constexpr Lanes kLaneBytes = 0x00ff00ff00ff00ff;
constexpr Lanes kHalfInEachLane = 0x0080008000800080;
constexpr int kUpperPairShift = 24;

Lanes Spread(const unsigned char* pixel) {
    const std::uint32_t value = LoadPixel(pixel);
    return ((Lanes{value} << kUpperPairShift) | value) & kLaneBytes;
}

Lanes DivideByWhole(Lanes sum) {
    return (sum + kHalfInEachLane) >> kWeightBits & kLaneBytes;
}

void Store(Lanes lanes, unsigned char* pixel) {
    StorePixel(static_cast<std::uint32_t>(lanes | lanes >> kUpperPairShift), pixel);
}

/// Which source pixels, in which part, a pixel of the target is made of, along one axis.
class Axis {
public:
    Axis(int from, int to) {
        const double ratio = static_cast<double>(from) / to;
        for (int i = 0; i < to; ++i) {
            // When enlarging, one source pixel's width around the middle: that is the linear interpolation.
            const double middle = (i + 0.5) * ratio;
            const double reach = std::max(ratio, 1.0) / 2;
            AddTarget(middle - reach, middle + reach, from);
        }
        begins_.push_back(weights_.size());
    }

    [[nodiscard]] std::size_t First(std::size_t target) const { return firsts_[target]; }
    [[nodiscard]] std::span<const std::uint16_t> Weights(std::size_t target) const {
        return std::span(weights_).subspan(begins_[target], begins_[target + 1] - begins_[target]);
    }

private:
    /// `left` and `right` are the ends of the stretch that the target pixel covers; what is beyond the picture's edge
    /// counts as the pixel at the edge.
    void AddTarget(double left, double right, int from) {
        const int first = std::clamp(static_cast<int>(std::floor(left)), 0, from - 1);
        const int last = std::clamp(static_cast<int>(std::ceil(right)) - 1, first, from - 1);
        firsts_.push_back(static_cast<std::size_t>(first));
        begins_.push_back(weights_.size());
        // Rounding the running sum, not the single weight, keeps the whole whole.
        unsigned given = 0;
        for (int source = first; source <= last; ++source) {
            const double covered = source == last ? 1.0 : (source + 1 - left) / (right - left);
            const auto sum = static_cast<unsigned>(std::lround(covered * kWholeWeight));
            weights_.push_back(static_cast<std::uint16_t>(sum - given));
            given = sum;
        }
    }

    std::vector<std::size_t> firsts_;
    std::vector<std::size_t> begins_;  ///< where a target's weights begin, and the end of the last one's
    std::vector<std::uint16_t> weights_;
};

}  // namespace

void ScalePixels(const PixelRows& from, const PixelRows& to) {
    const Axis columns(from.size.width, to.size.width);
    const Axis rows(from.size.height, to.size.height);
    const auto fromWidth = static_cast<std::size_t>(from.size.width);
    const auto toWidth = static_cast<std::size_t>(to.size.width);
    std::vector<Lanes> row(fromWidth);

    for (std::size_t y = 0; y < static_cast<std::size_t>(to.size.height); ++y) {
        std::fill(row.begin(), row.end(), 0);
        const unsigned char* source = from.data + rows.First(y) * from.stride;
        for (const Lanes weight : rows.Weights(y)) {
            for (std::size_t x = 0; x < fromWidth; ++x) row[x] += weight * Spread(source + x * kPixelBytes);
            source += from.stride;
        }
        for (Lanes& pixel : row) pixel = DivideByWhole(pixel);

        unsigned char* const target = to.data + y * to.stride;
        for (std::size_t x = 0; x < toWidth; ++x) {
            const Lanes* pixel = row.data() + columns.First(x);
            Lanes sum = 0;
            for (const Lanes weight : columns.Weights(x)) sum += weight * *pixel++;
            Store(DivideByWhole(sum), target + x * kPixelBytes);
        }
    }
}

}  // namespace host
