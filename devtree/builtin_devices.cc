#include "devtree/builtin_devices.h"

#include <optional>
#include <string>

#include "devtree/internal/builtin_plan.h"
#include "devtree/internal/config_file.h"
#include "devtree/internal/fixed_paths.h"
#include "devtree/internal/node_list.h"
#include "platform/log_sinks.h"

namespace {

using orvaneip::BuiltinPlan;
using orvaneip::ConfigFile;

constexpr char kTop[] = "device";

class Files {
 public:
  explicit Files(TCfgMode mode) : builtin_list_(mode, orvaneip::kBuiltinListPath) {
    if (!builtin_list_.is_open()) {
      orvane_log_debug("[libdevcfg] Builtin XML file opened failed");
      return;
    }
    device_tree_.emplace(mode, orvaneip::kDeviceTreePath);
    if (!device_tree_->is_open()) {
      orvane_log_debug("[libdevcfg] Zelip XML file opened failed");
      builtin_list_.close();
    }
  }

  bool are_open() const { return device_tree_ && device_tree_->is_open(); }
  void* builtin_list() const { return builtin_list_.handle(); }
  void* device_tree() const { return device_tree_->handle(); }

  // False when a change could not be saved.
  bool close() {
    const bool closed = builtin_list_.close();
    return device_tree_->close() && closed;
  }

 private:
  ConfigFile builtin_list_;
  std::optional<ConfigFile> device_tree_;
};

// Stores values, and reads them back: the next run goes by what it reads.
class Storing {
 public:
  explicit Storing(const Files& files) : files_(files) {}

  bool all_held() const { return all_held_; }

  void add_node(const BuiltinAddition& addition) {
    const char* node = addition.node_name.c_str();
    for (const char* key : {"device_id", "qid", "builtin", "type", "brand", "device_name", "plugin",
                            "install_path", "db_name"}) {
      store(orvaneip::entry_value(files_.builtin_list(), addition.entry, key), node, key);
    }
    store("true", node, "enable");
  }

  template <typename... Names>
  void store(const std::string& value, Names... path) {
    xmlcfg_set_str(files_.device_tree(), value.c_str(), kTop, path..., nullptr);
    all_held_ &= orvaneip::holds_value(files_.device_tree(), value, kTop, path...);
  }

 private:
  const Files& files_;
  bool all_held_ = true;
};

// False when the tree does not hold all of it afterwards.
bool carry_out(const BuiltinPlan& plan, const Files& files) {
  for (const std::string& name : plan.changes.removed) {
    xmlcfg_remove(files.device_tree(), kTop, name.c_str(), nullptr);
  }
  Storing storing(files);
  for (const BuiltinAddition& addition : plan.changes.added) {
    storing.add_node(addition);
  }
  storing.store(plan.node_list, "device_node_list");
  return storing.all_held();
}

}  // namespace

int devcfg_check_builtin() {
  Files files(kCfgChange);
  if (!files.are_open()) {
    return -1;
  }
  const BuiltinPlan plan = orvaneip::plan_builtin(files.builtin_list(), files.device_tree());
  if (!carry_out(plan, files)) {
    orvane_log_debug("[libdevcfg] Zelip XML file does not take the nodes, nothing is changed");
    return -1;
  }
  return files.close() && !plan.changes.limit_reached ? 0 : -1;
}

int devcfg_preview_builtin(BuiltinChanges& changes) {
  const Files files(kCfgRead);
  if (!files.are_open()) {
    return -1;
  }
  const BuiltinChanges found =
      orvaneip::plan_builtin(files.builtin_list(), files.device_tree()).changes;
  changes.removed.insert(changes.removed.end(), found.removed.begin(), found.removed.end());
  changes.added.insert(changes.added.end(), found.added.begin(), found.added.end());
  changes.limit_reached = found.limit_reached;
  return found.limit_reached ? -1 : 0;
}
