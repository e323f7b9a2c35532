#include "tests/support/config_tree.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>

#include "tests/support/library.h"

namespace {

using test::Path;
using test::Tree;
using Texts = std::vector<std::string>;

class ConfigTree : public testing::Test {
 protected:
  void write(const std::string& bytes) const { test::write_file(file_, bytes); }
  std::string bytes() const { return test::read_file(file_); }
  void expect_value(const Path& path, const std::string& value) const {
    EXPECT_EQ(Tree(kCfgRead, file_).value(path), value) << bytes();
    EXPECT_EQ(Tree(kCfgChange, file_).value(path), value) << bytes();
  }

  const test::TempFolder folder_;
  const std::string file_ = folder_.file("tree.xml");
};

TEST_F(ConfigTree, EveryValueReadsBackAndStandsInTheFileAsStated) {
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
    expect_value({"device", "v"}, value);
  }
}

TEST_F(ConfigTree, ValuesOfForeignFiles) {
  const std::pair<std::string, std::string> kRows[] = {
      // under "r", the value of "v"
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
    expect_value({"r", "v"}, value);
  }
  for (const char* empty : {"", "<?xml version=\"1.0\"?>\n<!-- c -->\r\n", "\xEF\xBB\xBF"}) {
    write(empty);
    expect_value({"device"}, "(none)");
    EXPECT_TRUE(Tree(kCfgChange, file_).store({"device", "a"}, "1")) << empty;
    expect_value({"device", "a"}, "1");
  }
}

// Of the children of a name the first one counts, in whatever order they are read.
TEST_F(ConfigTree, ReadsOfOneHandleAgreeInAnyOrder) {
  write("<r><b>1</b><d>2</d><b>3</b><a>4</a><?c x?><c>5</c><a>6</a></r>");
  const Texts kValues = {"4", "1", "5", "2", "(none)"};
  const Tree tree(kCfgRead, file_);
  for (const char name : std::string("bdacebbacdaabdeccadbeadcb")) {
    const std::string& value = kValues[static_cast<std::size_t>(name - 'a')];
    EXPECT_EQ(tree.value({"r", std::string(1, name)}), value) << name;
  }
}

