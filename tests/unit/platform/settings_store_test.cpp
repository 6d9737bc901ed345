#include "platform/settings/settings_store.h"

#include <gtest/gtest.h>

#include "platform/files/system_calls.h"
#include "platform/text/shift_jis.h"
#include "tests/support/test_platform.h"

namespace qv {
namespace {

namespace fs = std::filesystem;
using testing::TestPlatform;

SettingValue textValue(std::string_view text) {
  SettingValue value;
  value.data.assign(text.begin(), text.end());
  value.data.push_back(0);
  return value;
}

class SettingsStoreTest : public ::testing::Test {
 protected:
  TestPlatform platform;
  fs::path file = platform.player() / "own" / "settings.toml";
};

TEST_F(SettingsStoreTest, KeepsLastingValuesAcrossRuns) {
  const SettingValue number{4, {0x78, 0x56, 0x34, 0x12}}, bytes{3, {0, 255, 7}};
  {
    SettingsStore store(file);
    EXPECT_TRUE(store.set("HKEY_CURRENT_USER\\EUDC\\932", "Font",
                          textValue(sjis("C:\\フォント.tte")), true));
    EXPECT_TRUE(store.set("HKEY_CURRENT_USER\\Other", "number", number, true));
    EXPECT_TRUE(store.set("HKEY_CURRENT_USER\\Other", "bytes", bytes, true));
  }
  SettingsStore store(file);
  EXPECT_EQ(store.complaint(), "");
  EXPECT_EQ(store.get("HKEY_CURRENT_USER\\EUDC\\932", "Font"), textValue(sjis("C:\\フォント.tte")));
  EXPECT_EQ(store.get("hkey_current_user\\other", "NUMBER"), number);
  EXPECT_EQ(store.get("HKEY_CURRENT_USER\\Other", "bytes"), bytes);
  EXPECT_FALSE(store.get("HKEY_CURRENT_USER\\Other", "none"));
  EXPECT_FALSE(store.get("HKEY_CURRENT_USER", "bytes"));
}

TEST_F(SettingsStoreTest, IsATextThatAPersonCanRead) {
  SettingsStore store(file);
  store.set("HKEY_CURRENT_USER\\EUDC\\932", "SystemDefaultEUDCFont",
            textValue(sjis("C:\\dat\\フォント.tte")), true);
  store.set("HKEY_CURRENT_USER\\EUDC\\932", "CD-ROM", textValue("D:"), true);
  store.set("HKEY_CURRENT_USER\\EUDC\\932", "count", {4, {200, 0, 0, 0}}, true);
  EXPECT_EQ(platform.readFile(file),
            "# What the game remembers beside its saves. Texts stand in quotes, bytes in a list.\n"
            "\n"
            "['HKEY_CURRENT_USER\\EUDC\\932']\n"
            "\"CD-ROM\" = \"D:\"\n"
            "\"SystemDefaultEUDCFont\" = 'C:\\dat\\フォント.tte'\n"
            "\"count\" = 200\n");
}

TEST_F(SettingsStoreTest, KeepsBytesThatAreNoTextExactly) {
  const std::vector<SettingValue> values = {
      {1, {}},                // no final zero
      {1, {'a', 'b'}},        // none either
      {1, {'a', 0, 'b', 0}},  // one inside
      {1, {0x81, 0}},         // half a character
      {1, {0x87, 0x90, 0}},   // a second code of a character
      {4, {1, 2}},
      {3, {}},
      {7, {1, 2, 3}},
      textValue(""),
      textValue("\"quotes\" 'and' \\ \n\t\x01\x7F"),
      textValue("'\\'"),
      textValue(std::string(300, '.')),
      textValue(std::string(5000, 'x')),
  };
  SettingsStore::Table table;
  for (size_t at = 0; at < values.size(); ++at)
    table["key"][std::to_string(at)] = values[at];
  table["\x81\xFF bad"]["\x82"] = textValue("x");
  table["hex:41"][""] = textValue("x");
  table[std::string(600, '.')][std::string(200, '.')] = textValue(std::string(200, '.'));
  std::string complaint;
  const std::string text = SettingsStore::format(table);
  const auto back = SettingsStore::parse(text, complaint);
  ASSERT_TRUE(back) << complaint << "\n" << text;
  EXPECT_EQ(*back, table) << text;
}

TEST_F(SettingsStoreTest, KeepsVolatileValuesForThisRunOnly) {
  {
    SettingsStore store(file);
    EXPECT_TRUE(store.set("key", "CD-ROM", textValue("D:"), false));
    EXPECT_EQ(store.get("key", "CD-ROM"), textValue("D:"));
    EXPECT_FALSE(fs::exists(file));
  }
  EXPECT_FALSE(SettingsStore(file).get("key", "CD-ROM"));
}

TEST_F(SettingsStoreTest, LetsTheLaterOfVolatileAndLastingValuesHold) {
  SettingsStore store(file);
  store.set("key", "name", textValue("lasting"), true);
  store.set("key", "name", textValue("volatile"), false);
  EXPECT_EQ(store.get("key", "name"), textValue("volatile"));
  store.set("key", "name", textValue("lasting"), true);
  EXPECT_EQ(store.get("key", "name"), textValue("lasting"));
}

TEST_F(SettingsStoreTest, LastsNowhereWithoutAFile) {
  SettingsStore store{fs::path()};
  EXPECT_FALSE(store.set("key", "name", textValue("x"), true));
  EXPECT_EQ(store.get("key", "name"), textValue("x"));
}

TEST_F(SettingsStoreTest, KeepsABrokenFileAsideAndStartsEmpty) {
  platform.writeFile(file, "[key]\nname = \"x\"\nthis is no setting\n");
  SettingsStore store(file);
  EXPECT_FALSE(store.get("key", "name"));
  EXPECT_NE(store.complaint().find("line 3"), std::string::npos) << store.complaint();
  EXPECT_NE(store.complaint().find("settings.toml.broken"), std::string::npos);
  EXPECT_FALSE(fs::exists(file));
  EXPECT_EQ(platform.readFile(fs::path(file) += ".broken"),
            "[key]\nname = \"x\"\nthis is no setting\n");
  EXPECT_TRUE(store.set("key", "name", textValue("y"), true));
  EXPECT_EQ(SettingsStore(file).get("key", "name"), textValue("y"));
}

TEST_F(SettingsStoreTest, SaysWhereAFileIsWrong) {
  const std::pair<const char*, const char*> cases[] = {
      {"x = 1\n", "line 1: a value outside of any key"},
      {"\nx = { y = 1 }\n", "line 2: a value outside of any key"},
      {"[k]\nx = 1.5\n", "line 2: a value that is neither text, number nor bytes"},
      {"[k]\nx = -1\n", "line 2: a number out of its range"},
      {"[k]\nx = 4294967296\n", "line 2: a number out of its range"},
      {"[k]\nx = [1, 256]\n", "line 2: a number out of its range"},
      {"[k]\nx = [1, 'a']\n", "line 2: a value that is neither text, number nor bytes"},
      {"[k]\nx = 'é'\n", "line 2: a text that Shift-JIS cannot say"},
      {"[k]\nx = \"a\\u0000b\"\n", "line 2: a text that Shift-JIS cannot say"},
      {"[k]\n'é' = 1\n", "line 2: a name that Shift-JIS cannot say"},
      {"['hex:4']\n", "line 1: a name in hexadecimal that is none"},
      {"['hex:4G']\n", "line 1: a name in hexadecimal that is none"},
      {"[k]\nx = { type = 1 }\n",
       "line 2: a value of a kind of its own is { type = 7, bytes = [1] }"},
      {"[k]\nx = 1 2\n", "line 2: more in the line than there should be"},
      {"[k]\nx = 1\nx = 2\n", "line 3: a name that was there before"},
      {"[k]\n\n[k]\n", "line 3: a key that was there before"},
      {"[k.l]\n", "line 1: a key is one name in brackets"},
      {"[k]\nx = \"a\n\"\n", "line 2: a text that does not end in its line"},
      {"[k]\nx = \"\\q\"\n", "line 2: an escape that is none"},
      {"[k]\nx = \"\\uD800\"\n", "line 2: an escape that is none"},
      {"[k]\nx = \"\\u12\"\n", "line 2: an escape that is none"},
      {"[k]\nx = [1,\n2\n", "line 4: a list of bytes that does not end"},
      {"[k]\nx = [\n", "line 3: a value that is neither text, number nor bytes"},
      {"[k]\nx\n", "line 2: a name without its value"},
      {"[k]\n\x01", "line 2: neither a key in brackets nor a name with its value"},
      {"[k]\nx = 0x\n", "line 2: a value that is neither text, number nor bytes"},
      {"[k]\nx = 99999999999999999999999\n", "line 2: a number out of its range"},
  };
  for (const auto& [text, expected] : cases) {
    std::string complaint;
    EXPECT_FALSE(SettingsStore::parse(text, complaint)) << text;
    EXPECT_EQ(complaint, expected) << text;
  }
}

TEST_F(SettingsStoreTest, IsBoundedInSizeAndNeverNests) {
  std::string complaint;
  EXPECT_FALSE(SettingsStore::parse("# " + std::string(1024 * 1024, 'x'), complaint));
  EXPECT_EQ(complaint, "line 1: larger than a mebibyte");
  EXPECT_FALSE(SettingsStore::parse("[k]\nx = " + std::string(1'000'000, '['), complaint));
  EXPECT_FALSE(SettingsStore::parse(std::string(1'000'000, '['), complaint));

  platform.writeFile(file, "# " + std::string(1024 * 1024, 'x'));
  SettingsStore store(file);
  EXPECT_NE(store.complaint(), "");
  EXPECT_TRUE(fs::exists(fs::path(file) += ".broken"));
}

TEST_F(SettingsStoreTest, LeavesAFolderInTheFilesPlaceAlone) {
  fs::create_directories(file / "inside");
  SettingsStore store(file);
  EXPECT_NE(store.complaint(), "");
  EXPECT_FALSE(store.set("key", "name", textValue("x"), true));
  EXPECT_TRUE(fs::exists(file / "inside"));
}

TEST_F(SettingsStoreTest, KeepsTheOldFileWhenTheNewOneCannotBeWritten) {
  SettingsStore store(file);
  ASSERT_TRUE(store.set("key", "name", textValue("old"), true));
  const std::string before = platform.readFile(file);
  fileCalls().writeAt = [](int, const void*, size_t, off_t) -> ssize_t {
    errno = ENOSPC;
    return -1;
  };
  EXPECT_FALSE(store.set("key", "name", textValue("new"), true));
  fileCalls() = machineFileCalls();
  EXPECT_EQ(platform.readFile(file), before);
  EXPECT_EQ(store.get("key", "name"), textValue("new"));
  EXPECT_EQ(std::distance(fs::directory_iterator(file.parent_path()), fs::directory_iterator()), 1);
  EXPECT_TRUE(store.set("key", "name", textValue("new"), true));
  EXPECT_EQ(SettingsStore(file).get("key", "name"), textValue("new"));
}

TEST_F(SettingsStoreTest, ReadsWhatAPersonTypedInOtherWords) {
  std::string complaint;
  const auto table = SettingsStore::parse(
      "\xEF\xBB\xBF# by hand\r\n[\"a\\\\b\"]\r\nCD-ROM = 'E:' # here\r\nmask = 0xFF\r\n"
      "list = [\r\n 1,\r\n 0x02,\r\n]\r\n",
      complaint);
  ASSERT_TRUE(table) << complaint;
  EXPECT_EQ(table->at("a\\b").at("CD-ROM"), textValue("E:"));
  EXPECT_EQ(table->at("a\\b").at("mask"), (SettingValue{4, {255, 0, 0, 0}}));
  EXPECT_EQ(table->at("a\\b").at("list"), (SettingValue{3, {1, 2}}));
}

}  // namespace
}  // namespace qv
