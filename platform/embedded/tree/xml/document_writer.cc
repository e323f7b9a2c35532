#include "platform/embedded/tree/xml/document_writer.h"

#include <cstring>

#include "platform/embedded/tree/xml/out_of_memory.h"

namespace orvaneplatform {
namespace {

using pugi::xml_node;

// References and whitespace are in the tree as in the file.
constexpr unsigned int kUnchanged = pugi::format_raw | pugi::format_no_escapes;
constexpr std::size_t kExpectedGrowthBytes = 4096;

class StringWriter : public pugi::xml_writer {
 public:
  void write(const void* data, std::size_t size_bytes) override {
    text.append(static_cast<const char*>(data), size_bytes);
  }

  std::string text;
};

// The writer puts every attribute between double quotation marks. Only an attribute that was
// between single ones can contain a double one.
class QuoteEscaper : public pugi::xml_tree_walker {
 public:
  bool for_each(xml_node& node) override {
    for (pugi::xml_attribute attribute : node.attributes()) {
      if (std::strchr(attribute.value(), '"') != nullptr) {
        throw_if_out_of_memory(attribute.set_value(escape(attribute.value()).c_str()));
      }
    }
    return true;
  }

 private:
  static std::string escape(const char* text) {
    std::string escaped;
    for (; *text != '\0'; ++text) {
      *text == '"' ? escaped += "&quot;" : escaped += *text;
    }
    return escaped;
  }
};

}  // namespace

std::string document_bytes(XmlDocument& document) {
  if (document.original.find('\'') != std::string::npos) {
    QuoteEscaper escaper;
    document.tree.traverse(escaper);
  }
  StringWriter writer;
  writer.text.reserve(document.original.size() + kExpectedGrowthBytes);
  document.tree.save(writer, "",
                     kUnchanged | pugi::format_no_declaration |
                         (document.has_byte_order_mark ? pugi::format_write_bom : 0U),
                     pugi::encoding_utf8);
  return std::move(writer.text);
}

std::string element_text(xml_node element) {
  StringWriter writer;
  element.print(writer, "", kUnchanged, pugi::encoding_utf8);
  return std::move(writer.text);
}

}  // namespace orvaneplatform
