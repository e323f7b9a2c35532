#include "search/internal/search_text.h"

namespace orvaneip {
namespace {

std::string_view without_outer_spaces(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) {
    return text.substr(0, 0);
  }
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

}  // namespace

SearchText read_search_text(const char* input) {
  SearchText search;
  search.text = without_outer_spaces(input != nullptr ? input : "");
  if (const std::size_t first = search.text.find('"'); first != std::string::npos) {
    search.first_quote = static_cast<std::ptrdiff_t>(first);
    search.last_quote = static_cast<std::ptrdiff_t>(search.text.rfind('"'));
  }
  return search;
}

}  // namespace orvaneip
