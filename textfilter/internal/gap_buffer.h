// A text under replacement: what is done at its front, what is not at its back, a gap between them.
#pragma once

#include <cstddef>
#include <cstring>
#include <memory>
#include <new>
#include <string_view>

namespace orvaneip {

// The back starts where the next search does, and is terminated. Moving the border costs the bytes
// between the two places, a replacement at the border costs those of the result; the rest of the
// text is moved when the gap is opened and closed, not at each replacement.
class GapText {
 public:
  // Takes `length` bytes of the terminated `text` apart at `border`: in place, or, when it is to
  // grow by up to `growth` bytes, in memory of its own.
  GapText(char* text, std::size_t length, std::size_t border, std::size_t growth)
      : text_(text),
        work_(growth > 0 ? new (std::nothrow) char[length + growth + 1] : nullptr),
        has_memory_(growth == 0 || work_ != nullptr),
        front_(work_ ? work_.get() : text),
        front_end_(front_ + border),
        back_(front_end_ + (work_ ? growth : 0)),
        back_length_(length - border) {
    if (work_) {
      std::memcpy(front_, text, border);
      std::memcpy(back_, text + border, back_length_ + 1);
    }
  }

  // False: the memory was not to be had, and this must be thrown away.
  bool has_memory() const { return has_memory_; }

  std::string_view back() const { return {back_, back_length_}; }
  std::size_t length() const { return front_length() + back_length_; }

  // Moves the border to `place`, which is in the back.
  void advance(const char* place) {
    const auto count = static_cast<std::size_t>(place - back_);
    std::memmove(front_end_, back_, count);
    front_end_ += count;
    drop(count);
  }

  // Moves the border back by `count` bytes, or to the start.
  void retreat(std::size_t count) {
    const std::size_t moved = count < front_length() ? count : front_length();
    front_end_ -= moved;
    back_ -= moved;
    back_length_ += moved;
    std::memmove(back_, front_end_, moved);
  }

  // Puts `result` in the place of the first `count` bytes of the back.
  void replace(std::size_t count, std::string_view result) {
    drop(count);
    put(result);
  }

  // Puts the text together again where it came from.
  void close() {
    if (work_) {
      std::memcpy(text_, front_, front_length());
    }
    std::memmove(text_ + front_length(), back_, back_length_ + 1);
  }

 private:
  std::size_t front_length() const { return static_cast<std::size_t>(front_end_ - front_); }

  void drop(std::size_t count) {
    back_ += count;
    back_length_ -= count;
  }

  void put(std::string_view bytes) {
    back_ -= bytes.size();
    back_length_ += bytes.size();
    std::memcpy(back_, bytes.data(), bytes.size());
  }

  char* text_;
  std::unique_ptr<char[]> work_;
  bool has_memory_;
  char* front_;
  char* front_end_;
  char* back_;
  std::size_t back_length_;
};

}  // namespace orvaneip
