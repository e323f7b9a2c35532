// The rule file as bytes of a file, and its rules on texts, against a search by the letter.
// Input: the file, then a text.
#include "fuzz/fuzz.h"
#include "orvaneip.h"
#include "tests/support/config_files.h"

using Devices = std::vector<dev_filter>;

// The result for the first device; `output` is as large as the buffer.
static int match_plainly(const std::string& text, std::string& output, const Devices& devices) {
  for (const filter& entry : devices[0].filter_list) {
    for (const rule& line : entry.enable != 0 ? entry.rule_list : std::vector<rule>()) {
      const bool applies = text == line.target;
      if (line.enable == 0 || line.type < 0 || line.type > 2) {
        continue;
      }
      if (line.type == 0) {
        output.assign(output.size(), '\0');
      }
      if (applies && line.type != 1) {
        std::snprintf(output.data(), output.size() - 1, "%s",
                      line.type == 0 ? line.result : "\r\n");
      }
      if (applies) {
        return line.type + 1;
      }
    }
  }
  return 0;
}

static void match(std::string text, std::size_t size, Devices& devices) {
  std::string expected(size, '#');
  const int result = match_plainly(text, expected, devices);
  std::vector<char> output(size, '#');
  const int matched = devcfg_do_filtering(text.data(), 0, output.data(), static_cast<int>(size),
                                          devices[0].device_id, devices);
  fuzz::require(matched == result, "the first rule that applies decides");
  fuzz::require(std::string(output.begin(), output.end()) == expected, "nothing else is written");
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const test::ConfigFiles files;
  const auto texts = fuzz::texts_of(data, size, 2);
  test::write_file(files.rule_file(), texts[0]);
  Devices devices(1);
  const int result = devcfg_get_filter_rules_list(devices);
  fuzz::require(result == 0 || devices.empty(), "a file that is refused has no device");
  if (!devices.empty()) {
    match(texts[1].c_str(), 8, devices);
    const std::vector<rule> rules = devices[0].filter_list.at(0).rule_list;
    for (std::size_t i = 0; i < rules.size() && i < 5; ++i) {
      match(rules[i].target, i + 1, devices);
    }
  }
  return 0;
}
