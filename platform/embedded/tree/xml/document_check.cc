#include "platform/embedded/tree/xml/document_check.h"

#include <strings.h>

#include <algorithm>
#include <cstring>
#include <utility>
#include <vector>

#include "base/failure.h"
#include "platform/config_tree.h"
#include "platform/embedded/tree/xml/byte_summary.h"
#include "platform/embedded/tree/xml/characters.h"
#include "platform/embedded/tree/xml/layout.h"
#include "platform/embedded/tree/xml/references.h"

namespace orvaneplatform {
namespace {

using pugi::xml_attribute;
using pugi::xml_node;

constexpr int kMaxDepth = kMaxTreeDepth;

// "<?xml" alone may be the start of a longer name, and then of another instruction.
bool starts_with_declaration(std::string_view text) {
  if (!text.starts_with("<?xml")) {
    return false;
  }
  text.remove_prefix(5);
  return text.starts_with('?') || text.find_first_of(kXmlWhitespace) == 0;
}

bool is_version(std::string_view text) {
  return text.size() > 2 && text.starts_with("1.") &&
         text.find_first_not_of("0123456789", 2) == std::string_view::npos;
}

bool is_utf8(const char* encoding) {
  return strcasecmp(encoding, "UTF-8") == 0 || strcasecmp(encoding, "UTF8") == 0;
}

class Checker : public pugi::xml_tree_walker {
 public:
  Checker(const std::string& path, const FileTraits& traits) : path_(path), traits_(traits) {}

  bool for_each(xml_node& node) override {
    if (depth() == 0) {
      check_top_level(node);
    }
    check(node);
    return true;
  }

  void check_top_level(xml_node node) {
    switch (node.type()) {
      case pugi::node_doctype:
        return refuse(node, "it has a document type");
      case pugi::node_element:
        return require(!std::exchange(has_element_, true), node, "a second top element");
      case pugi::node_pcdata:
        return require(is_layout(node), node, "text outside the top element");
      case pugi::node_cdata:
        return refuse(node, "text outside the top element");
      case pugi::node_declaration:
        return check_declaration(node);
      default:
        return;
    }
  }

 private:
  [[noreturn]] void refuse(xml_node node, const char* fault) const {
    throw_malformed(path_, fault, node.offset_debug());
  }

  void require(bool is_right, xml_node node, const char* fault) const {
    if (!is_right) {
      refuse(node, fault);
    }
  }

  // version, then encoding and standalone, both optional.
  void check_declaration(xml_node node) const {
    require(traits_.declaration_first && !node.previous_sibling(), node,
            "an XML declaration that is not at the beginning");
    xml_attribute attribute = node.first_attribute();
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
    require(std::strcmp(node.name(), "xml") == 0 && is_version(version.value()) && !attribute &&
                (!standalone || alone == "yes" || alone == "no"),
            node, "a malformed XML declaration");
    require(!encoding || is_utf8(encoding.value()), node, "its encoding is not UTF-8");
  }

  void check(xml_node node) {
    switch (node.type()) {
      case pugi::node_element:
        return check_element(node);
      case pugi::node_pcdata:
        return check_text(node);
      case pugi::node_comment:
        return check_comment(node);
      case pugi::node_pi:
        return check_name(node, node.name());
      default:
        return;
    }
  }

  void check_name(xml_node node, const char* name) const {
    require(is_name(name), node, "a name that XML does not allow");
  }

  void check_references(xml_node node, const char* text) const {
    require(references_are_valid(text), node, "an ampersand that begins no reference");
  }

  void check_text(xml_node node) const {
    require(!traits_.cdata_end || std::strstr(node.value(), "]]>") == nullptr, node,
            "\"]]>\" in a text");
    if (traits_.ampersand) {
      check_references(node, node.value());
    }
  }

  void check_comment(xml_node node) const {
    const std::string_view text = node.value();
    require(text.find("--") == std::string_view::npos && !text.ends_with('-'), node,
            "\"--\" in a comment");
  }

  void check_element(xml_node element) {
    require(depth() < kMaxDepth, element, "elements are nested too deep");
    if (traits_.non_ascii) {
      check_name(element, element.name());
    }
    if (element.first_attribute()) {
      check_attributes(element);
    }
    check_text(element);  // for kCfgRead, the first text is in the element itself
  }

  void check_attributes(xml_node element) {
    names_.clear();
    for (const xml_attribute attribute : element.attributes()) {
      names_.emplace_back(attribute.name());
      require(std::strchr(attribute.value(), '<') == nullptr, element, "\"<\" in an attribute");
      check_name(element, attribute.name());
      check_references(element, attribute.value());
    }
    std::sort(names_.begin(), names_.end());
    require(std::adjacent_find(names_.begin(), names_.end()) == names_.end(), element,
            "an attribute that occurs twice");
  }

  const std::string& path_;
  const FileTraits& traits_;
  bool has_element_ = false;
  std::vector<std::string_view> names_;  // of the attributes of one element
};

}  // namespace

FileTraits file_traits(std::string_view text) {
  FileTraits traits;
  traits.declaration_first = starts_with_declaration(text);
  traits.cdata_end = text.find("]]>") != std::string_view::npos;
  const std::size_t declared = traits.declaration_first ? text.find("?>") : 0;
  const std::size_t body = std::min(declared, text.size());
  const ByteSummary head = summarize(text.substr(0, body));
  const ByteSummary rest = summarize(text.substr(body));
  traits.control = head.control || rest.control;
  traits.non_ascii = head.non_ascii || rest.non_ascii;
  traits.ampersand = head.ampersand || rest.ampersand;
  traits.plain = !traits.cdata_end && !rest.non_ascii && !rest.ampersand && !rest.quote &&
                 !rest.markup && rest.depth_bound <= kMaxDepth;
  return traits;
}

void check_document(const std::string& path, pugi::xml_document& document,
                    const FileTraits& traits) {
  Checker checker(path, traits);
  if (!traits.plain) {
    document.traverse(checker);
    return;
  }
  for (const xml_node node : document.children()) {
    checker.check_top_level(node);
  }
}

void throw_malformed(const std::string& path, const char* fault, std::ptrdiff_t offset) {
  throw base::Failure(path, std::string(fault) + ", at byte " + std::to_string(offset));
}

}  // namespace orvaneplatform
