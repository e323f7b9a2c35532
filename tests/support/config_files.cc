#include "tests/support/config_files.h"

#include <dlfcn.h>

#include <stdexcept>

#include "foundation/split.h"

namespace {

std::string folder = "/no/such/folder";

// Calls with the names of a path.
template <typename Call>
auto on(const std::string& path, Call call) {
  const std::vector<std::string> names = split(path, '/');
  const auto n = [&names](std::size_t i) { return i < names.size() ? names[i].c_str() : nullptr; };
  return call(n(0), n(1), n(2), n(3), n(4), n(5), n(6), nullptr);
}

}  // namespace

void* xmlcfg_open(TCfgMode mode, const char* path) {
  static const auto platforms =
      reinterpret_cast<decltype(&xmlcfg_open)>(dlsym(RTLD_NEXT, "xmlcfg_open"));
  const std::string name = path;
  const std::string file = name.substr(name.rfind('/') + 1);
  if (test::call_fails != nullptr && test::call_fails("xmlcfg_open/" + file)) {
    return nullptr;
  }
  const bool fixed = name.ends_with("/config/" + file) &&
                     (file == "zelip.xml" || file == "zelip_builtin.xml" || file == "kfilter.xml");
  return platforms(mode, fixed ? (folder + "/" + file).c_str() : path);
}

namespace test {

ConfigFiles::ConfigFiles() { folder = path(); }
ConfigFiles::~ConfigFiles() { folder = "/no/such/folder"; }

std::string value_at(void* tree, const std::string& path) {
  std::string text(8192, '\0');
  const int size = static_cast<int>(text.size());
  on(path, [&](auto... n) { return xmlcfg_get_str(tree, "(absent)", text.data(), size, n...); });
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
    const std::string value = item.substr(mark + 1);
    if (!on(top + "/" + item.substr(0, mark),
            [&](auto... n) { return xmlcfg_set_str(tree.handle, value.c_str(), n...); })) {
      throw std::runtime_error("cannot store " + item);
    }
  }
}

}  // namespace test
