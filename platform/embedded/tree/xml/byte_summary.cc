#include "platform/embedded/tree/xml/byte_summary.h"

#include <algorithm>

namespace orvaneplatform {
namespace {

// The number of bytes in a block: few enough for a byte to count their tags, which have at least
// two bytes. Text with more of them, as "<<<", is not well-formed: the parser refuses it.
constexpr std::size_t kBlockBytes = 448;

// A byte for each result. Without branches, so that the compiler generates vector code.
struct BlockSummary {
  unsigned char control = 0;
  unsigned char any = 0;
  unsigned char ampersand = 0;
  unsigned char quote = 0;
  unsigned char markup = 0;
  unsigned char starts = 0;  // start tags
  unsigned char ends = 0;    // end tags

  [[gnu::always_inline]] void note(unsigned char code, char previous) {
    const bool tag = previous == '<';
    control |= (code < 0x20) & (code != '\t') & (code != '\n') & (code != '\r');
    any |= code;
    ampersand |= code == '&';
    quote |= (code == '"') | (code == '\'');
    markup |= tag & ((code == '!') | (code == '?'));
    starts = static_cast<unsigned char>(starts + (tag & (code != '/')));
    ends = static_cast<unsigned char>(ends + (tag & (code == '/')));
  }
};

// Summarizes the bytes from `at` to `end`.
[[gnu::always_inline]] inline BlockSummary summarize_block(std::string_view bytes, std::size_t at,
                                                           std::size_t end) {
  BlockSummary block;
  if (at == 0) {
    block.note(static_cast<unsigned char>(bytes[at++]), '\0');
  }
  for (; at < end; ++at) {
    block.note(static_cast<unsigned char>(bytes[at]), bytes[at - 1]);
  }
  return block;
}

[[gnu::always_inline]] inline ByteSummary summarize_blocks(std::string_view bytes) {
  ByteSummary summary;
  int depth = 0;
  for (std::size_t at = 0; at < bytes.size(); at += kBlockBytes) {
    const BlockSummary block = summarize_block(bytes, at, std::min(at + kBlockBytes, bytes.size()));
    summary.control |= block.control != 0;
    summary.non_ascii |= (block.any & 0x80) != 0;
    summary.ampersand |= block.ampersand != 0;
    summary.quote |= block.quote != 0;
    summary.markup |= block.markup != 0;
    summary.depth_bound = std::max(summary.depth_bound, depth + block.starts);
    depth += block.starts - block.ends;
  }
  return summary;
}

#ifdef __x86_64__
// The same, compiled for vectors of twice the size.
[[gnu::target("avx2")]] ByteSummary summarize_wide(std::string_view bytes) {
  return summarize_blocks(bytes);
}
#endif

}  // namespace

ByteSummary summarize(std::string_view bytes) {
#ifdef __x86_64__
  if (__builtin_cpu_supports("avx2")) {
    return summarize_wide(bytes);
  }
#endif
  return summarize_blocks(bytes);
}

}  // namespace orvaneplatform
