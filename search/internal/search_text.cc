#include "search/internal/search_text.h"

#include "base/strings.h"

namespace orvaneip {

SearchText read_search_text(const char* input) {
  SearchText search;
  search.text = base::trim(input != nullptr ? input : "", " ");
  if (const std::size_t first = search.text.find('"'); first != std::string::npos) {
    search.first_quote = static_cast<std::ptrdiff_t>(first);
    search.last_quote = static_cast<std::ptrdiff_t>(search.text.rfind('"'));
  }
  return search;
}

}  // namespace orvaneip
