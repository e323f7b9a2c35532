#include "devtree/builtin_devices.h"

#include <string>

#include "devtree/internal/builtin_files.h"
#include "devtree/internal/builtin_plan.h"
#include "platform/log_sinks.h"

namespace {

using orvaneip::BuiltinList;
using orvaneip::BuiltinPlan;
using orvaneip::DeviceTree;

// Opens both files for `work`, and returns its result. -1 and a log line when one cannot be opened.
template <typename Work>
int with_open_files(TCfgMode mode, Work work) {
  BuiltinList builtin_list(mode);
  if (!builtin_list.is_open()) {
    orvane_log_debug("[libdevcfg] Builtin XML file opened failed");
    return -1;
  }
  DeviceTree device_tree(mode);
  if (!device_tree.is_open()) {
    orvane_log_debug("[libdevcfg] Zelip XML file opened failed");
    return -1;
  }
  return work(builtin_list, device_tree);
}

// Stores values and reads them back: the next run depends on what it reads.
class VerifiedWriter {
 public:
  explicit VerifiedWriter(DeviceTree& device_tree) : device_tree_(device_tree) {}

  // Returns false when a value did not read back unchanged.
  bool all_held() const { return all_held_; }

  template <typename... Names>
  void store(const std::string& value, Names... path) {
    device_tree_.store(value, path...);
    all_held_ &= device_tree_.holds(value, path...);
  }

 private:
  DeviceTree& device_tree_;
  bool all_held_ = true;
};

void add_node(const BuiltinAddition& addition, const BuiltinList& builtin_list,
              VerifiedWriter& writer) {
  const char* node = addition.node_name.c_str();
  for (const char* name : {"device_id", "qid", "builtin", "type", "brand", "device_name", "plugin",
                           "install_path", "db_name"}) {
    writer.store(builtin_list.value(addition.entry, name), node, name);
  }
  writer.store("true", node, "enable");
}

// Returns false when the device tree does not hold all of the plan afterwards.
bool apply_plan(const BuiltinPlan& plan, const BuiltinList& builtin_list, DeviceTree& device_tree) {
  for (const std::string& name : plan.changes.removed) {
    device_tree.remove(name);
  }
  VerifiedWriter writer(device_tree);
  for (const BuiltinAddition& addition : plan.changes.added) {
    add_node(addition, builtin_list, writer);
  }
  writer.store(plan.node_list, orvaneip::kNodeListName);
  return writer.all_held();
}

int update_tree(BuiltinList& builtin_list, DeviceTree& device_tree) {
  const BuiltinPlan plan = orvaneip::plan_builtin(builtin_list, device_tree);
  if (!apply_plan(plan, builtin_list, device_tree)) {
    orvane_log_debug("[libdevcfg] Zelip XML file does not take the nodes, nothing is changed");
    return -1;
  }
  const bool closed = builtin_list.close();
  return device_tree.close() && closed && !plan.changes.limit_reached ? 0 : -1;
}

}  // namespace

int devcfg_check_builtin() { return with_open_files(kCfgChange, update_tree); }

int devcfg_preview_builtin(BuiltinChanges& changes) {
  return with_open_files(kCfgRead, [&](BuiltinList& builtin_list, DeviceTree& device_tree) {
    const BuiltinChanges found = orvaneip::plan_builtin(builtin_list, device_tree).changes;
    changes.removed.insert(changes.removed.end(), found.removed.begin(), found.removed.end());
    changes.added.insert(changes.added.end(), found.added.begin(), found.added.end());
    changes.limit_reached = found.limit_reached;
    return found.limit_reached ? -1 : 0;
  });
}
