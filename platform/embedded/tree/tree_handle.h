// What the pointers that platform/config_tree.h gives out point to.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "base/file_lock.h"
#include "platform/config_tree.h"
#include "platform/embedded/tree/xml/document.h"
#include "platform/embedded/tree/xml/element_search.h"

namespace orvaneplatform {

// Either of the two. A program holds both as pointers to void, and may pass one for the other.
class Tree {
 public:
  enum class Kind { kHandle, kCopy };

  Kind kind() const { return kind_; }

 protected:
  explicit Tree(Kind kind) : kind_(kind) {}
  ~Tree() = default;

 private:
  const Kind kind_;
};

// A read-only copy of a subtree. Any number of threads may use it at once.
class TreeCopy : public Tree {
 public:
  static constexpr Kind kKind = Kind::kCopy;

  // `top` is an element of the document, which nobody changes any more.
  TreeCopy(std::shared_ptr<const XmlDocument> document, pugi::xml_node top)
      : Tree(kKind), document_(std::move(document)), index_(top) {}

  // Returns the element at the path, or a null node.
  pugi::xml_node find(ElementNames names) const { return index_.find(names); }

 private:
  std::shared_ptr<const XmlDocument> document_;
  ElementIndex index_;
};

// An open file, used by one thread.
class TreeHandle : public Tree {
 public:
  static constexpr Kind kKind = Kind::kHandle;

  // Opens the file as a tree; for kCfgChange, takes its lock. Throws base::Failure.
  static std::unique_ptr<TreeHandle> open(const char* path, TCfgMode mode);

  // The file itself, where the path that was opened is a symbolic link and the mode kCfgChange.
  const std::string& path() const { return path_; }

  // Returns the element at the path, or a null node.
  pugi::xml_node find(ElementNames names) const;

  // As xmlcfg_set_str, xmlcfg_remove and xmlcfg_export_xmltree.
  bool store(ElementNames names, std::string_view value);
  bool remove(ElementNames names);
  std::unique_ptr<TreeCopy> copy(ElementNames names) const;

  // Writes the changes to the file. Throws base::Failure; std::bad_alloc also when memory ran out
  // in the middle of an earlier change.
  void save();

 private:
  TreeHandle(std::string path, TCfgMode mode, std::optional<base::FileLock> lock);

  pugi::xml_node top() const { return document_->tree.document_element(); }
  pugi::xml_node create(const FoundElement& found, ElementNames missing);
  bool refuse(const char* reason, ElementNames names) const;

  std::string path_;
  TCfgMode mode_;
  std::optional<base::FileLock> lock_;
  std::shared_ptr<XmlDocument> document_;
  std::optional<ElementIndex> index_;  // for kCfgRead
  bool is_changed_ = false;
  bool is_half_changed_ = false;  // memory ran out in the middle of a change
};

}  // namespace orvaneplatform
