#pragma once

#include <complex>
#include <cstddef>
#include <vector>

namespace measure {

using Complex = std::complex<double>;

/// The Fourier transform in place, of as many values as a power of two.
void Transform(std::vector<Complex>& x);

/// The i-th weight of a Hann window over so many values.
double Hann(std::size_t i, std::size_t count);

}  // namespace measure