TEST_F(ConfigTree, AChangeKeepsTheRestOfTheFile) {
  const std::string kRows[][4] = {
      {"<r>\n\t<a>1</a>\n</r>\n", "r/b", "2", "<r>\n\t<a>1</a>\n\t<b>2</b>\n</r>\n"},
      {"<r>\r\n    <a/>\r\n</r>", "r/a/b", "2",
       "<r>\r\n    <a>\r\n        <b>2</b>\r\n    </a>\r\n</r>"},
      {"<r> x </r>", "r/b", "2", "<r>&#32;x&#32;\n  <b>2</b>\n</r>"},
      {"<?xml version='1.0' encoding='UTF-8'?><!-- c --><?p q?><r x='\"&lt;' y=\"'\"/><!-- d -->",
       "r", "2",
       "<?xml version=\"1.0\" encoding=\"UTF-8\"?><!-- c --><?p q?>"
       "<r x=\"&quot;&lt;\" y=\"'\">2</r><!-- d -->"},
      {"\xEF\xBB\xBF<r>&#233;<b>&#x42;</b>\r\n</r>", "r/b", "2",
       "\xEF\xBB\xBF<r>&#233;<b>2</b>\r\n</r>"},
      {"<r>\n <v>old\n  <w/><!-- k -->\n more </v>\n</r>", "r/v", " new ",
       "<r>\n <v>&#32;new&#32;\n  <w/><!-- k --> </v>\n</r>"},
      {"<r><v encoding=\"base64\" k=\"1\">AQ==</v></r>", "r/v", "x", "<r><v k=\"1\">x</v></r>"},
      {"<r>\n  <a/>\n  <b><c/></b>\n  <d/>\n</r>", "r/b", "removed", "<r>\n  <a/>\n  <d/>\n</r>"},
      {"<r>\n  <a/>\n</r>", "r/a", "removed", "<r/>"},
      {"<r>text\n  <a/>\n</r>", "r/a", "removed", "<r>text</r>"},
      {"<!-- c -->\n<r><a/></r>\n", "r", "removed", "<!-- c -->\n"},
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

TEST_F(ConfigTree, AnElementHoldsAValueBesideOthersInWhateverOrderTheyAreStored) {
  const std::pair<Path, std::string> kStored[] = {
      {{"r"}, "a\r"}, {{"r", "a"}, " <&>"}, {{"r", "a", "b"}, "\x01"}, {{"r", "c"}, "x\n"}};
  std::size_t order[] = {0, 1, 2, 3};
  do {
    for (const char* before : {"", "<r> x <a>q<b/>\r\n<!-- k --></a>\r\n</r>"}) {
      write(before);
      Tree tree(kCfgChange, file_);
      for (const std::size_t at : order) {
        EXPECT_TRUE(tree.store(kStored[at].first, kStored[at].second));
      }
      EXPECT_TRUE(tree.close());
      for (const auto& [path, value] : kStored) {
        expect_value(path, value);
      }
    }
  } while (std::next_permutation(order, order + 4));
}

TEST_F(ConfigTree, HostileFilesAreRefusedAndLeftAlone) {
  std::string nested;
  for (int i = 0; i < 257; ++i) {
    nested = "<a>" + nested + "</a>";
  }
  const std::pair<std::string, const char*> kRows[] = {
      {"text", "text outside"},
      {"<a/><![CDATA[text]]>", "text outside"},
      {"<a></b>", "mismatch"},
      {"<a><b>half", "mismatch"},
      {"<a/><b/>", "second top element"},
      {"<!DOCTYPE a [<!ENTITY x \"y\"><!ENTITY z \"&x;\">]><a>&z;</a>", "document type"},
      {"\n<?xml version=\"1.0\"?><a/>", "not at the beginning"},
      {"<?xml encoding=\"UTF-8\"?><a/>", "declaration"},
      {"<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><a/>", "not UTF-8"},
      {"<a>\xE9</a>", "not text in UTF-8"},
      {std::string("<a>\0</a>", 8), "not text in UTF-8"},
      {"<a>&unknown;</a>", "ampersand"},
      {"<a>&#0;</a>", "ampersand"},
      {"<a b='&'/>", "ampersand"},
      {"<a b='<'/>", "\"<\" in an attribute"},
      {"<a b='1' b='2'/>", "stands twice"},
      {"<a>]]></a>", "]]>"},
      {"<!-- a -- b --><a/>", "comment"},
      {"<a\xC3\x97/>", "a name"},
      {nested, "too deep"},
  };
  for (const auto& [hostile, reason] : kRows) {
    write(hostile);
    test::take_log();
    EXPECT_FALSE(Tree(kCfgChange, file_).is_open()) << hostile.substr(0, 80);
    const auto log = test::take_product_log();
    ASSERT_EQ(log.size(), 1U);
    EXPECT_TRUE(log[0].starts_with("[cfgtree] " + file_)) << log[0];
    EXPECT_NE(log[0].find(reason), std::string::npos) << log[0];
    EXPECT_EQ(bytes(), hostile);
  }
  write(nested.substr(3, nested.size() - 7));
  EXPECT_TRUE(Tree(kCfgChange, file_).is_open());
}

TEST_F(ConfigTree, WhatIsNoFileOrTooLargeIsRefused) {
  write("<?xml version=\"1.0\"?>");
  ASSERT_EQ(truncate(file_.c_str(), 100'000'000), 0);
  ASSERT_EQ(mkfifo(folder_.file("fifo").c_str(), 0600), 0);
  for (const std::string& path : {file_, folder_.file("fifo"), folder_.path(),
                                  folder_.file("none.xml"), file_ + "/x", std::string()}) {
    test::take_log();
    EXPECT_FALSE(Tree(kCfgRead, path).is_open() || Tree(kCfgChange, path).is_open()) << path;
    EXPECT_EQ(test::take_product_log().size(), 2U) << path;
  }
  EXPECT_EQ(std::filesystem::file_size(file_), 100'000'000U);
  EXPECT_EQ(xmlcfg_open(kCfgRead, nullptr), nullptr);
}

TEST_F(ConfigTree, WhatMayNotBeStoredIsRefusedWithALogLine) {
  const std::string before = "<device><a>1</a></device>";
  write(before);
  Tree tree(kCfgChange, file_);
  for (const char* name : {"", "1a", "-a", "a b", "a:b", "<", "\xC3", "a\xC3\x97", "a/b"}) {
    test::take_log();
    EXPECT_FALSE(tree.store({"device", "new", name}, "x"));
    EXPECT_EQ(test::take_product_log().size(), 1U) << name;
  }
  EXPECT_FALSE(tree.store({"terminal", "a"}, "x") || tree.store({}, "x"));
  EXPECT_FALSE(tree.remove({"terminal"}));
  EXPECT_FALSE(xmlcfg_set_str(tree.handle(), nullptr, "device", nullptr));
  EXPECT_FALSE(xmlcfg_set_str(nullptr, "x", "device", nullptr));
  EXPECT_TRUE(tree.close());
  Tree reader(kCfgRead, file_);
  EXPECT_FALSE(reader.store({"device", "a"}, "2") || reader.remove({"device", "a"}));
  EXPECT_EQ(reader.value({"device", "a"}), "1");
  EXPECT_EQ(bytes(), before);
  EXPECT_TRUE(Tree(kCfgChange, file_).store({"device", "_\xC3\xA9-b.c"}, "x"));
}

template <int... kLevels>
static bool store_below(void* tree, std::integer_sequence<int, kLevels...>) {
  return xmlcfg_set_str(tree, "x", ((void)kLevels, "n")..., nullptr);
}

TEST_F(ConfigTree, PathsMayBe256NamesLong) {
  write("");
  Tree tree(kCfgChange, file_);
  EXPECT_FALSE(store_below(tree.handle(), std::make_integer_sequence<int, 257>()));
  EXPECT_TRUE(store_below(tree.handle(), std::make_integer_sequence<int, 256>()));
  EXPECT_TRUE(store_below(tree.handle(), std::make_integer_sequence<int, 12>()));
  EXPECT_TRUE(tree.close() && Tree(kCfgRead, file_).is_open());
}

TEST_F(ConfigTree, NumbersAndBooleans) {
  // value, number by default -7, boolean by default false and by default true
  for (const char* row :
       {" -3x|-3|01", "|-7|01", "99999999999|2147483647|01", "-99999999999999999|-2147483648|01",
        "1|1|11", "0|0|00", "TRUE|-7|11", "Yes|-7|11", "on|-7|11", "False|-7|00", "no|-7|00",
        "OFF|-7|00", " true|-7|01", "truer|-7|01"}) {
    const Texts parts = split(row, '|');
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
  using namespace std::literals;
  const std::string kRead[] = {"######"s,  "######"s,  "\0#####"s,
                               "a\0####"s, "a&\0###"s, "a&b\0##"s};
  for (int size = -1; size <= 4; ++size) {
    std::string buffer(6, '#');
    EXPECT_TRUE(xmlcfg_get_str(tree.handle(), "d", buffer.data(), size, "r", "v", nullptr));
    EXPECT_EQ(buffer, kRead[size + 1]) << size;
  }
  char buffer[4] = "x";
  EXPECT_FALSE(xmlcfg_get_str(tree.handle(), "default", buffer, sizeof(buffer), "r", "w", nullptr));
  EXPECT_STREQ(buffer, "def");
  EXPECT_FALSE(xmlcfg_get_str(tree.handle(), nullptr, buffer, sizeof(buffer), "w", nullptr));
  EXPECT_STREQ(buffer, "");
  EXPECT_TRUE(xmlcfg_get_str(tree.handle(), "d", nullptr, 4, "r", "v", nullptr));
}

TEST_F(ConfigTree, ACopyOutlivesItsHandleAndSeesNoLaterChange) {
  write("<r><filter><a> 1&gt;</a><b><c>2</c></b></filter><x/></r>");
  Tree tree(kCfgChange, file_);
  void** copy = xmlcfg_export_xmltree(tree.handle(), "r", "filter", nullptr);
  EXPECT_EQ(xmlcfg_export_xmltree(tree.handle(), "r", "none", nullptr), nullptr);
  EXPECT_EQ(xmlcfg_export_xmltree(tree.handle(), nullptr), nullptr);
  EXPECT_TRUE(tree.store({"r", "filter", "a"}, "changed") && tree.remove({"r", "filter", "b"}));
  tree.close();
  char value[8];
  EXPECT_TRUE(xmltree_get_str(copy, "", value, sizeof(value), "filter", "a", nullptr));
  EXPECT_STREQ(value, " 1>");
  EXPECT_EQ(xmltree_get_int(copy, 0, "filter", "b", "c", nullptr), 2);
  EXPECT_FALSE(xmltree_get_str(copy, "-", value, sizeof(value), "r", "x", nullptr));
  xmltree_destroy(copy);
  EXPECT_EQ(xmltree_get_int(nullptr, 3, "filter", nullptr), 3);
  xmltree_destroy(nullptr);
}

}  // namespace
