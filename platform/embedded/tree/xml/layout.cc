#include "platform/embedded/tree/xml/layout.h"

#include <cstring>
#include <string>
#include <string_view>

#include "platform/embedded/tree/xml/characters.h"
#include "platform/embedded/tree/xml/out_of_memory.h"

namespace orvaneplatform {
namespace {

using pugi::xml_node;

constexpr char kIndentation[] = "  ";

bool is_whitespace(const char* text) { return text[std::strspn(text, kXmlWhitespace)] == '\0'; }

bool ends_line(xml_node node) {
  return node.type() == pugi::node_pcdata && std::string_view(node.value()).ends_with('\n');
}

// Returns the line end and indentation before `node`; empty when it does not begin a line.
std::string line_start(xml_node node) {
  const xml_node before = node.previous_sibling();
  const std::string text = before.type() == pugi::node_pcdata ? before.value() : "";
  std::size_t start = text.rfind('\n');
  if (start == std::string::npos || !is_whitespace(text.c_str() + start)) {
    return "";
  }
  start -= start > 0 && text[start - 1] == '\r' ? 1U : 0U;
  return text.substr(start);
}

// Returns the last child that is not text: an element, a comment or an instruction.
xml_node last_content(xml_node parent) {
  xml_node child = parent.last_child();
  while (child.type() == pugi::node_pcdata || child.type() == pugi::node_cdata) {
    child = child.previous_sibling();
  }
  return child;
}

std::string own_line_start(xml_node element) {
  const bool is_top = element.parent().type() == pugi::node_document;
  const std::string start = line_start(element);
  return start.empty() && is_top ? "\n" : start;
}

xml_node first_element(xml_node parent) {
  return parent.find_child([](xml_node child) { return child.type() == pugi::node_element; });
}

// Returns the indentation of a level, which the first element below the top element shows.
std::string indentation_step(xml_node document) {
  const std::string start = line_start(first_element(first_element(document)));
  const std::size_t indentation = start.rfind('\n') + 1;
  return indentation < start.size() ? start.substr(indentation) : kIndentation;
}

xml_node named(xml_node element, const char* name) {
  throw_if_out_of_memory(element.set_name(name));
  return element;
}

void append_text(xml_node parent, const char* text) {
  throw_if_out_of_memory(parent.append_child(pugi::node_pcdata).set_value(text));
}

void insert_text(xml_node parent, const std::string& text, xml_node before) {
  if (!text.empty()) {
    throw_if_out_of_memory(
        parent.insert_child_before(pugi::node_pcdata, before).set_value(text.c_str()));
  }
}

// In the file the two texts will be one.
void join(xml_node text, xml_node rest) {
  throw_if_out_of_memory(text.set_value((std::string(text.value()) + rest.value()).c_str()));
  rest.parent().remove_child(rest);
}

// Adds the first child that is not text.
xml_node append_first(xml_node parent, const char* name) {
  const std::string outer = own_line_start(parent);
  const std::string inner = outer.empty() ? "" : outer + indentation_step(parent.root());
  while (is_layout(parent.last_child())) {
    parent.remove_child(parent.last_child());
  }
  const xml_node element = named(parent.append_child(pugi::node_element), name);
  insert_text(parent, inner, element);
  if (!outer.empty()) {
    append_text(parent, outer.c_str());
  }
  return element;
}

}  // namespace

bool is_layout(xml_node node) {
  return node.type() == pugi::node_pcdata && is_whitespace(node.value());
}

xml_node append_element(xml_node parent, const char* name) {
  const xml_node last = last_content(parent);
  if (!last) {
    return append_first(parent, name);
  }
  const std::string start = line_start(last);
  const xml_node end = parent.last_child();
  const xml_node element =
      named(is_layout(end) ? parent.insert_child_before(pugi::node_element, end)
                           : parent.append_child(pugi::node_element),
            name);
  insert_text(parent, start, element);
  return element;
}

xml_node append_top_element(xml_node document, const char* name) {
  if (!document.first_child()) {
    xml_node declaration = document.append_child(pugi::node_declaration);
    pugi::xml_attribute version = declaration.append_attribute("version");
    throw_if_out_of_memory(declaration.set_name("xml") && version.set_name("version") &&
                           version.set_value("1.0"));
  }
  if (!ends_line(document.last_child())) {
    append_text(document, "\n");
  }
  const xml_node element = named(document.append_child(pugi::node_element), name);
  append_text(document, "\n");
  return element;
}

void remove_element(xml_node element) {
  xml_node parent = element.parent();
  const xml_node before = element.previous_sibling();
  const xml_node after = element.next_sibling();
  if (is_layout(before) && is_layout(after)) {
    parent.remove_child(before);
  } else if (before.type() == pugi::node_pcdata && after.type() == pugi::node_pcdata) {
    join(before, after);
  }
  parent.remove_child(element);
}

}  // namespace orvaneplatform
