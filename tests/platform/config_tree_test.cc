#include "tests/support/config_tree.h"

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "tests/support/library.h"

namespace {

using test::Path;
using test::Tree;

class ConfigTree : public testing::Test {
 protected:
  void write(const std::string& bytes) const { test::write_file(file_, bytes); }
  std::string bytes() const { return test::read_file(file_); }

  const test::TempDirectory directory_;
  const std::string file_ = directory_.file("tree.xml");
};

TEST_F(ConfigTree, EveryValueReadsBackAndIsInTheFileAsStated) {
  const std::string text(4'000, 'x');
  const std::pair<std::string, std::string> kRows[] = {
      {"", "<v/>"},
      {text, "<v>" + text + "</v>"},
      {"caf\xC3\xA9 \xF0\x9F\x98\x80", "<v>caf\xC3\xA9 \xF0\x9F\x98\x80</v>"},
      {"<&>\"']]>", "<v>&lt;&amp;&gt;\"']]&gt;</v>"},
      {" ", "<v>&#32;</v>"},
      {" \ta b\n c\n", "<v>&#32;&#9;a b\n c&#10;</v>"},
      {"a\r\nb\r", "<v>a&#13;\nb&#13;</v>"},
      // what XML cannot carry
      {"ab\x1F", "<v encoding=\"base64\">YWIf</v>"},
      {"\xFF\xFE\x80z", "<v encoding=\"base64\">//6Aeg==</v>"},
      {"\xEF\xBF\xBF", "<v encoding=\"base64\">77+/</v>"},
      {"YQ==", "<v>YQ==</v>"},
  };
  for (const auto& [value, element] : kRows) {
    write("<?xml version=\"1.0\"?>");
    EXPECT_TRUE(Tree(kCfgChange, file_).store({"device", "v"}, value));
    EXPECT_EQ(bytes(), "<?xml version=\"1.0\"?>\n<device>\n  " + element + "\n</device>\n");
    EXPECT_EQ(Tree(kCfgRead, file_).value({"device", "v"}), value);
  }
}

TEST_F(ConfigTree, ValuesOfForeignFiles) {
  const std::pair<std::string, std::string> kRows[] = {
      // below "r", the value of "v"
      {"<v>a\r\nb\rc&#13;</v>", "a\nb\nc\r"},
      {"<v> &lt;&#x41;&#66;&quot;&apos; </v>", " <AB\"' "},
      {"<v>\n  a<!-- b -->c\n  <w/>\n  b\n</v>", "acb"},
      {"<v> <![CDATA[ <x>&lt; ]]> </v>", " <x>&lt; "},
      {"<v> <!-- --> </v>", ""},
      {"<?v x?><v>1</v><v>2</v>", "1"},
      {"<v encoding='base64'>\n AQ\n ==\n</v>", "\x01"},
      {"<v encoding='base64'>AQ=A</v>", "AQ=A"},
      {"<w/>", "(none)"},
  };
  for (const auto& [element, value] : kRows) {
    write("<r>" + element + "</r>");
    EXPECT_EQ(Tree(kCfgRead, file_).value({"r", "v"}), value) << element;
  }
  // Of the children of a name the first one counts, in whatever order they are read.
  write("<r><b>1</b><d>2</d><b>3</b><a>4</a><?c x?><c>5</c><a>6</a></r>");
  const Tree tree(kCfgRead, file_);
  std::string read;
  for (const char name : std::string("bdacebbacdaabdeccadbeadcb")) {
    read += tree.value({"r", std::string(1, name)})[0];
  }
  EXPECT_EQ(read, "1245(114524412(55421(4251");
}

TEST_F(ConfigTree, AChangeKeepsTheRestOfTheFile) {
  const std::string kRows[][4] = {
      {"<r>\n\t<a>1</a>\n</r>\n", "r/b", "2", "<r>\n\t<a>1</a>\n\t<b>2</b>\n</r>\n"},
      {"<r>\r\n <a/>\r\n</r>", "r/a/b", "2", "<r>\r\n <a>\r\n  <b>2</b>\r\n </a>\r\n</r>"},
      {"<r> x </r>", "r/b", "2", "<r>&#32;x&#32;\n  <b>2</b>\n</r>"},
      {"<?xml version='1.0'?><!-- c --><?p q?><r x='\"&lt;' y=\"'\"/>", "r", "2",
       "<?xml version=\"1.0\"?><!-- c --><?p q?><r x=\"&quot;&lt;\" y=\"'\">2</r>"},
      {"\xEF\xBB\xBF<r>&#233;<b>B</b>\r\n</r>", "r/b", "2",
       "\xEF\xBB\xBF<r>&#233;<b>2</b>\r\n</r>"},
      {"<r>\n <v>old\n  <w/><!-- k -->\n more </v>\n</r>", "r/v", " new ",
       "<r>\n <v>&#32;new&#32;\n  <w/><!-- k --> </v>\n</r>"},
      {"<r><v encoding=\"base64\" k=\"1\">AQ==</v></r>", "r/v", "x", "<r><v k=\"1\">x</v></r>"},
      {"<r>\n  <a/>\n  <b><c/></b>\n  <d/>\n</r>", "r/b", "removed", "<r>\n  <a/>\n  <d/>\n</r>"},
      {"<r>\n  <a/>\n</r>", "r/a", "removed", "<r/>"},
      {"<r>text\n  <a/>\n</r>", "r/a", "removed", "<r>text</r>"},
      {"<!-- c -->\n<r><a/></r>\n", "r", "removed", "<!-- c -->\n"},
      {"<r>x <a/> y <b/></r>", "r/a", "removed", "<r>xy <b/></r>"},
      {"<r><z  y='\"' /><a >1</a><!--c--><b  /></r>", "r/a", "2",
       "<r><z y=\"&quot;\"/><a>2</a><!--c--><b/></r>"},
      {"", "r", "1", "<?xml version=\"1.0\"?>\n<r>1</r>\n"},
      {"\xEF\xBB\xBF", "r", "1", "\xEF\xBB\xBF<?xml version=\"1.0\"?>\n<r>1</r>\n"},
  };
  for (const auto& [before, names, value, after] : kRows) {
    write(before);
    Tree tree(kCfgChange, file_);
    const Path path = split(names, '/');
    EXPECT_TRUE(value == "removed" ? tree.remove(path) : tree.store(path, value));
    EXPECT_TRUE(tree.close());
    EXPECT_EQ(bytes(), after);
  }
}

TEST_F(ConfigTree, ChangesInManyPlacesAreAllSaved) {
  write("");
  Tree tree(kCfgChange, file_);
  const auto node = [](int number) { return std::string("n").append(std::to_string(number)); };
  for (int i = 0; i < 128 * 20; ++i) {  // more than the parser keeps in one piece of memory
    const std::string value = std::to_string(i % 20);
    EXPECT_TRUE(tree.store({"r", node(i / 20), std::string("v").append(value)}, value));
  }
  EXPECT_TRUE(tree.close());
  Tree changer(kCfgChange, file_);
  EXPECT_TRUE(changer.store({"r", "n60", "v1"}, "x") && changer.store({"r", "n30", "v1"}, "y"));
  EXPECT_TRUE(changer.close());
  EXPECT_EQ(Tree(kCfgRead, file_).value({"r", "n60", "v1"}), "x");
  Tree remover(kCfgChange, file_);
  EXPECT_EQ(remover.value({"r", "n30", "v1"}), "y");
  EXPECT_TRUE(remover.store({"r", "n30", "v1"}, "z"));
  for (int i = 20; i < 128; ++i) {
    EXPECT_TRUE(remover.remove({"r", node(i)}));
  }
  const std::string large(32'000, 'x');
  EXPECT_TRUE(remover.store({"r", "n0", "v1"}, large) && remover.close());
  EXPECT_NE(bytes().find(large), std::string::npos);
  EXPECT_EQ(Tree(kCfgRead, file_).value({"r", "n19", "v19"}), "19");
}

// What another parser refuses too is in the fuzzer's corpus.
TEST_F(ConfigTree, HostileFilesAreRefusedAndLeftAlone) {
  std::string nested;
  for (int i = 0; i < 257; ++i) {
    nested = "<a>" + nested + "</a>";
  }
  const std::pair<std::string, const char*> kRows[] = {
      {"<a><b>half", "mismatch"},
      {"<!DOCTYPE a [<!ENTITY x \"y\"><!ENTITY z \"&x;\">]><a>&z;</a>", "document type"},
      {"<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><a/>", "not UTF-8"},
      {"<a>\xE9</a>", "not text in UTF-8"},
      {"<a>&unknown;</a>", "ampersand"},
      {nested, "too deep"},
  };
  for (const auto& [hostile, reason] : kRows) {
    write(hostile);
    EXPECT_FALSE(Tree(kCfgChange, file_).is_open()) << hostile.substr(0, 80);
    const auto log = test::take_product_log();
    ASSERT_EQ(log.size(), 1U);
    EXPECT_TRUE(log[0].starts_with("[cfgtree] " + file_)) << log[0];
    EXPECT_NE(log[0].find(reason), std::string::npos) << log[0];
    EXPECT_EQ(bytes(), hostile);
  }
  write(nested.substr(3, nested.size() - 7));
  EXPECT_TRUE(Tree(kCfgChange, file_).is_open());
  ASSERT_EQ(truncate(file_.c_str(), 100'000'000), 0);
  EXPECT_FALSE(Tree(kCfgRead, file_).is_open());
  const std::vector too_large = {"[cfgtree] " + file_ + " is not opened: it is larger than 64 MiB"};
  EXPECT_EQ(test::take_product_log(), too_large);
  const std::string fifo = directory_.file("fifo");
  ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
  for (const std::string& path : {file_, fifo, directory_.path(), fifo + "0", file_ + "/x", {""}}) {
    EXPECT_FALSE(Tree(kCfgRead, path).is_open() || Tree(kCfgChange, path).is_open()) << path;
    EXPECT_EQ(test::take_product_log().size(), 2U) << path;
  }
  EXPECT_EQ(std::filesystem::file_size(file_), 100'000'000U);
  EXPECT_EQ(xmlcfg_open(kCfgRead, nullptr), nullptr);
}

template <int... kLevels>
bool store_below(void* tree, std::integer_sequence<int, kLevels...>) {
  return xmlcfg_set_str(tree, "x", ((void)kLevels, "n")..., nullptr);
}

TEST_F(ConfigTree, WhatIsNotAllowedIsRefusedWithALogLine) {
  const std::string before = "<n><a>1</a></n>";
  write(before);
  Tree tree(kCfgChange, file_);
  for (const char* name : {"", "1a", "-a", "a b", "a:b", "<", "\xC3", "a\xC3\x97", "a/b"}) {
    test::take_log();
    EXPECT_FALSE(tree.store({"n", "new", name}, "x"));
    EXPECT_EQ(test::take_product_log().size(), 1U) << name;
  }
  EXPECT_FALSE(tree.store({"m", "a"}, "x") || tree.store({}, "x") || tree.remove({"m"}));
  EXPECT_FALSE(xmlcfg_set_str(tree.handle(), nullptr, "n", nullptr));
  EXPECT_FALSE(store_below(tree.handle(), std::make_integer_sequence<int, 257>()));
  Tree reader(kCfgRead, file_);
  EXPECT_FALSE(reader.store({"n", "a"}, "2") || reader.remove({"n", "a"}));
  EXPECT_TRUE(tree.close() && bytes() == before);
  Tree deep(kCfgChange, file_);
  EXPECT_TRUE(store_below(deep.handle(), std::make_integer_sequence<int, 256>()));
  EXPECT_TRUE(store_below(deep.handle(), std::make_integer_sequence<int, 12>()));
  EXPECT_TRUE(deep.store({"n", "_\xC3\xA9-b.c"}, "x") && deep.close());
  EXPECT_TRUE(Tree(kCfgRead, file_).is_open());
}

TEST_F(ConfigTree, NumbersAndBooleans) {
  // value, number by default -7, boolean by default false and by default true
  for (const char* row :
       {" -3x|-3|01", "|-7|01", "99999999999|2147483647|01", "-99999999999999999|-2147483648|01",
        "1|1|11", "0|0|00", "TRUE|-7|11", "Yes|-7|11", "on|-7|11", "False|-7|00", "no|-7|00",
        "OFF|-7|00", " true|-7|01", "truer|-7|01"}) {
    const auto parts = split(row, '|');
    write("<r><v>" + parts[0] + "</v></r>");
    const Tree tree(kCfgRead, file_);
    EXPECT_EQ(xmlcfg_get_int(tree.handle(), -7, "r", "v", nullptr), std::stoi(parts[1])) << row;
    for (const std::size_t by : {0U, 1U}) {
      EXPECT_EQ(xmlcfg_get_bool(tree.handle(), by == 1, "r", "v", nullptr), parts[2][by] == '1');
    }
  }
  EXPECT_TRUE(xmlcfg_get_bool(nullptr, true, "r", nullptr));
}

TEST_F(ConfigTree, AReadStaysInItsBuffer) {
  write("<r><v>a&amp;b</v></r>");
  const Tree tree(kCfgRead, file_);
  const auto read = [&](const char* otherwise, int size, const char* name) {
    std::string buffer(6, '#');
    EXPECT_EQ(xmlcfg_get_str(tree.handle(), otherwise, buffer.data(), size, "r", name, nullptr),
              *name == 'v');
    return buffer;
  };
  using namespace std::literals;
  const std::string kRead[] = {"######"s,  "######"s,  "\0#####"s,
                               "a\0####"s, "a&\0###"s, "a&b\0##"s};
  for (int size = -1; size <= 4; ++size) {
    EXPECT_EQ(read("d", size, "v"), kRead[size + 1]) << size;
  }
  EXPECT_EQ(read("default", 4, "w"), "def\0##"s);
  EXPECT_EQ(read(nullptr, 4, "w"), "\0#####"s);
  EXPECT_TRUE(xmlcfg_get_str(tree.handle(), "d", nullptr, 4, "r", "v", nullptr));
}

TEST_F(ConfigTree, ACopyOutlivesItsHandleAndSeesNoLaterChange) {
  write("<r><filter><a> 1&gt;</a><b><c>2</c></b></filter><x/></r>");
  Tree tree(kCfgChange, file_);
  void** copy = xmlcfg_export_xmltree(tree.handle(), "r", "filter", nullptr);
  EXPECT_EQ(xmlcfg_export_xmltree(tree.handle(), nullptr), nullptr);
  EXPECT_TRUE(tree.store({"r", "filter", "a"}, "changed") && tree.remove({"r", "filter", "b"}));
  tree.close();
  char value[8];
  // As a handle, a copy has no values, and closing it does not release it.
  EXPECT_FALSE(xmlcfg_get_str(copy, "-", value, sizeof(value), "filter", "a", nullptr));
  EXPECT_TRUE(xmlcfg_close(copy, true));
  EXPECT_TRUE(xmltree_get_str(copy, "", value, sizeof(value), "filter", "a", nullptr));
  EXPECT_STREQ(value, " 1>");
  EXPECT_EQ(xmltree_get_int(copy, 0, "filter", "b", "c", nullptr), 2);
  EXPECT_FALSE(xmltree_get_str(copy, "-", value, sizeof(value), "r", "x", nullptr));
  xmltree_destroy(copy);
  xmltree_destroy(nullptr);
}

}  // namespace
