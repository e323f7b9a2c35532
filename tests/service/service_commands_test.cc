#include <array>

#include "tests/support/library.h"
#include "tests/support/process.h"

namespace {

// Runs devcfg with `arguments`, separated by commas, on the replacement platform. `input` is its
// standard input and the platform's answer (a status word or an address list). Returns the exit
// status, standard output and standard error in one string.
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
  // The arguments, the input and the outcome.
  const std::array<std::string, 3> kRows[] = {
      {"service,load,a b; $(id)", "0", "0" + manager + "<dev_load><a b; $(id)>"},
      {"service,unload,d", "768",
       "1" + manager + "<dev_unload><d>devcfg: the command ended with exit status 3\n"},
      {"service,reload", "9",
       "1" + manager +
           "<dev_reload_all>devcfg: the command could not be run, or was ended by a signal "
           "(--log shows why)\n"},
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
  for (const std::size_t size : {0U, 65537U, 1048576U}) {
    const std::string payload(size, '\xF8'),
        made = test::run(ORVANEIP_DEVCFG, {"frame", "encode"}, payload).output;
    const test::Outcome decoded = test::run(ORVANEIP_DEVCFG, {"frame", "decode"}, made + made);
    EXPECT_TRUE(decoded.exit_status == 0 && decoded.output == payload + payload) << size;
  }
}

TEST(ServiceCommands, ReturnTheExitStatusOrLogTheFailure) {
  static char device_id[] = "a b; touch x $(id)";
  // The function, its program and the arguments.
  const std::tuple<int (*)(), std::string, std::vector<std::string>> kCommands[] = {
      {devcfg_restart_all, "/etc/init.d/Kmetadatad.sh", {"restart"}},
      {devcfg_dev_reload_all, "/usr/bin/kdevmgmt", {"dev_reload_all"}},
      {[] { return devcfg_dev_load(device_id); }, "/usr/bin/kdevmgmt", {"dev_load", device_id}},
      {[] { return devcfg_dev_unload(device_id); }, "/usr/bin/kdevmgmt", {"dev_unload", device_id}},
  };
  // Status words and results.
  const std::pair<int, int> kOutcomes[] = {{0, 0},  {3 << 8, 3},     {255 << 8, 255},   {0x80, 0},
                                           {9, -1}, {11 | 0x80, -1}, {3 << 8 | 15, -1}, {-1, -1}};
  for (const auto& [call, path, words] : kCommands) {
    std::string printed = "<" ORVANEIP_ROOT + path + ">";
    std::string line = "[libdevcfg] System command error: " + path;
    for (const std::string& word : words) {
      printed += "<" + word + ">";
      line += " " + word;
    }
    for (const auto& [status, result] : kOutcomes) {
      test::take_log();
      setenv("STAND_IN_ANSWER", std::to_string(status).c_str(), 1);
      testing::internal::CaptureStdout();
      EXPECT_EQ(call(), result) << line << status;
      EXPECT_EQ(testing::internal::GetCapturedStdout(), printed);
      EXPECT_EQ(test::take_product_log(), std::vector<std::string>(result < 0, line));
    }
  }
  EXPECT_TRUE(devcfg_dev_load(nullptr) == -1 && devcfg_dev_unload(nullptr) == -1);
  const std::string program = "[libdevcfg] /usr/bin/kdevmgmt ";
  EXPECT_EQ(test::take_product_log(),
            (std::vector<std::string>{program + "dev_load: no device identifier",
                                      program + "dev_unload: no device identifier"}));
}
