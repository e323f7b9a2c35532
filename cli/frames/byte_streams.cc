#include "cli/frames/byte_streams.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>

#include "cli/command_error.h"

namespace devcfg {
namespace {

constexpr std::size_t kChunkBytes = std::size_t{64} * 1024;
constexpr std::size_t kLineBytes = 16;

std::string hex_line(std::size_t offset, const unsigned char* bytes, std::size_t size_bytes) {
  char field[24];
  std::snprintf(field, sizeof(field), "%08zx ", offset);
  std::string line = field;
  std::string characters;
  for (std::size_t i = 0; i < size_bytes; ++i) {
    std::snprintf(field, sizeof(field), " %02x", bytes[i]);
    line += field;
    characters += bytes[i] >= 0x20 && bytes[i] < 0x7F ? static_cast<char>(bytes[i]) : '.';
  }
  line.append(3 * (kLineBytes - size_bytes), ' ');
  return line + "  |" + characters + "|\n";
}

}  // namespace

bool read_some(Bytes& bytes) {
  const std::size_t size = bytes.size();
  bytes.resize(size + kChunkBytes);
  ssize_t count = 0;
  do {
    count = read(STDIN_FILENO, bytes.data() + size, kChunkBytes);
  } while (count < 0 && errno == EINTR);
  if (count < 0) {
    throw CommandError(std::string("cannot read standard input: ") + strerrordesc_np(errno));
  }
  bytes.resize(size + static_cast<std::size_t>(count));
  return count > 0;
}

void write_bytes(const unsigned char* bytes, std::size_t size_bytes) {
  if (std::fwrite(bytes, 1, size_bytes, stdout) != size_bytes) {
    throw CommandError("cannot write to standard output");
  }
}

void write_hex_view(const unsigned char* bytes, std::size_t size_bytes) {
  for (std::size_t offset = 0; offset < size_bytes; offset += kLineBytes) {
    const std::string line =
        hex_line(offset, bytes + offset, std::min(kLineBytes, size_bytes - offset));
    write_bytes(reinterpret_cast<const unsigned char*>(line.data()), line.size());
  }
}

}  // namespace devcfg
