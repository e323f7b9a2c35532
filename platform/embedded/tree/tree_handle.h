// What stands behind the handles of platform/config_tree.h.
#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "base/file_lock.h"
#include "platform/embedded/tree/xml/document.h"
#include "platform/embedded/tree/xml/element_search.h"
#include "platform/embedded/tree/xml/document_text.h"

namespace orvaneplatform {

using Names = std::span<const char* const>;

// A part of a tree that does not change any more.
class TreeCopy {
 public:
  TreeCopy(std::shared_ptr<const TreeFile> tree, pugi::xml_node top)
      : tree_(std::move(tree)), top_(top) {}

  // The element at the path, or none.
  pugi::xml_node find(Names names) const;

 private:
  std::shared_ptr<const TreeFile> tree_;
  pugi::xml_node top_;
  PathFinder finder_{true};
};

class TreeHandle {
 public:
  // Null and a log line when the file cannot be opened as a tree.
  static std::unique_ptr<TreeHandle> open(const char* path, TreeUse use);

  // The element at the path, or none.
  pugi::xml_node find(Names names) const;

  // As xmlcfg_set_str, xmlcfg_remove and xmlcfg_export_xmltree.
  bool store(Names names, std::string_view value);
  bool remove(Names names);
  std::unique_ptr<TreeCopy> copy(Names names) const;

  // Writes the changes to the file. False and a log line when that fails, and when memory ran out
  // in the middle of a change.
  bool save();

 private:
  TreeHandle(std::string path, TreeUse use, std::optional<base::FileLock> lock,
             std::shared_ptr<TreeFile> tree);

  static std::unique_ptr<TreeHandle> open_to_change(const char* path);
  static std::unique_ptr<TreeHandle> with_tree(std::string path, TreeUse use,
                                               std::optional<base::FileLock> lock);

  void change(PathFinder::Found found, Names names, std::string_view value);
  void note_change(pugi::xml_node element);
  pugi::xml_node create(PathFinder::Found found, Names names);
  bool write_changes();
  bool refuse(const char* what, Names names) const;

  std::string path_;
  TreeUse use_;
  std::optional<base::FileLock> lock_;
  std::shared_ptr<TreeFile> tree_;
  PathFinder finder_;
  ChangedPart changed_;
  bool whole_ = true;  // false: memory ran out in the middle of a change
};

}  // namespace orvaneplatform
