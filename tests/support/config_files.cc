#include "tests/support/config_files.h"

#include <dlfcn.h>

#include <stdexcept>

#include "foundation/split.h"

namespace {

std::string folder = "/no/such/folder";

bool is_fixed(const std::string& path) {
  return path.ends_with("/config/zelip.xml") || path.ends_with("/config/zelip_builtin.xml") ||
         path.ends_with("/config/kfilter.xml");
}

struct Path {
  explicit Path(const std::string& path) : parts(split(path, '/')) {
    for (std::size_t i = 0; i < parts.size(); ++i) {
      names[i] = parts.at(i).c_str();
    }
  }
  std::vector<std::string> parts;
  const char* names[7] = {};
};

}  // namespace

void* xmlcfg_open(TCfgMode mode, const char* path) {
  static const auto platforms =
      reinterpret_cast<decltype(&xmlcfg_open)>(dlsym(RTLD_NEXT, "xmlcfg_open"));
  const std::string name = path;
  if (test::call_fails != nullptr &&
      test::call_fails("xmlcfg_open" + name.substr(name.rfind('/')))) {
    return nullptr;
  }
  return platforms(mode, (is_fixed(name) ? folder + name.substr(name.rfind('/')) : name).c_str());
}

namespace test {

ConfigFiles::ConfigFiles() { folder = path(); }
ConfigFiles::~ConfigFiles() { folder = "/no/such/folder"; }

std::string value_at(void* tree, const std::string& path) {
  const auto [parts, n] = Path(path);
  std::string text(8192, '\0');
  xmlcfg_get_str(tree, "(absent)", text.data(), static_cast<int>(text.size()), n[0], n[1], n[2],
                 n[3], n[4], n[5], n[6], nullptr);
  return text.c_str();
}

Tree::Tree(const std::string& file, TCfgMode mode) : handle(xmlcfg_open(mode, file.c_str())) {
  if (handle == nullptr) {
    throw std::runtime_error("cannot open the tree " + file);
  }
}

void write_tree(const std::string& file, const std::string& top, const std::string& values) {
  write_file(file, "");
  const Tree tree(file, kCfgChange);
  for (const std::string& item : split(values, ';')) {
    const std::size_t mark = item.find('=');
    const auto [parts, n] = Path(top + "/" + item.substr(0, mark));
    if (!xmlcfg_set_str(tree.handle, item.substr(mark + 1).c_str(), n[0], n[1], n[2], n[3], n[4],
                        n[5], n[6], nullptr)) {
      throw std::runtime_error("cannot store " + item);
    }
  }
}

}  // namespace test
