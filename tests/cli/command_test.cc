#include "tests/cli/command.h"

#include "tests/support/bare_sqlite.h"

using test::CommandVault;

const std::string kName64(64, 'n'), kDescription512(512, 'd');

TEST(Command, AcceptsValuesOfAnyKindAndOfFullLength) {
  CommandVault().check({
      {"list", 0, "no data sources"},
      {"channels", 0, "no channels"},
      // The rest of a --channel is its name; what looks like a command or a list is a value.
      {"add list --type [a,b] --name remove --disabled --channel 7:g:a:b --channel 2:c:", 0,
       "list\n"},
      {"add - --type t --name " + kName64 + " --description " + kDescription512, 0, "-\n"},
      {"list", 0, "0     list remove "},
      {"channels list", 0, "list        2       c      \nlist        7       g      a:b"},
      {"modify list --name Front --enable --channels -", 0, "Channels    2      0", "[]"},
      {"modify - --description '' --disable", 0, "(none)"},
      {"show -", 0, "Description   \nIndex         1\nEnabled       no\n"},
      {"remove list nobody", 1, "no data source \"nobody\""},
      {"remove [list]", 1, "in square brackets cannot be removed"},
      {"remove list - list", 0, "removed list (Front)\nremoved - ("},
      {"show list", 1, "devcfg: there is no data source \"list\"\n"},
  });
}

TEST(Command, ErrorsAndWrongUsageChangeNothing) {
  const CommandVault vault;
  vault.import_shop();
  const std::string before = vault.content(), set = "filters set till-1 -";
  const std::string modify = "modify till-1 --channels -";
  vault.check({
      {"add till-1 --type t --name n", 1, "already exists"},
      {"add x --type t --name ''", 1, "a name must not be empty"},
      {"add x --type t --name n" + kName64, 1, "longer than 64 bytes"},
      {"modify till-1 --description d" + kDescription512, 1, "512 bytes"},
      {"camera removed ''", 1, "the guid of a camera must not be empty"},
      {"camera renamed cam-none x", 0, "renamed 0 channels"},
      {"show $'a\\x1b[2J\\x7f\\xc2\\x9b'", 1, "\"a\\x1b[2J\\x7f\\xc2\\x9b\""},
      {modify, 1, "the document: the channel list is not a JSON array", "null"},
      {modify, 1, "entry 0.x: unknown key", R"([{"guid":"a","channel_index":0,"name":"","x":1}])"},
      {set, 1, "the document: not an array", "{}"},
      {set, 1, "entry 0.result: contains a NUL character", R"([{"result":"a\u0000b"}])"},
      {set, 1, "2 problems:\n  entry 0.type: -1 means no type, and",
       R"([{"type":-1},{"type":2147483648}])"},
      {"", 2, "devcfg: A subcommand is required"},
      {"modify x", 2, "nothing to change is given"},
      {"modify x --channel 1:a", 2, "is not INDEX:GUID:NAME"},
      {"search like -x", 2, "put -- before an argument that begins with a dash: -- -x"},
      {"--version", 0, "devcfg 0."},
      {"camera renamed --help", 0, "Example:\n  devcfg camera"},
  });
  EXPECT_EQ(vault.devcfg("list --log").errors, vault.devcfg("--log list").errors);
  EXPECT_NE(vault.devcfg("show x --json --log").errors, "");
  EXPECT_EQ(vault.content(), before);
}

TEST(Command, ShowsFilteringAndSearchPatterns) {
  const CommandVault vault;
  vault.import_shop();
  vault.check({
      {"filters set till-1 -", 0, "2 filters",
       R"([{"target":"cat","result":"dog"},{"target":"x","result":"xx"}])"},
      {"filter-text till-1", 0, "a dog\ndog\n\nxx", "a cat\ncat\n\nx"},
      {"filter-text till-1 --whole 2>&1", 0, "999 passes", "x\nx"},
      {"filter-text till-1 --whole 2>&-", 0, std::string(1000, 'x') + "\nx", "x\nx"},
      {"filter-text till-1 --hits 2>&1", 0, "3  \"cat\" -> \"dog\"", "cat cat\ncat"},
      {"filter-text till-1 >&2", 1, "dog\ndevcfg: text 2 contains a NUL",
       std::string("cat\na\0b", 7)},
      {"filter-text none", 1, "no data source \"none\"", "cat"},
      {"filter-text ''", 1, "the ID is empty", "cat"},
      {"search like --json 'a b'", 0, "[\n  \"a\",\n  \"b\"\n]\n"},
      {"search regex 'a.b + c'", 0, "a\\.b|c\n"},
      {"metadata remove m", 1, "\"m\" was not removed"},
  });
  test::BareSqlite(vault.database()).exec("UPDATE filter SET type = -1 WHERE target = 'x'");
  vault.check({{"filter-text till-1 >&2", 1, "only the first 1 filters", "cat"}});
}

TEST(Command, ComparesAndUpgradesATable) {
  const CommandVault directory;
  const std::string current = directory.file("current.db t "),
                    wanted = directory.file("wanted.db ");
  const std::string clash = directory.file("clash.db t ");
  test::BareSqlite(directory.file("current.db")).exec("CREATE TABLE t(a integer)");
  test::BareSqlite(directory.file("clash.db")).exec("CREATE TABLE t(a, F)");
  const test::BareSqlite database(directory.file("wanted.db"));
  database.exec(
      "CREATE TABLE t(a integer, b TEXT UNIQUE NOT NULL DEFAULT 'x',"
      "\"c d\" DECIMAL(10, 2), e BIG INT CHECK(1) REFERENCES q ON DELETE CASCADE,"
      "f/*DEFERRABLE*/ AS (1), g COLLATE NOCASE PRIMARY KEY, UNIQUE(b, e));"
      "CREATE UNIQUE INDEX i ON t(g)");
  const std::string missing =
      "devcfg: the wanted table also has what added columns do not get: CHECK, COLLATE\n"
      "MISSING COLUMN TYPE          CANNOT BE ADDED\n"
      "b              TEXT          NOT NULL, DEFAULT 'x', UNIQUE (b, e), UNIQUE\n"
      "c d            DECIMAL(10,2) \n"
      "e              BIG           type BIG INT, UNIQUE (b, e), REFERENCES q ON DELETE CASCADE\n"
      "f                            GENERATED\n"
      "g                            PRIMARY KEY, UNIQUE INDEX\n";
  const std::string plan =
      "ALTER TABLE t ADD b TEXT;\nALTER TABLE t ADD \"c d\" DECIMAL(10,2);\n"
      "ALTER TABLE t ADD e BIG;\nALTER TABLE t ADD f;\nALTER TABLE t ADD g;\n";
  directory.check({
      {"schema show " + current, 0, "COLUMN TYPE\na      integer\n"},
      {"schema show " + directory.file("none.db t"), 1, "devcfg: cannot read "},
      {"schema upgrade --dry-run " + current + wanted, 0, plan},
      {"schema diff >&2 " + current + wanted, 1, missing},
      {"schema upgrade " + current + wanted, 0, plan},
      {"schema diff --json " + current + wanted, 0, "[\n]\n"},
      {"schema upgrade --dry-run " + clash + wanted, 1,
       "column f cannot be added: SQLite does not distinguish it from column F; nothing was "
       "changed\n"},
  });
}
