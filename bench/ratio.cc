#include "bench/ratio.h"

#include <cstdio>
#include <cstdlib>
#include <regex>

namespace bench {
namespace {

std::vector<Ratio>& registered() {
  static std::vector<Ratio> all;
  return all;
}

}  // namespace

void expect_ratio(std::string name, std::string reference, std::optional<double> aim) {
  registered().push_back({std::move(name), std::move(reference), aim});
}

const std::vector<Ratio>& ratios() { return registered(); }

std::vector<Ratio> matching_ratios(const std::string& filter) {
  if (filter.empty() || filter == "all") {
    return ratios();
  }
  const bool is_negative = filter.front() == '-';
  const std::regex expression(filter.substr(is_negative ? 1 : 0));
  std::vector<Ratio> matching;
  for (const Ratio& ratio : ratios()) {
    const bool matches =
        std::regex_search(ratio.name, expression) || std::regex_search(ratio.reference, expression);
    if (matches != is_negative) {
      matching.push_back(ratio);
    }
  }
  return matching;
}

void require(bool right, const char* what) {
  if (!right) {
    std::fprintf(stderr, "orvaneip_bench: check failed: %s\n", what);
    std::exit(1);
  }
}

}  // namespace bench
