#include "bench/bare_tree.h"

#include <fcntl.h>
#include <libxml/parser.h>
#include <pugixml.hpp>
#include <unistd.h>

#include <cstdio>
#include <cstring>

#include "bench/sample_tree.h"

namespace bench {
namespace {

const char* chars(const xmlChar* text) { return reinterpret_cast<const char*>(text); }

xmlNode* child_named(xmlNode* parent, const char* name) {
  xmlNode* child = parent->children;
  while (child != nullptr && std::strcmp(chars(child->name), name) != 0) {
    child = child->next;
  }
  return child;
}

std::size_t value_length(xmlNode* node, const ValuePath& path) {
  for (std::size_t i = 0; node != nullptr && i < path.size() && path[i] != nullptr; ++i) {
    node = child_named(node, path[i]);
  }
  if (node == nullptr || node->children == nullptr) {
    return 0;
  }
  char value[128];
  return static_cast<std::size_t>(
      std::snprintf(value, sizeof(value), "%s", chars(node->children->content)));
}

}  // namespace

std::size_t libxml2_read_all(const std::string& path) {
  xmlDoc* document = xmlReadFile(path.c_str(), nullptr, XML_PARSE_NONET);
  std::size_t length = 0;
  if (xmlNode* top = document != nullptr ? xmlDocGetRootElement(document) : nullptr; top) {
    for (xmlNode* node = top->children; node != nullptr; node = node->next) {
      for (const ValuePath& value : kValuePaths) {
        length += node->type == XML_ELEMENT_NODE ? value_length(node, value) : 0;
      }
    }
  }
  xmlFreeDoc(document);
  return length;
}

bool pugixml_parse(const std::string& path) {
  pugi::xml_document document;
  return static_cast<bool>(document.load_file(path.c_str()));
}

bool plain_replace(const std::string& directory, const std::string& path,
                   const std::string& bytes) {
  const std::string fresh = path + ".plain";
  const int file = open(fresh.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
  bool done = write(file, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size());
  done = fsync(file) == 0 && close(file) == 0 && done;
  done = rename(fresh.c_str(), path.c_str()) == 0 && done;
  const int parent = open(directory.c_str(), O_RDONLY | O_DIRECTORY);
  done = fsync(parent) == 0 && close(parent) == 0 && done;
  return done;
}

}  // namespace bench
