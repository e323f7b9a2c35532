// Bytes from standard input and to standard output.
#pragma once

#include <cstddef>
#include <vector>

namespace devcfg {

using Bytes = std::vector<unsigned char>;

// Waits for standard input and appends the bytes that are available. Returns false at its end.
// Throws CommandError when it cannot be read.
bool read_some(Bytes& bytes);

// Writes bytes as they are, or as lines of 16: offset, hexadecimal digits, printable characters.
// Throws CommandError when they cannot be written.
void write_bytes(const unsigned char* bytes, std::size_t size_bytes);
void write_hex_view(const unsigned char* bytes, std::size_t size_bytes);

}  // namespace devcfg
