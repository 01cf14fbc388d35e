#pragma once

#include <cstddef>
#include <cstdint>

/// Gives every Ogg page among the bytes the checksum that it should have. Without that a mutated recording is refused
/// for its checksum, and nothing behind it is ever tried.
void MendOggChecksums(std::uint8_t* data, std::size_t size);
