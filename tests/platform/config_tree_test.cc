#include "tests/support/config_tree.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <climits>
#include <cstring>
#include <filesystem>
#include <map>
#include <memory>
#include <random>
#include <thread>
#include <utility>

#include "orvaneip.h"
#include "tests/support/captured_log.h"
#include "tests/support/temp_folder.h"

namespace {

using test::Path;
using test::Tree;

const std::string kEmptyTree = "<?xml version=\"1.0\"?>";

class ConfigTree : public testing::Test {
 protected:
  void write(const std::string& bytes) const { test::write_file(file_, bytes); }
  std::string bytes() const { return test::read_file(file_); }

  const test::TempFolder folder_;
  const std::string file_ = folder_.file("tree.xml");
};

std::string repeated(int count, const std::string& text) {
  std::string all;
  for (int i = 0; i < count; ++i) {
    all += text;
  }
  return all;
}

TEST_F(ConfigTree, EveryValueReadsBackAndStandsInTheFileAsStated) {
  const std::string text = repeated(500, "4,000 by");
  const std::pair<std::string, std::string> kRows[] = {
      {"till", "<v>till</v>"},
      {"", "<v/>"},
      {"caf\xC3\xA9 \xF0\x9F\x98\x80", "<v>caf\xC3\xA9 \xF0\x9F\x98\x80</v>"},
      {"<&>\"'", "<v>&lt;&amp;&gt;\"'</v>"},
      {"]]>", "<v>]]&gt;</v>"},
      {"&amp;", "<v>&amp;amp;</v>"},
      // blanks and line ends
      {" ", "<v>&#32;</v>"},
      {" \ta b\n c\n", "<v>&#32;&#9;a b\n c&#10;</v>"},
      {"\r\n", "<v>&#13;&#10;</v>"},
      {"a\r\nb\rc", "<v>a&#13;\nb&#13;c</v>"},
      {text, "<v>" + text + "</v>"},
      // what XML cannot carry
      {"\x01", "<v encoding=\"base64\">AQ==</v>"},
      {"ab\x1F", "<v encoding=\"base64\">YWIf</v>"},
      {"\xFF\xFE\x80z", "<v encoding=\"base64\">//6Aeg==</v>"},
      {"\xED\xA0\x80", "<v encoding=\"base64\">7aCA</v>"},
      {"\xEF\xBF\xBF", "<v encoding=\"base64\">77+/</v>"},
      {"YQ==", "<v>YQ==</v>"},
  };
  for (const auto& [value, element] : kRows) {
    write(kEmptyTree);
    EXPECT_TRUE(Tree(kCfgChange, file_).store({"device", "v"}, value));
    EXPECT_EQ(bytes(), kEmptyTree + "\n<device>\n  " + element + "\n</device>\n");
    EXPECT_EQ(Tree(kCfgRead, file_).value({"device", "v"}), value);
    EXPECT_EQ(Tree(kCfgChange, file_).value({"device", "v"}), value);
  }
}

TEST_F(ConfigTree, ValuesOfForeignFiles) {
  const std::pair<std::string, std::string> kRows[] = {
      // under "r", the value of "v"
      {"<v> a </v>", " a "},
      {"<v>a\r\nb\rc&#13;</v>", "a\nb\nc\r"},
      {"<v>&lt;&#x41;&#66;&quot;&apos;</v>", "<AB\"'"},
      {"<v>a<!-- b -->c</v>", "ac"},
      {"<v>\n  a\n  <w/>\n  b\n</v>", "ab"},
      {"<v> <![CDATA[ <x>&lt; ]]> </v>", " <x>&lt; "},
      {"<v> <!-- --> </v>", ""},
      {"<v>1</v><v>2</v>", "1"},
      {"<?v x?><v>after an instruction</v>", "after an instruction"},
      {"<v encoding='base64'>\n AQ\n ==\n</v>", "\x01"},
      {"<v encoding='base64'>no such thing</v>", "no such thing"},
      {"<v encoding='base64'>AQ=A</v>", "AQ=A"},
      {"<w/>", "(none)"},
  };
  for (const auto& [element, value] : kRows) {
    write("<r>" + element + "</r>");
    EXPECT_EQ(Tree(kCfgRead, file_).value({"r", "v"}), value) << element;
    EXPECT_EQ(Tree(kCfgChange, file_).value({"r", "v"}), value) << element;
  }
}

TEST_F(ConfigTree, AnEmptyFileIsAnEmptyTree) {
  for (const std::string& empty : {std::string(), kEmptyTree, kEmptyTree + "\n<!-- c -->\r\n",
                                   std::string("\xEF\xBB\xBF"), std::string(" \n")}) {
    write(empty);
    EXPECT_EQ(Tree(kCfgRead, file_).value({"device"}), "(none)") << empty;
    EXPECT_TRUE(Tree(kCfgChange, file_).store({"device", "a"}, "1")) << empty;
    EXPECT_EQ(Tree(kCfgRead, file_).value({"device", "a"}), "1") << empty;
  }
}

TEST_F(ConfigTree, AChangeKeepsTheRestOfTheFile) {
  struct Row {
    std::string before;
    Path path;
    const char* value;  // null: remove
    std::string after;
  };
  const Row kRows[] = {
      {"<r>\n\t<a>1</a>\n</r>\n", {"r", "b"}, "2", "<r>\n\t<a>1</a>\n\t<b>2</b>\n</r>\n"},
      {"<r>\r\n    <a/>\r\n</r>",
       {"r", "a", "b"},
       "2",
       "<r>\r\n    <a>\r\n        <b>2</b>\r\n    </a>\r\n</r>"},
      {"<r><a/></r>", {"r", "b", "c"}, "2", "<r><a/><b><c>2</c></b></r>"},
      {"<r>\n</r>", {"r", "b"}, "2", "<r>\n  <b>2</b>\n</r>"},
      {"<r> x </r>", {"r", "b"}, "2", "<r>&#32;x&#32;\n  <b>2</b>\n</r>"},
      {"<?xml version='1.0' encoding='UTF-8'?><!-- c --><?p q?><r x='\"&lt;' y=\"'\"/><!-- d -->",
       {"r"},
       "2",
       "<?xml version=\"1.0\" encoding=\"UTF-8\"?><!-- c --><?p q?>"
       "<r x=\"&quot;&lt;\" y=\"'\">2</r><!-- d -->"},
      {"\xEF\xBB\xBF<r>&#233;<b>&#x42;</b>\r\n</r>",
       {"r", "b"},
       "2",
       "\xEF\xBB\xBF<r>&#233;<b>2</b>\r\n</r>"},
      {"<r>\n <v>old\n  <w/><!-- k -->\n more </v>\n</r>",
       {"r", "v"},
       " new ",
       "<r>\n <v>&#32;new&#32;\n  <w/><!-- k --> </v>\n</r>"},
      {"<r><v encoding=\"base64\" k=\"1\">AQ==</v></r>",
       {"r", "v"},
       "x",
       "<r><v k=\"1\">x</v></r>"},
      // removals
      {"<r>\n  <a/>\n  <b><c/></b>\n  <d/>\n</r>",
       {"r", "b"},
       nullptr,
       "<r>\n  <a/>\n  <d/>\n</r>"},
      {"<r>\n  <a/>\n</r>", {"r", "a"}, nullptr, "<r/>"},
      {"<r>text\n  <a/>\n</r>", {"r", "a"}, nullptr, "<r>text</r>"},
      {"<r><a>1</a><a>2</a></r>", {"r", "a"}, nullptr, "<r><a>2</a></r>"},
      {"<!-- c -->\n<r><a/></r>\n", {"r"}, nullptr, "<!-- c -->\n"},
  };
  for (const Row& row : kRows) {
    write(row.before);
    Tree tree(kCfgChange, file_);
    EXPECT_TRUE(row.value != nullptr ? tree.store(row.path, row.value) : tree.remove(row.path));
    EXPECT_TRUE(tree.close());
    EXPECT_EQ(bytes(), row.after);
  }
}

// Values stored at random, also at elements that hold others, are read back until they are removed.
TEST_F(ConfigTree, ValuesReadBackWhateverIsStoredAround) {
  const std::string kFiles[] = {
      "", "<r>\n</r>", "<r><a> </a><b>x\n<!-- k --></b></r>",
      "<?xml version=\"1.0\"?>\r\n<r>\r\n\t<a>q<a/></a>\r\n</r>\r\n<!--e-->",
      "<r>\n <a> one <b/> two </a>\n <b><![CDATA[<x>]]> </b>\n</r>"};
  const std::string kPieces[] = {" ", "\n", "\r", "x", "<", "&", ">", "\x01", "\xC3\xA9", "]]>"};
  std::mt19937 random(7);
  const auto below = [&random](std::size_t limit) { return random() % limit; };
  std::map<Path, std::string> model;
  const auto change = [&](Tree& tree) {
    Path path = {"r"};
    for (std::size_t depth = below(4); depth > 0; --depth) {
      path.emplace_back(1, static_cast<char>('a' + below(2)));
    }
    if (below(4) > 0) {
      std::string& value = model[path] = "";
      for (std::size_t i = below(4); i > 0; --i) {
        value += kPieces[below(std::size(kPieces))];
      }
      EXPECT_TRUE(tree.store(path, value));
      return;
    }
    tree.remove(path);
    std::erase_if(model, [&path](const auto& entry) {
      return entry.first.size() >= path.size() &&
             std::equal(path.begin(), path.end(), entry.first.begin());
    });
  };
  const auto expect_model = [&](const Tree& tree) {
    for (const auto& [path, value] : model) {
      ASSERT_EQ(tree.value(path), value) << bytes();
    }
  };
  for (int round = 0; round < 150 && !HasFatalFailure(); ++round) {
    if (round % 3 == 0) {
      model.clear();
      write(kFiles[below(std::size(kFiles))]);
    }
    Tree tree(kCfgChange, file_);
    for (int step = 0; step < 6; ++step) {
      change(tree);
      expect_model(tree);
    }
    EXPECT_TRUE(tree.close());
    expect_model(Tree(kCfgRead, file_));
    expect_model(Tree(kCfgChange, file_));
  }
}

TEST_F(ConfigTree, HostileFilesAreRefusedAndLeftAlone) {
  const std::pair<std::string, std::string> kRows[] = {
      {"text", "text outside"},
      {"<a></b>", "mismatch"},
      {"<a><b>half", "mismatch"},
      {"<a/>\n<", "within an element"},
      {"<a/><b/>", "second top element"},
      {"<a/>text", "text outside"},
      {"<a/><![CDATA[text]]>", "text outside"},
      {"<!DOCTYPE a><a/>", "document type"},
      {"<!DOCTYPE a [<!ENTITY x \"y\"><!ENTITY z \"&x;&x;\">]><a>&z;</a>", "document type"},
      {"\n<?xml version=\"1.0\"?><a/>", "not at the beginning"},
      {"<a/><?xml version=\"1.0\"?>", "not at the beginning"},
      {"<?xml encoding=\"UTF-8\"?><a/>", "declaration"},
      {"<?xml version=\"1.0\" standalone=\"si\"?><a/>", "declaration"},
      {"<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><a/>", "not UTF-8"},
      {"<a>\xE9</a>", "not text in UTF-8"},
      {"<a>\x01</a>", "not text in UTF-8"},
      {std::string("<a>\0</a>", 8), "not text in UTF-8"},
      {std::string("\xFF\xFE<\0a\0/\0>\0", 10), "not text in UTF-8"},
      {"<a>&unknown;</a>", "ampersand"},
      {"<a>&#0;</a>", "ampersand"},
      {"<a>&#x;</a>", "ampersand"},
      {"<a>a & b</a>", "ampersand"},
      {"<a b='&'/>", "ampersand"},
      {"<a b='<'/>", "\"<\" in an attribute"},
      {"<a b='1' b='2'/>", "stands twice"},
      {"<a>]]></a>", "]]>"},
      {"<!-- a -- b --><a/>", "comment"},
      {"<a\xC3\x97/>", "a name"},
      {repeated(257, "<a>") + repeated(257, "</a>"), "too deep"},
      {repeated(100'000, "<a>") + repeated(100'000, "</a>"), "too deep"},
  };
  for (const auto& [hostile, reason] : kRows) {
    for (const TCfgMode mode : {kCfgRead, kCfgChange}) {
      write(hostile);
      test::take_log();
      EXPECT_FALSE(Tree(mode, file_).is_open()) << hostile.substr(0, 80);
      const auto log = test::take_product_log();
      ASSERT_EQ(log.size(), 1U);
      EXPECT_TRUE(log[0].starts_with("[cfgtree] " + file_)) << log[0];
      EXPECT_NE(log[0].find(reason), std::string::npos) << log[0];
      EXPECT_EQ(bytes(), hostile);
    }
  }
  write(repeated(256, "<a>") + repeated(256, "</a>"));
  EXPECT_TRUE(Tree(kCfgChange, file_).is_open());
}

TEST_F(ConfigTree, WhatIsNoFileOrTooLargeIsRefused) {
  const std::string large = folder_.file("large.xml");
  write(kEmptyTree);
  std::filesystem::copy_file(file_, large);
  ASSERT_EQ(truncate(large.c_str(), 100'000'000), 0);
  const std::string fifo = folder_.file("fifo");
  ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
  for (const std::string& path :
       {large, fifo, folder_.path(), folder_.file("none.xml"), file_ + "/x", std::string()}) {
    for (const TCfgMode mode : {kCfgRead, kCfgChange}) {
      test::take_log();
      EXPECT_FALSE(Tree(mode, path).is_open()) << path;
      EXPECT_EQ(test::take_product_log().size(), 1U) << path;
    }
  }
  EXPECT_EQ(std::filesystem::file_size(large), 100'000'000U);
  EXPECT_EQ(xmlcfg_open(kCfgRead, nullptr), nullptr);
}

TEST_F(ConfigTree, WhatMayNotBeStoredIsRefusedWithALogLine) {
  const std::string before = "<device><a>1</a></device>";
  write(before);
  Tree tree(kCfgChange, file_);
  for (const char* name : {"", "1a", "-a", "a b", "a:b", "<", "a&", "\xC3", "a\xC3\x97", "a/b"}) {
    test::take_log();
    EXPECT_FALSE(tree.store({"device", "new", name}, "x")) << name;
    EXPECT_EQ(test::take_product_log().size(), 1U) << name;
  }
  EXPECT_FALSE(tree.store({"terminal", "a"}, "x"));
  EXPECT_FALSE(tree.store({}, "x"));
  EXPECT_FALSE(tree.remove({"terminal"}));
  EXPECT_FALSE(xmlcfg_set_str(tree.handle(), nullptr, "device", nullptr));
  EXPECT_FALSE(xmlcfg_set_str(nullptr, "x", "device", nullptr));
  EXPECT_EQ(tree.value({"terminal", "a"}), "(none)");
  const auto store_deep = [&tree]<std::size_t... kIndex>(std::index_sequence<kIndex...>) {
    return xmlcfg_set_str(tree.handle(), "x", "device", (static_cast<void>(kIndex), "a")...,
                          nullptr);
  };
  EXPECT_FALSE(store_deep(std::make_index_sequence<256>()));
  EXPECT_TRUE(tree.close());
  EXPECT_EQ(bytes(), before);

  Tree reader(kCfgRead, file_);
  EXPECT_FALSE(reader.store({"device", "a"}, "2") || reader.remove({"device", "a"}));
  EXPECT_EQ(reader.value({"device", "a"}), "1");

  Tree writer(kCfgChange, file_);
  for (const char* name : {"_", "a-b.c", "\xC3\xA9", "\xE4\xB8\xAD"}) {
    EXPECT_TRUE(writer.store({"device", name}, name)) << name;
  }
}

TEST_F(ConfigTree, NumbersAndBooleans) {
  struct Row {
    const char* value;
    int number;     // default -7
    bool with_no;   // read with the default false
    bool with_yes;  // and true
  };
  const Row kRows[] = {
      {"12", 12, false, true},
      {" -3x", -3, false, true},
      {"x", -7, false, true},
      {"", -7, false, true},
      {"99999999999", INT_MAX, false, true},
      {"-99999999999999999999", INT_MIN, false, true},
      {"1", 1, true, true},
      {"0", 0, false, false},
      {"TRUE", -7, true, true},
      {"Yes", -7, true, true},
      {"on", -7, true, true},
      {"False", -7, false, false},
      {"no", -7, false, false},
      {"OFF", -7, false, false},
      {" true", -7, false, true},
      {"truer", -7, false, true},
  };
  for (const Row& row : kRows) {
    write("<r><v>" + std::string(row.value) + "</v></r>");
    const Tree tree(kCfgRead, file_);
    void* handle = tree.handle();
    EXPECT_EQ(xmlcfg_get_int(handle, -7, "r", "v", nullptr), row.number) << row.value;
    EXPECT_EQ(xmlcfg_get_bool(handle, false, "r", "v", nullptr), row.with_no) << row.value;
    EXPECT_EQ(xmlcfg_get_bool(handle, true, "r", "v", nullptr), row.with_yes) << row.value;
    void** copy = xmlcfg_export_xmltree(handle, "r", "v", nullptr);
    EXPECT_EQ(xmltree_get_int(copy, -7, "v", nullptr), row.number) << row.value;
    xmltree_destroy(copy);
  }
  EXPECT_EQ(xmlcfg_get_int(nullptr, 5, "r", nullptr), 5);
  EXPECT_TRUE(xmlcfg_get_bool(nullptr, true, "r", nullptr));
}

TEST_F(ConfigTree, AReadStaysInItsBuffer) {
  write("<r><v>a&amp;b</v></r>");
  const Tree tree(kCfgRead, file_);
  for (int size = -1; size <= 8; ++size) {
    char buffer[8];
    std::memset(buffer, '#', sizeof(buffer));
    EXPECT_TRUE(xmlcfg_get_str(tree.handle(), "d", buffer, size, "r", "v", nullptr));
    const std::size_t room = static_cast<std::size_t>(std::max(size, 0));
    std::string expected = room > 0 ? std::string("a&b").substr(0, room - 1) + '\0' : "";
    expected.resize(sizeof(buffer), '#');
    EXPECT_EQ(std::string(buffer, sizeof(buffer)), expected) << size;
  }
  char buffer[4] = "x";
  EXPECT_FALSE(xmlcfg_get_str(tree.handle(), "default", buffer, sizeof(buffer), "r", "w", nullptr));
  EXPECT_STREQ(buffer, "def");
  EXPECT_FALSE(xmlcfg_get_str(tree.handle(), nullptr, buffer, sizeof(buffer), "w", nullptr));
  EXPECT_STREQ(buffer, "");
  EXPECT_TRUE(xmlcfg_get_str(tree.handle(), "d", nullptr, 4, "r", "v", nullptr));
}

using Copy = std::unique_ptr<void*, decltype(&xmltree_destroy)>;

TEST_F(ConfigTree, ACopyOutlivesItsHandleAndSeesNoLaterChange) {
  for (const TCfgMode mode : {kCfgRead, kCfgChange}) {
    write("<r><filter><a> 1&gt;</a><b><c>2</c></b></filter><x/></r>");
    Tree tree(mode, file_);
    const Copy copy(xmlcfg_export_xmltree(tree.handle(), "r", "filter", nullptr), xmltree_destroy);
    EXPECT_EQ(xmlcfg_export_xmltree(tree.handle(), "r", "none", nullptr), nullptr);
    EXPECT_EQ(xmlcfg_export_xmltree(tree.handle(), nullptr), nullptr);
    tree.store({"r", "filter", "a"}, "changed");
    tree.remove({"r", "filter", "b"});
    tree.close();
    std::vector<std::thread> readers;
    for (int i = 0; i < 4; ++i) {
      readers.emplace_back([&copy] {
        char value[8];
        EXPECT_TRUE(xmltree_get_str(copy.get(), "", value, sizeof(value), "filter", "a", nullptr));
        EXPECT_STREQ(value, " 1>");
        EXPECT_EQ(xmltree_get_int(copy.get(), 0, "filter", "b", "c", nullptr), 2);
        EXPECT_FALSE(xmltree_get_str(copy.get(), "-", value, sizeof(value), "r", "x", nullptr));
      });
    }
    for (std::thread& reader : readers) {
      reader.join();
    }
  }
  EXPECT_EQ(xmltree_get_int(nullptr, 3, "filter", nullptr), 3);
  xmltree_destroy(nullptr);
}

}  // namespace
