#include "foundation/registry_key.h"

#include <cstring>

#include <gtest/gtest.h>

#include "foundation/heap.h"
#include "platform/text/shift_jis.h"
#include "tests/support/test_platform.h"

namespace qv {
namespace {

using testing::TestPlatform;

TEST(RegistryKey, KeepsAStringInTheSettingsFile) {
  TestPlatform platform;
  RegistryKey key;
  key.open(CurrentUser, "EUDC\\932", KeyLasting, nullptr);
  ASSERT_TRUE(key.isOpen());
  key.setString("SystemDefaultEUDCFont", QVString(sjis("C:\\フォント.tte").c_str()));
  EXPECT_EQ(key.queryString("SystemDefaultEUDCFont").text(), sjis("C:\\フォント.tte"));
  key.close();
  const std::string text = platform.readFile(platform.player() / "settings.toml");
  EXPECT_NE(text.find("['HKEY_CURRENT_USER\\EUDC\\932']"), std::string::npos) << text;
  EXPECT_NE(text.find("フォント.tte"), std::string::npos) << text;
}

TEST(RegistryKey, DoesNothingWhenClosed) {
  TestPlatform platform;
  RegistryKey key;
  key.close();
  key.setString("name", QVString("x"));
  EXPECT_EQ(key.query("name", ValueText), nullptr);
  EXPECT_STREQ(key.queryString("name").text(), "");
  key.open(CurrentUser, "key", KeyLasting, nullptr);
  key.setString("name", QVString("x"));
  key.close();
  EXPECT_FALSE(key.isOpen());
  key.setString("name", QVString("y"));
  EXPECT_STREQ(key.queryString("name").text(), "");
  key.open(CurrentUser, "key", KeyLasting, nullptr);
  EXPECT_STREQ(key.queryString("name").text(), "x");
}

TEST(RegistryKey, OpeningAnotherClosesTheFirst) {
  TestPlatform platform;
  RegistryKey key;
  key.open(CurrentUser, "a", KeyVolatile, nullptr);
  key.setString("name", QVString("of a"));
  key.open(CurrentUser, "b", KeyVolatile, nullptr);
  EXPECT_STREQ(key.queryString("name").text(), "");
  key.open(CurrentUser, "a", KeyVolatile, nullptr);
  EXPECT_STREQ(key.queryString("name").text(), "of a");
}

TEST(RegistryKey, StaysClosedOnAnUnknownHive) {
  TestPlatform platform;
  RegistryKey key;
  key.open(CurrentUser, "a", KeyVolatile, nullptr);
  key.open(17, "a", KeyVolatile, nullptr);
  EXPECT_FALSE(key.isOpen());
}

TEST(RegistryKey, GivesAValueAsABlockOfItsOwn) {
  TestPlatform platform;
  RegistryKey key;
  key.open(CurrentUser, "key", KeyLasting, nullptr);
  const uint8_t bytes[] = {1, 0, 2};
  key.setValue("bytes", ValueBinary, bytes, sizeof bytes);
  void* block = key.query("bytes", ValueBinary);
  ASSERT_NE(block, nullptr);
  EXPECT_EQ(memcmp(block, bytes, sizeof bytes), 0);
  QVHeap::free(block);
  EXPECT_EQ(key.query("bytes", ValueText), nullptr);
  EXPECT_STREQ(key.queryString("bytes").text(), "");
  EXPECT_EQ(key.query("none", ValueBinary), nullptr);
}

TEST(RegistryKey, ReadsATextThatWasStoredWithoutItsEnd) {
  TestPlatform platform;
  RegistryKey key;
  key.open(CurrentUser, "key", KeyVolatile, nullptr);
  key.setValue("text", ValueText, "abc", 2);
  EXPECT_STREQ(key.queryString("text").text(), "ab");
  key.setValue("text", ValueText, nullptr, 0);
  EXPECT_STREQ(key.queryString("text").text(), "");
}

TEST(RegistryKey, TakesTheDefaultValueUnderNoName) {
  TestPlatform platform;
  RegistryKey key;
  key.open(CurrentUser, nullptr, KeyLasting, nullptr);
  key.setString(nullptr, QVString("default"));
  EXPECT_STREQ(key.queryString("").text(), "default");
}

TEST(RegistryKey, ForgetsVolatileValuesWithTheProcess) {
  TestPlatform platform;
  RegistryKey key;
  key.open(CurrentUser, "key", KeyVolatile, nullptr);
  key.setString("name", QVString("x"));
  EXPECT_STREQ(key.queryString("name").text(), "x");
  EXPECT_FALSE(
      SettingsStore(platform.player() / "settings.toml").get("HKEY_CURRENT_USER\\key", "name"));
}

}  // namespace
}  // namespace qv
