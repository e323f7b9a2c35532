#include "platform/embedded/tree/xml/document_text.h"

#include <cstring>
#include <optional>

#include "platform/embedded/tree/xml/layout.h"

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

void escape_quotes(xml_node node) {
  QuoteEscaper escaper;
  escaper.for_each(node);
  node.traverse(escaper);
}

std::string whole_text(TreeFile& tree) {
  if (tree.original.find('\'') != std::string::npos) {
    escape_quotes(tree.document);
  }
  TextWriter writer;
  writer.text.reserve(tree.original.size() + kExpectedGrowthBytes);
  tree.document.save(writer, "",
                     kAsItStands | pugi::format_no_declaration |
                         (tree.byte_order_mark ? pugi::format_write_bom : 0U),
                     pugi::encoding_utf8);
  return std::move(writer.text);
}

std::string_view opening_of(pugi::xml_node_type type) {
  switch (type) {
    case pugi::node_element:
      return "<";
    case pugi::node_comment:
      return "<!--";
    case pugi::node_cdata:
      return "<![CDATA[";
    case pugi::node_pi:
      return "<?";
    default:
      return "";
  }
}

// Where a node that is still as it was read begins in the file.
std::optional<std::size_t> start_of(xml_node node, std::string_view original) {
  const std::string_view opening = opening_of(node.type());
  const std::ptrdiff_t offset = node.offset_debug();  // of its name, or of its text
  if (offset < std::ssize(opening)) {
    return std::nullopt;
  }
  const std::size_t start = static_cast<std::size_t>(offset) - opening.size();
  return original.substr(start).starts_with(opening) ? std::optional(start) : std::nullopt;
}

std::string text_between(xml_node first, xml_node last) {
  TextWriter writer;
  const xml_node end = last.next_sibling();
  for (xml_node node = first; node != end; node = node.next_sibling()) {
    escape_quotes(node);
    node.print(writer, "", kAsItStands, pugi::encoding_utf8);
  }
  return std::move(writer.text);
}

}  // namespace

void ChangedPart::add(xml_node top, xml_node element) {
  while (element && element.parent() != top) {
    element = element.parent();
  }
  everything_ = everything_ || !element;
  if (everything_) {
    first_ = last_ = xml_node();  // they may be removed now
    return;
  }
  if (!first_ || element.offset_debug() < first_.offset_debug()) {
    first_ = element;
  }
  if (!last_ || element.offset_debug() > last_.offset_debug()) {
    last_ = element;
  }
}

bool TreeText::equals(std::string_view original) const {
  return size() == original.size() && original.substr(before.size()).starts_with(changed);
}

TreeText tree_text(TreeFile& tree, const ChangedPart& part) {
  const std::string_view original = tree.original;
  const auto start = start_of(part.first(), original);
  const auto end = start_of(part.last().next_sibling(), original);
  if (!start || !end) {
    return {"", whole_text(tree), ""};
  }
  return {original.substr(0, *start), text_between(part.first(), part.last()),
          original.substr(*end)};
}

std::string element_text(xml_node element) {
  TextWriter writer;
  element.print(writer, "", kAsItStands, pugi::encoding_utf8);
  return std::move(writer.text);
}

}  // namespace orvaneplatform
