// A gap buffer: a text under replacement, with a gap at the place where it is changed.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <memory>
#include <new>
#include <string_view>

namespace orvaneip {

// The text is the bytes before the gap, where no occurrence can begin any more, and those after it,
// which are searched next and are terminated. Moving the gap costs the bytes that it passes, a
// replacement the bytes of the result; the rest of the text is moved when the gap is opened and
// closed, not at each replacement.
class GapBuffer {
 public:
  // Opens a gap at `offset` in the first `length` bytes of the terminated `text`: in place, or,
  // when the text is to grow by up to `growth` bytes, in a copy.
  GapBuffer(char* text, std::size_t length, std::size_t offset, std::size_t growth)
      : text_(text),
        copy_(growth > 0 ? new (std::nothrow) char[length + growth + 1] : nullptr),
        has_memory_(growth == 0 || copy_ != nullptr),
        start_(copy_ ? copy_.get() : text),
        gap_start_(start_ + offset),
        gap_end_(gap_start_ + (copy_ ? growth : 0)),
        rest_length_(length - offset) {
    if (copy_) {
      std::memcpy(start_, text, offset);
      std::memcpy(gap_end_, text + offset, rest_length_ + 1);
    }
  }

  // False: there was no memory for the copy, and the buffer must not be used.
  bool has_memory() const { return has_memory_; }

  // Returns the text after the gap.
  std::string_view rest() const { return {gap_end_, rest_length_}; }

  // Returns the length of the whole text.
  std::size_t length() const { return offset() + rest_length_; }

  // Moves the gap forward to `position`, which is in rest().
  void advance_to(const char* position) {
    const auto count = static_cast<std::size_t>(position - gap_end_);
    std::memmove(gap_start_, gap_end_, count);
    gap_start_ += count;
    drop(count);
  }

  // Moves the gap backward by `count` bytes, or to the start.
  void retreat(std::size_t count) {
    const std::size_t moved = std::min(count, offset());
    gap_start_ -= moved;
    gap_end_ -= moved;
    rest_length_ += moved;
    std::memmove(gap_end_, gap_start_, moved);
  }

  // Replaces the first `count` bytes after the gap by `result`.
  void replace(std::size_t count, std::string_view result) {
    drop(count);
    gap_end_ -= result.size();
    rest_length_ += result.size();
    std::memcpy(gap_end_, result.data(), result.size());
  }

  // Closes the gap, and puts the text back where it came from.
  void close() {
    if (copy_) {
      std::memcpy(text_, start_, offset());
    }
    std::memmove(text_ + offset(), gap_end_, rest_length_ + 1);
  }

 private:
  // Returns the number of bytes before the gap.
  std::size_t offset() const { return static_cast<std::size_t>(gap_start_ - start_); }

  void drop(std::size_t count) {
    gap_end_ += count;
    rest_length_ -= count;
  }

  char* text_;
  std::unique_ptr<char[]> copy_;
  bool has_memory_;
  char* start_;  // of the text with the gap
  char* gap_start_;
  char* gap_end_;
  std::size_t rest_length_;
};

}  // namespace orvaneip
