#include <gtest/gtest.h>

#include <cstdarg>

#include "orvaneip.h"
#include "tests/support/captured_log.h"

namespace {

std::string called_with;
int next_status = 0;
char device_id[] = "a b; touch x $(id)";

}  // namespace

// The library calls this one instead of the platform's.
int vorn_exec(int zero_1, int zero_2, int zero_3, const char* path, ...) {
  EXPECT_EQ(zero_1 | zero_2 | zero_3, 0);
  called_with = path;
  va_list list;
  va_start(list, path);
  while (const char* argument = va_arg(list, const char*)) {
    called_with += std::string(" ") + argument;
  }
  va_end(list);
  return next_status;
}

TEST(ServiceCommands, GiveTheExitStatusOrTellTheFailure) {
  const std::pair<int (*)(), std::string> kCommands[] = {
      {devcfg_restart_all, "/etc/init.d/Kmetadatad.sh restart"},
      {devcfg_dev_reload_all, "/usr/bin/kdevmgmt dev_reload_all"},
      {[] { return devcfg_dev_load(device_id); },
       std::string("/usr/bin/kdevmgmt dev_load ") + device_id},
      {[] { return devcfg_dev_unload(device_id); },
       std::string("/usr/bin/kdevmgmt dev_unload ") + device_id}};
  // Status words and results.
  const std::pair<int, int> kOutcomes[] = {{0, 0},  {3 << 8, 3},     {255 << 8, 255},   {0x80, 0},
                                           {9, -1}, {11 | 0x80, -1}, {3 << 8 | 15, -1}, {-1, -1}};
  for (const auto& [call, line] : kCommands) {
    for (const auto& [status, result] : kOutcomes) {
      test::take_log();
      next_status = status;
      EXPECT_EQ(call(), result) << line << status;
      EXPECT_EQ(called_with, ORVANEIP_ROOT + line);
      EXPECT_EQ(test::take_product_log(),
                std::vector<std::string>(result < 0, "[libdevcfg] System command error: " + line));
    }
  }
}

TEST(ServiceCommands, RunNothingWithoutADevice) {
  called_with.clear();
  device_id[0] = '\0';
  for (char* none : {device_id, static_cast<char*>(nullptr)}) {
    test::take_log();
    EXPECT_EQ(devcfg_dev_load(none), -1);
    EXPECT_EQ(devcfg_dev_unload(none), -1);
    EXPECT_EQ(test::take_product_log(),
              (std::vector<std::string>{
                  "[libdevcfg] /usr/bin/kdevmgmt dev_load: no device identifier",
                  "[libdevcfg] /usr/bin/kdevmgmt dev_unload: no device identifier"}));
  }
  EXPECT_EQ(called_with, "");
}
