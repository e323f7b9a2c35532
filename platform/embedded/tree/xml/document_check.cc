#include "platform/embedded/tree/xml/document_check.h"

#include <strings.h>

#include <algorithm>
#include <cstring>
#include <utility>
#include <vector>

#include "platform/embedded/tree/xml/layout.h"
#include "platform/embedded/tree/xml/element_search.h"
#include "platform/embedded/tree/xml/characters.h"

namespace orvaneplatform {
namespace {

using pugi::xml_attribute;
using pugi::xml_node;

constexpr const char* kFine = nullptr;

bool is_version(std::string_view text) {
  return text.size() > 2 && text.starts_with("1.") &&
         text.find_first_not_of("0123456789", 2) == std::string_view::npos;
}

bool is_utf8(const char* encoding) {
  return strcasecmp(encoding, "UTF-8") == 0 || strcasecmp(encoding, "UTF8") == 0;
}

// version, then encoding and standalone, of which each may be absent.
const char* check_declaration(xml_node declaration) {
  xml_attribute attribute = declaration.first_attribute();
  const auto take = [&attribute](const char* name) {
    const bool found = std::strcmp(attribute.name(), name) == 0;
    const xml_attribute taken = found ? attribute : xml_attribute();
    attribute = found ? attribute.next_attribute() : attribute;
    return taken;
  };
  const xml_attribute version = take("version");
  const xml_attribute encoding = take("encoding");
  const xml_attribute standalone = take("standalone");
  const std::string_view alone = standalone.value();
  if (std::strcmp(declaration.name(), "xml") != 0 || !is_version(version.value()) || attribute ||
      (standalone && alone != "yes" && alone != "no")) {
    return "a malformed XML declaration";
  }
  return encoding && !is_utf8(encoding.value()) ? "its encoding is not UTF-8" : kFine;
}

class Checker : public pugi::xml_tree_walker {
 public:
  explicit Checker(const FileTraits& traits) : traits_(traits) {}

  const std::optional<TreeProblem>& problem() const { return problem_; }

  bool for_each(xml_node& node) override {
    const char* what = depth() == 0 ? check_top_level(node) : kFine;
    return accept(node, what != kFine ? what : check(node));
  }

  // Stops at the first problem.
  void check_top_levels(const pugi::xml_document& document) {
    for (const xml_node node : document.children()) {
      if (!accept(node, check_top_level(node))) {
        return;
      }
    }
  }

 private:
  bool accept(xml_node node, const char* what) {
    if (what != kFine) {
      problem_ = {what, node.offset_debug()};
    }
    return what == kFine;
  }

  const char* check_top_level(xml_node node) {
    switch (node.type()) {
      case pugi::node_doctype:
        return "it has a document type";
      case pugi::node_element:
        return std::exchange(has_element_, true) ? "a second top element" : kFine;
      case pugi::node_pcdata:
        return is_layout(node) ? kFine : "text outside the top element";
      case pugi::node_cdata:
        return "text outside the top element";
      case pugi::node_declaration:
        return traits_.declaration_first && !node.previous_sibling()
                   ? check_declaration(node)
                   : "an XML declaration that is not at the beginning";
      default:
        return kFine;
    }
  }

  const char* check(xml_node node) {
    switch (node.type()) {
      case pugi::node_element:
        return depth() >= static_cast<int>(kMaxDepth) ? "elements are nested too deep"
                                                      : check_element(node);
      case pugi::node_pcdata:
        return check_text(node);
      case pugi::node_comment:
        return check_comment(node.value());
      case pugi::node_pi:
        return check_name(node.name());
      default:
        return kFine;
    }
  }

  static const char* check_name(const char* name) {
    return is_name(name) ? kFine : "a name that XML does not allow";
  }

  static const char* check_references(const char* text) {
    return references_are_valid(text) ? kFine : "an ampersand that begins no reference";
  }

  const char* check_text(xml_node node) const {
    if (traits_.cdata_end && std::strstr(node.value(), "]]>") != nullptr) {
      return "\"]]>\" in a text";
    }
    return traits_.ampersand ? check_references(node.value()) : kFine;
  }

  static const char* check_comment(std::string_view text) {
    return text.find("--") != std::string_view::npos || text.ends_with('-') ? "\"--\" in a comment"
                                                                            : kFine;
  }

  const char* check_element(xml_node element) {
    const char* problem = traits_.non_ascii ? check_name(element.name()) : kFine;
    if (problem != kFine) {
      return problem;
    }
    if (element.first_attribute()) {
      if (problem = check_attributes(element); problem != kFine) {
        return problem;
      }
    }
    return check_text(element);  // the piece that a tree to be read keeps in the element
  }

  const char* check_attributes(xml_node element) {
    names_.clear();
    for (const xml_attribute attribute : element.attributes()) {
      names_.emplace_back(attribute.name());
      if (std::strchr(attribute.value(), '<') != nullptr) {
        return "\"<\" in an attribute";
      }
      const char* problem = check_name(attribute.name());
      problem = problem != kFine ? problem : check_references(attribute.value());
      if (problem != kFine) {
        return problem;
      }
    }
    std::sort(names_.begin(), names_.end());
    return std::adjacent_find(names_.begin(), names_.end()) != names_.end()
               ? "an attribute that stands twice"
               : kFine;
  }

  const FileTraits& traits_;
  std::optional<TreeProblem> problem_;
  bool has_element_ = false;
  std::vector<std::string_view> names_;  // of the attributes of one element
};

}  // namespace

std::optional<TreeProblem> check_tree(pugi::xml_document& document, const FileTraits& traits) {
  Checker checker(traits);
  if (traits.plain) {
    checker.check_top_levels(document);
  } else {
    document.traverse(checker);
  }
  return checker.problem();
}

}  // namespace orvaneplatform
