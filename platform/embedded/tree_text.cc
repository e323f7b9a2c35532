#include "platform/embedded/tree_text.h"

#include <cstring>
#include <optional>

#include "platform/embedded/tree_layout.h"

namespace orvaneplatform {
namespace {

using pugi::xml_node;

constexpr unsigned int kAsItStands = pugi::format_raw | pugi::format_no_escapes;
constexpr std::size_t kExpectedGrowthBytes = 4096;

class TextWriter : public pugi::xml_writer {
 public:
  void write(const void* data, std::size_t size_bytes) override {
    text.append(static_cast<const char*>(data), size_bytes);
  }

  std::string text;
};

// Attributes stand in the tree as in the file; all are written between double quotation marks. They
// can hold one only in a file that has the other kind as well.
class QuoteEscaper : public pugi::xml_tree_walker {
 public:
  bool for_each(xml_node& node) override {
    for (auto attribute = node.first_attribute(); attribute;
         attribute = attribute.next_attribute()) {
      if (std::strchr(attribute.value(), '"') != nullptr) {
        needed(attribute.set_value(quoted(attribute.value()).c_str()));
      }
    }
    return true;
  }

 private:
  static std::string quoted(const char* text) {
    std::string escaped;
    for (; *text != '\0'; ++text) {
      *text == '"' ? escaped += "&quot;" : escaped += *text;
    }
    return escaped;
  }
};

std::string whole_text(const TreeFile& tree) {
  TextWriter writer;
  writer.text.reserve(tree.original.size() + kExpectedGrowthBytes);
  tree.document.save(writer, "",
                     kAsItStands | pugi::format_no_declaration |
                         (tree.byte_order_mark ? pugi::format_write_bom : 0U),
                     pugi::encoding_utf8);
  return std::move(writer.text);
}

// Where a node that is still as it was read begins in the file.
std::optional<std::size_t> start_of(xml_node node, std::string_view original) {
  const std::ptrdiff_t offset = node.offset_debug();
  if (offset <= 0) {
    return std::nullopt;
  }
  const auto at = static_cast<std::size_t>(offset);
  if (node.type() == pugi::node_pcdata && original.substr(at).starts_with(node.value())) {
    return at;
  }
  const bool is_element = node.type() == pugi::node_element && original[at - 1] == '<' &&
                          original.substr(at).starts_with(node.name());
  return is_element ? std::optional(at - 1) : std::nullopt;
}

std::string text_between(xml_node first, xml_node last) {
  TextWriter writer;
  for (xml_node node = first; node != last; node = node.next_sibling()) {
    node.print(writer, "", kAsItStands, pugi::encoding_utf8);
  }
  last.print(writer, "", kAsItStands, pugi::encoding_utf8);
  return std::move(writer.text);
}

}  // namespace

void ChangedPart::add(xml_node top, xml_node element) {
  while (element && element.parent() != top) {
    element = element.parent();
  }
  if (!element) {
    return add_everything();
  }
  if (!first_) {
    first_ = last_ = element;
  }
  first_ = element.offset_debug() < first_.offset_debug() ? element : first_;
  last_ = element.offset_debug() > last_.offset_debug() ? element : last_;
}

bool TreeText::equals(std::string_view original) const {
  return size() == original.size() && original.substr(before.size()).starts_with(changed);
}

TreeText tree_text(TreeFile& tree, const ChangedPart& part) {
  const std::string_view original = tree.original;
  if (original.find('\'') != std::string_view::npos) {
    QuoteEscaper escaper;
    tree.document.traverse(escaper);
  }
  const xml_node first = part.first();
  const auto start = start_of(first, original);
  const auto end = first ? start_of(part.last().next_sibling(), original) : std::nullopt;
  if (!start || !end) {
    return {"", whole_text(tree), ""};
  }
  return {original.substr(0, *start), text_between(first, part.last()), original.substr(*end)};
}

std::string element_text(xml_node element) {
  TextWriter writer;
  element.print(writer, "", kAsItStands, pugi::encoding_utf8);
  return std::move(writer.text);
}

}  // namespace orvaneplatform
