#include "tests/support/config_tree.h"

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <map>
#include <random>

#include "tests/support/library.h"

namespace {

using test::Path;
using test::Tree;
using Texts = std::vector<std::string>;

const std::string kEmptyTree = "<?xml version=\"1.0\"?>";

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
    write(kEmptyTree);
    EXPECT_TRUE(Tree(kCfgChange, file_).store({"device", "v"}, value));
    EXPECT_EQ(bytes(), kEmptyTree + "\n<device>\n  " + element + "\n</device>\n");
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
  for (const std::string& empty :
       {std::string(), kEmptyTree + "\n<!-- c -->\r\n", std::string("\xEF\xBB\xBF")}) {
    write(empty);
    expect_value({"device"}, "(none)");
    EXPECT_TRUE(Tree(kCfgChange, file_).store({"device", "a"}, "1")) << empty;
    expect_value({"device", "a"}, "1");
  }
}

// Many reads of one handle: of the children of a name the first one counts, in whatever order.
TEST_F(ConfigTree, ReadsOfOneHandleAgreeInAnyOrder) {
  write("<r><b>1</b><d>2</d><b>3</b><a>4</a><?c x?><c>5</c><a>6</a></r>");
  const std::map<std::string, std::string> kValues = {
      {"a", "4"}, {"b", "1"}, {"c", "5"}, {"d", "2"}, {"e", "(none)"}};
  const Tree tree(kCfgRead, file_);
  std::mt19937 random(5);
  for (int i = 0; i < 200; ++i) {
    const std::string name(1, static_cast<char>('a' + random() % 5));
    EXPECT_EQ(tree.value({"r", name}), kValues.at(name)) << i << name;
  }
}

TEST_F(ConfigTree, AChangeKeepsTheRestOfTheFile) {
  struct Row {
    std::string before, path, value, after;
  };
  const Row kRows[] = {
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
    const Path path = split(names, '/');
    write(before);
    Tree tree(kCfgChange, file_);
    EXPECT_TRUE(value == "removed" ? tree.remove(path) : tree.store(path, value));
    EXPECT_TRUE(tree.close());
    EXPECT_EQ(bytes(), after);
  }
}

