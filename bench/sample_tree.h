// A device tree of full size for the benchmarks.
#pragma once

#include <array>
#include <string>

#include "bench/temporary_directory.h"

namespace bench {

inline constexpr int kSampleDevices = 128;

// The path of a value of a device node: element names below the node, null after the last.
using ValuePath = std::array<const char*, 4>;
inline constexpr ValuePath kValuePaths[] = {
    {"device_id"},
    {"type"},
    {"brand"},
    {"device_name"},
    {"plugin"},
    {"install_path"},
    {"enable"},
    {"description"},
    {"builtin"},
    {"qid"},
    {"db_name"},
    {"src_property_list", "id"},
    {"src_property_list", "pwd"},
    {"src_property_list", "conn", "type"},
    {"src_property_list", "conn", "lan", "ip"},
    {"src_property_list", "conn", "lan", "port"},
    {"src_property_list", "conn", "com", "com"},
    {"src_property_list", "conn", "com", "baudrate"},
    {"src_property_list", "binding", "recording_cam"},
};

std::string sample_node(int number);       // device_007
std::string sample_device_id(int number);  // the value of its device_id

// Returns the whole file: a node list and kSampleDevices nodes, each with all values of
// kValuePaths.
std::string sample_tree_text();

// A temporary directory that contains that file.
class SampleTree {
 public:
  SampleTree();

  const std::string& directory() const { return directory_.path(); }
  std::string path() const { return directory_.file("zelip.xml"); }

 private:
  TemporaryDirectory directory_;
};

}  // namespace bench
