// A device tree of full size for the benchmarks.
#pragma once

#include <array>
#include <string>

namespace bench {

inline constexpr int kSampleDevices = 128;

// The values that a device node holds: element names below the node, null after the last.
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

// The whole file: a node list and kSampleDevices nodes, each with all values of kValuePaths.
std::string sample_tree_text();

// A folder of its own with that file in it, which goes away with the object.
class SampleTree {
 public:
  SampleTree();
  ~SampleTree();
  SampleTree(const SampleTree&) = delete;
  SampleTree& operator=(const SampleTree&) = delete;

  const std::string& folder() const { return folder_; }
  std::string path() const { return folder_ + "/zelip.xml"; }

 private:
  std::string folder_;
};

}  // namespace bench
