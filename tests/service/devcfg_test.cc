#include <gtest/gtest.h>

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

std::string bytes(std::initializer_list<int> values) { return {values.begin(), values.end()}; }

}  // namespace

TEST(DevcfgService, RunsTheCommandAndTellsItsEnd) {
  const std::string manager = "<" ORVANEIP_ROOT "/usr/bin/kdevmgmt>";
  EXPECT_EQ(run("service,restart", "0"),
            "0\n<" ORVANEIP_ROOT "/etc/init.d/Kmetadatad.sh><restart>");
  EXPECT_EQ(run("service,reload", "0"), "0\n" + manager + "<dev_reload_all>");
  EXPECT_EQ(run("service,load,a b; $(id)", "0"), "0\n" + manager + "<dev_load><a b; $(id)>");
  EXPECT_EQ(run("service,unload,d", "768"),
            "1\n" + manager + "<dev_unload><d>devcfg: the command ended with exit status 3\n");
  EXPECT_EQ(run("service,reload", "9"),
            "1\n" + manager +
                "<dev_reload_all>devcfg: the command could not be run, or was ended by a signal\n");
  EXPECT_EQ(run("service,load,,", "0"), "1\ndevcfg: the device identifier is empty\n");
  EXPECT_EQ(run("service,load", "0")[0], '2');
}

TEST(DevcfgNet, ShowsAddressAndNumbers) {
  EXPECT_EQ(run("net,--json", "1.2.3.4,10.0.0.25"),
            "0\n{\n  \"ip\": \"10.0.0.25\",\n  \"share_value_1\": 8000,\n  \"app_value\": 9000,\n"
            "  \"share_value_2\": 8443\n}\n");
  EXPECT_EQ(run("net", "10.0.0.25"),
            "0\nADDRESS   SHARE VALUE 1 APP VALUE SHARE VALUE 2\n"
            "10.0.0.25 8000          9000      8443\n");
  EXPECT_EQ(run("net", ""),
            "1\ndevcfg: no network information: the platform's address list is empty (result "
            "-1006173180)\n");
}

TEST(DevcfgFrame, EncodesAndDecodesStreams) {
  const std::string frame = bytes({0xF8, 3, 0, 0, 0, 1, 0x41, 0x42, 0x84, 0xF9});
  const std::string payload = "\1AB";
  EXPECT_EQ(run("frame,encode", payload), "0\n" + frame);
  EXPECT_EQ(run("frame,encode,--hex", payload),
            "0\n00000000  f8 03 00 00 00 01 41 42 84 f9                    |......AB..|\n");
  EXPECT_EQ(run("frame,decode", ""), "0\n");
  EXPECT_EQ(run("frame,decode,--hex", "ab" + frame + "c"),
            "1\nframe at offset 2, payload of 3 bytes\n"
            "00000000  01 41 42                                         |.AB|\n"
            "devcfg: skipped 2 bytes at offset 0\n"
            "devcfg: skipped 1 byte at offset 12\n"
            "devcfg: the stream is damaged: 3 bytes skipped\n");
  EXPECT_EQ(run("frame,decode,--payload-max,2", frame),
            "1\ndevcfg: skipped 10 bytes at offset 0\n"
            "devcfg: the stream is damaged: 10 bytes skipped\n");
  for (const std::size_t size : {0U, 65536U, 65537U, 3000000U}) {
    const std::string large(size, '\xF8');
    const std::string made = test::run(ORVANEIP_DEVCFG, {"frame", "encode"}, large).output;
    const test::Outcome decoded = test::run(ORVANEIP_DEVCFG, {"frame", "decode"}, made + made);
    EXPECT_EQ(decoded.exit_status, 0);
    EXPECT_EQ(decoded.output, large + large);
  }
}
