// Bytes from standard input and to standard output.
#pragma once

#include <cstddef>
#include <vector>

namespace devcfg {

using Bytes = std::vector<unsigned char>;

// Waits for bytes on standard input and appends those that are there. False at its end. Throws
// Refusal when it cannot be read.
bool read_some(Bytes& bytes);

// Writes bytes as they are, or as lines of 16: offset, hexadecimal digits, printable characters.
// Throws Refusal when they cannot be written.
void write_bytes(const unsigned char* bytes, std::size_t size_bytes);
void write_hex_view(const unsigned char* bytes, std::size_t size_bytes);

}  // namespace devcfg
