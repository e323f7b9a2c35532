// The rule file as bytes of a file, and its rules applied to texts, against a plain search.
// Input: the file, then a text.
#include <algorithm>

#include "fuzz/fuzz.h"
#include "tests/support/config_files.h"

// Returns the result for the first device.
static int match_plainly(const std::string& text, char* output, std::size_t size,
                         const std::vector<dev_filter>& devices) {
  for (const filter& entry : devices[0].filter_list) {
    for (const rule& line : entry.rule_list) {
      const bool applies = text == line.target;
      if (entry.enable == 0 || line.enable == 0 || line.type < 0 || line.type > 2) {
        continue;
      }
      if (line.type == 0) {
        std::fill_n(output, size, '\0');
      }
      if (applies && line.type != 1) {
        std::snprintf(output, size - 1, "%s", line.type == 0 ? line.result : "\r\n");
      }
      if (applies) {
        return line.type + 1;
      }
    }
  }
  return 0;
}

static void match(std::string text, std::size_t size, const std::vector<dev_filter>& devices) {
  std::string expected(64, '#');
  std::string output = expected;
  const int result = match_plainly(text, expected.data(), size, devices);
  fuzz::require(devcfg_match_filters(text.c_str(), output.data(), static_cast<int>(size),
                                     devices[0].device_id, devices) == result,
                "the first rule that applies decides");
  fuzz::require(output == expected, "the output is that of the plain search");
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const test::ConfigFiles files;
  const auto texts = fuzz::texts_of(data, size, 2);
  test::write_file(files.rule_file(), texts[0]);
  std::vector<dev_filter> devices(1);
  fuzz::require(devcfg_get_filter_rules_list(devices) == 0 || devices.empty(),
                "a refused file gives no devices");
  if (!devices.empty()) {
    match(texts[1].c_str(), 8, devices);
    const std::vector<rule> rules = devices[0].filter_list.at(0).rule_list;
    for (std::size_t i = 0; i < rules.size() && i < 5; ++i) {
      match(rules[i].target, i + 1, devices);
    }
  }
  return 0;
}