// Values stored at random, also at elements that hold others, are read back until they are removed.
TEST_F(ConfigTree, ValuesReadBackWhateverIsStoredAround) {
  const Texts kFiles = {"", "<r><a> </a><b>x\n<!-- k --></b></r>",
                        "<?xml version=\"1.0\"?>\r\n<r>\r\n\t<a>q<a/></a>\r\n</r>\r\n<!--e-->",
                        "<r>\n <a> one <b/> two </a>\n <b><![CDATA[<x>]]> </b>\n</r>"};
  const Texts kPieces = {" ", "\n", "\r", "x", "<", "&", ">", "\x01", "\xC3\xA9", "]]>"};
  std::mt19937 random(7);
  std::map<Path, std::string> model;
  const auto change = [&](Tree& tree) {
    Path path = {"r"};
    for (std::size_t depth = random() % 4; depth > 0; --depth) {
      path.emplace_back(random() % 2 == 0 ? "a" : "b");
    }
    if (random() % 4 == 0) {
      tree.remove(path);
      std::erase_if(model, [&path](const auto& entry) {
        return entry.first.size() >= path.size() &&
               std::equal(path.begin(), path.end(), entry.first.begin());
      });
      return;
    }
    std::string& value = model[path] = "";
    for (std::size_t i = random() % 4; i > 0; --i) {
      value += kPieces[random() % kPieces.size()];
    }
    EXPECT_TRUE(tree.store(path, value));
  };
  const auto expect_model = [&](const Tree& tree) {
    for (const auto& [path, value] : model) {
      ASSERT_EQ(tree.value(path), value) << bytes();
    }
  };
  for (int round = 0; round < 150 && !HasFatalFailure(); ++round) {
    if (round % 3 == 0) {
      model.clear();
      write(kFiles[random() % kFiles.size()]);
    }
    Tree tree(kCfgChange, file_);
    for (int step = 0; step < 6; ++step) {
      change(tree);
      expect_model(tree);
    }
    EXPECT_TRUE(tree.close());
    expect_model(Tree(kCfgRead, file_));
  }
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
  write(kEmptyTree);
  ASSERT_EQ(truncate(file_.c_str(), 100'000'000), 0);
  ASSERT_EQ(mkfifo(folder_.file("fifo").c_str(), 0600), 0);
  for (const std::string& path : {file_, folder_.file("fifo"), folder_.path(),
                                  folder_.file("none.xml"), file_ + "/x", std::string()}) {
    for (const TCfgMode mode : {kCfgRead, kCfgChange}) {
      test::take_log();
      EXPECT_FALSE(Tree(mode, path).is_open()) << path;
      EXPECT_EQ(test::take_product_log().size(), 1U) << path;
    }
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

TEST_F(ConfigTree, NumbersAndBooleans) {
  // value, number by default -7, boolean by default false and by default true
  for (const char* row :
       {" -3x|-3|01", "|-7|01", "99999999999|2147483647|01", "-99999999999999999|-2147483648|01",
        "1|1|11", "0|0|00", "TRUE|-7|11", "Yes|-7|11", "on|-7|11", "False|-7|00", "no|-7|00",
        "OFF|-7|00", " true|-7|01", "truer|-7|01"}) {
    const Texts parts = split(row, '|');
    write("<r><v>" + parts[0] + "</v></r>");
    const Tree tree(kCfgRead, file_);
    const auto truth = [&tree](bool by_default) {
      return xmlcfg_get_bool(tree.handle(), by_default, "r", "v", nullptr) ? "1" : "0";
    };
    EXPECT_EQ(xmlcfg_get_int(tree.handle(), -7, "r", "v", nullptr), std::stoi(parts[1])) << row;
    EXPECT_EQ(std::string(truth(false)) + truth(true), parts[2]) << row;
  }
  EXPECT_TRUE(xmlcfg_get_bool(nullptr, true, "r", nullptr));
}

TEST_F(ConfigTree, AReadStaysInItsBuffer) {
  write("<r><v>a&amp;b</v></r>");
  const Tree tree(kCfgRead, file_);
  using namespace std::literals;
  const std::string kRead[] = {"######"s,  "######"s,  "\0#####"s, "a\0####"s,
                               "a&\0###"s, "a&b\0##"s, "a&b\0##"s};
  for (int size = -1; size <= 5; ++size) {
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
  for (const TCfgMode mode : {kCfgRead, kCfgChange}) {
    write("<r><filter><a> 1&gt;</a><b><c>2</c></b></filter><x/></r>");
    Tree tree(mode, file_);
    void** copy = xmlcfg_export_xmltree(tree.handle(), "r", "filter", nullptr);
    EXPECT_EQ(xmlcfg_export_xmltree(tree.handle(), "r", "none", nullptr), nullptr);
    EXPECT_EQ(xmlcfg_export_xmltree(tree.handle(), nullptr), nullptr);
    tree.store({"r", "filter", "a"}, "changed");
    tree.remove({"r", "filter", "b"});
    tree.close();
    char value[8];
    EXPECT_TRUE(xmltree_get_str(copy, "", value, sizeof(value), "filter", "a", nullptr));
    EXPECT_STREQ(value, " 1>");
    EXPECT_EQ(xmltree_get_int(copy, 0, "filter", "b", "c", nullptr), 2);
    EXPECT_FALSE(xmltree_get_str(copy, "-", value, sizeof(value), "r", "x", nullptr));
    xmltree_destroy(copy);
  }
  EXPECT_EQ(xmltree_get_int(nullptr, 3, "filter", nullptr), 3);
  xmltree_destroy(nullptr);
}

}  // namespace
