// A rule file of its own for a benchmark; the library reads it in place of its fixed path.
#pragma once

#include <string>
#include <vector>

#include "bench/temporary_directory.h"
#include "orvaneip.h"

namespace bench {

class SampleRules {
 public:
  SampleRules(int devices, int filters, int rules);  // filters of a device, rules of a filter

  std::string file() const { return directory_.file("kfilter.xml"); }

 private:
  TemporaryDirectory directory_;
};

// Returns the list of devcfg_get_filter_rules_list, built in the literal steps: on each level a
// record is filled and then copied into the list of the level above.
std::vector<dev_filter> copying_read(const std::string& file);

// Compares the text with the targets of the device's rules in one bare loop. Returns the number of
// the first equal one, counted from 0, or -1.
int bare_scan(const char* text, const char* device_id, const std::vector<dev_filter>& devices);

bool equal(const std::vector<dev_filter>& one, const std::vector<dev_filter>& other);

}  // namespace bench
