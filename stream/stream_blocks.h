#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace vessa {

/// Host streams are packed and unpacked in blocks of what one host string holds.
inline constexpr std::size_t kPackBlockBytes = 32767;

/// The version of zlib that the calls are written for; zlib itself refuses those of another major version.
inline constexpr const char* kZlibVersion = "1.2.13";

using PackBlock = std::array<std::uint8_t, kPackBlockBytes>;

/// Reads the next block with the host method `Read`, into storage of our own: the host may reuse its bytes at
/// the next callin, while zlib still reads them. What is left of the block is filled with zeros.
/// @return  bytes read; 0 at the end of the stream
/// @throws Status  the host failed, or gave more bytes than were asked for
std::size_t ReadBlock(std::uint32_t oref, PackBlock& block);

/// Hands bytes, possibly none, to the host method `Write`.
/// @throws Status  the host failed
void WriteBlock(std::uint32_t oref, std::span<const std::uint8_t> bytes);

}  // namespace vessa
