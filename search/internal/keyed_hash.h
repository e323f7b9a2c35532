// A hash of terms with a random key: nobody can choose terms that collide.
#pragma once

#include <sys/random.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace orvaneip {

// The polynomial over a prime field whose coefficients are the bytes of the term, seven at a time,
// at the key: two terms collide for at most as many keys as they have coefficients. Search text
// contains no NUL, so the last coefficient depends on the length of the term.
class KeyedHash {
 public:
  // Gives the hash a new random key. Needed before the first hash.
  void choose_key() {
    if (getrandom(&key_, sizeof(key_), GRND_NONBLOCK) != sizeof(key_)) {
      key_ = reinterpret_cast<std::uintptr_t>(&key_) * 0x9E3779B97F4A7C15u;
    }
    key_ = key_ % (kPrime - 2) + 2;
  }

  std::uint32_t operator()(std::string_view term) const {
    std::uint64_t hash = 0;
    for (; term.size() > kBlockBytes; term.remove_prefix(kBlockBytes)) {
      const std::uint64_t block = load<std::uint64_t>(term.data()) & ((std::uint64_t{1} << 56) - 1);
      hash = multiply(hash + block, key_);
    }
    hash = term.empty() ? hash : multiply(hash + last_block(term), key_);
    return static_cast<std::uint32_t>(hash);
  }

 private:
  __extension__ using Wide = unsigned __int128;

  static constexpr std::uint64_t kPrime = (std::uint64_t{1} << 61) - 1;
  static constexpr std::size_t kBlockBytes = 7;  // their number is less than the prime

  // Returns a number below 2^63, congruent to the product. `left` is below 2^63.
  static std::uint64_t multiply(std::uint64_t left, std::uint64_t right) {
    const Wide product = static_cast<Wide>(left) * right;
    return (static_cast<std::uint64_t>(product) & kPrime) +
           static_cast<std::uint64_t>(product >> 61);
  }

  template <typename Number>
  static std::uint64_t load(const char* bytes) {
    Number number;
    std::memcpy(&number, bytes, sizeof(number));
    return number;
  }

  // Returns the 1 to 7 bytes as one number, which differs for different bytes.
  static std::uint64_t last_block(std::string_view bytes) {
    const char* const start = bytes.data();
    const std::size_t size = bytes.size();
    if (size >= 4) {
      return load<std::uint32_t>(start) | load<std::uint32_t>(start + size - 4) << (8 * (size - 4));
    }
    return load<std::uint8_t>(start) | load<std::uint8_t>(start + size / 2) << (8 * (size / 2)) |
           load<std::uint8_t>(start + size - 1) << (8 * (size - 1));
  }

  std::uint64_t key_ = 0;
};

}  // namespace orvaneip
