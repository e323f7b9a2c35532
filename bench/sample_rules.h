// A rule file of its own for a benchmark. The library's fixed path leads to it.
#pragma once

#include <string>
#include <vector>

#include "orvaneip.h"

namespace bench {

class SampleRules {
 public:
  SampleRules(int devices, int filters, int rules);  // filters of a device, rules of a filter
  ~SampleRules();
  SampleRules(const SampleRules&) = delete;
  SampleRules& operator=(const SampleRules&) = delete;

  std::string file() const { return folder_ + "/kfilter.xml"; }

 private:
  std::string folder_;
};

// The same list as devcfg_get_filter_rules_list reads, built as a straightforward reader does: a
// record on each level is filled and then copied into the list of the level above.
std::vector<dev_filter> copying_read(const std::string& file);

// The rules of the device's filters whose target is the text, in one loop and no more: the place of
// the first, or -1.
int bare_scan(const char* text, const char* device_id, const std::vector<dev_filter>& devices);

bool equal(const std::vector<dev_filter>& one, const std::vector<dev_filter>& other);

}  // namespace bench
