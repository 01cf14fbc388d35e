#include "measure/Fourier.h"

#include <cmath>
#include <utility>

namespace measure {

namespace {

constexpr double kPi = 3.14159265358979323846;

}  // namespace

// J. Cooley, J. Tukey, 1965.
void Transform(std::vector<Complex>& x) {
    for (std::size_t i = 1, j = 0; i < x.size(); ++i) {
        std::size_t bit = x.size() >> 1U;
        for (; (j & bit) != 0; bit >>= 1U) j ^= bit;
        j ^= bit;
        if (i < j) std::swap(x[i], x[j]);
    }
    for (std::size_t length = 2; length <= x.size(); length *= 2) {
        const Complex turn = std::polar(1.0, -2 * kPi / static_cast<double>(length));
        for (std::size_t from = 0; from < x.size(); from += length) {
            Complex at = 1;
            for (std::size_t i = from; i < from + length / 2; ++i, at *= turn) {
                const Complex other = x[i + length / 2] * at;
                x[i + length / 2] = x[i] - other;
                x[i] += other;
            }
        }
    }
}

double Hann(std::size_t i, std::size_t count) {
    return 0.5 - 0.5 * std::cos(2 * kPi * (static_cast<double>(i) + 0.5) / static_cast<double>(count));
}

}  // namespace measure
