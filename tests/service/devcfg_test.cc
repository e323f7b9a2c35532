#include <gtest/gtest.h>

#include <array>

#include "foundation/split.h"
#include "tests/support/process.h"

namespace {

// Runs devcfg with `arguments`, separated by commas, on the stand-in platform; `input` is standard
// input and the stand-in's answer (a status word or an address list). Exit status, standard output
// and standard error, in one text.
std::string run(const std::string& arguments, const std::string& input) {
  const test::Outcome outcome =
      test::run(ORVANEIP_DEVCFG, split(arguments, ','), input,
                {"LD_PRELOAD=" STAND_IN, "ASAN_OPTIONS=verify_asan_link_order=0",
                 "STAND_IN_ANSWER=" + input});
  return std::to_string(outcome.exit_status) + "\n" + outcome.output + outcome.errors;
}

}  // namespace

TEST(Devcfg, Table) {
  const std::string manager = "\n<" ORVANEIP_ROOT "/usr/bin/kdevmgmt>";
  const std::string frame("\xF8\3\0\0\0\1AB\x84\xF9", 10);
  // Arguments, input and outcome.
  const std::array<std::string, 3> kRows[] = {
      {"service,load,a b; $(id)", "0", "0" + manager + "<dev_load><a b; $(id)>"},
      {"service,unload,d", "768",
       "1" + manager + "<dev_unload><d>devcfg: the command ended with exit status 3\n"},
      {"service,reload", "9",
       "1" + manager +
           "<dev_reload_all>devcfg: the command could not be run, or was ended by a signal "
           "(--log tells why)\n"},
      {"service,load,,", "0", "0" + manager + "<dev_load><>"},
      {"net,--json", "1.2.3.4,10.0.0.25",
       "0\n{\n  \"ip\": \"10.0.0.25\",\n  \"share_value_1\": 8000,\n  \"app_value\": 9000,\n"
       "  \"share_value_2\": 8443\n}\n"},
      {"net", "",
       "1\ndevcfg: no network information: the platform's address list is empty (result "
       "-1006173180)\n"},
      {"frame,encode,--hex", "\1AB",
       "0\n00000000  f8 03 00 00 00 01 41 42 84 f9                    |......AB..|\n"},
      {"frame,decode,--hex", "ab" + frame + "c",
       "1\nframe at offset 2, payload of 3 bytes\n"
       "00000000  01 41 42                                         |.AB|\n"
       "devcfg: skipped 2 bytes at offset 0\n"
       "devcfg: skipped 1 byte at offset 12\n"
       "devcfg: the stream is damaged: 3 bytes skipped\n"},
  };
  for (const auto& [arguments, input, outcome] : kRows) {
    EXPECT_EQ(run(arguments, input), outcome) << arguments;
  }
}

TEST(Devcfg, DecodesWhatItEncoded) {
  for (const std::size_t size : {0U, 65536U, 65537U, 1048576U}) {
    const std::string large(size, '\xF8');
    const std::string made = test::run(ORVANEIP_DEVCFG, {"frame", "encode"}, large).output;
    const test::Outcome decoded = test::run(ORVANEIP_DEVCFG, {"frame", "decode"}, made + made);
    EXPECT_EQ(decoded.exit_status, 0);
    EXPECT_TRUE(decoded.output == large + large) << size;
  }
}
