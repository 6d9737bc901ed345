// A register read against a plain array's, and a step of a scene against the same switch over a
// plain array and against the same step in Lua.

#include <cstdint>
#include <cstdlib>
#include <numeric>
#include <vector>

#include <lua.hpp>

#include "bench/ratio.h"
#include "scenario/registers.h"

namespace {

using qv::bench::keep;

constexpr int Registers = 2500, StepNumber = 7, FlagNumber = 600, CounterNumber = 200;

[[gnu::noinline]] int32_t& refuse(int32_t index) {
  std::fprintf(stderr, "index %d\n", index);
  std::abort();
}

struct PlainTable {
  std::vector<int32_t> entries = std::vector<int32_t>(Registers);
  int32_t& at(int32_t index) {
    if (index >= 0 && index < static_cast<int32_t>(entries.size())) return entries[size_t(index)];
    return refuse(index);
  }
};

struct RegisterTable {
  qv::QVReg file;
  RegisterTable() { file.create(Registers); }
  int32_t& at(int32_t index) { return file.item(index); }
};

template <typename Table>
void readAll(Table& table, const std::vector<int32_t>& order) {
  int32_t sum = 0;
  for (const int32_t index : order)
    sum += table.at(index);
  // A variable of its own: `keep` takes an address, and a sum whose address is known outside would
  // have to stand in memory across every call that a bad index might make.
  const int32_t total = sum;
  keep(total);
}

// Three commands that do nothing, as a scene calls them: out of line, with their texts.
[[gnu::noinline]] void speak(const char* speaker, const char* voice) {
  keep(speaker), keep(voice);
}
[[gnu::noinline]] void print(const char* text) {
  keep(text);
}

/// One step: two reads, a write, three commands; then the step register goes round.
template <typename Table>
[[gnu::noinline]] void runSteps(Table& table, int count) {
  for (int done = 0; done < count; ++done) {
    switch (table.at(StepNumber)) {
      case 1:
        speak("A", "V00\\0000_001");
        print("The first line of the page, ");
        print("and its second half.");
        if (table.at(FlagNumber) == 0) table.at(CounterNumber) = done;
        break;
      default:
        std::abort();
    }
    keep(table);
  }
}

constexpr const char* LuaStep = R"(
  local reg, speak, print, count = ...
  for done = 1, count do
    local step = reg[7]
    if step == 1 then
      speak("A", "V00\\0000_001")
      print("The first line of the page, ")
      print("and its second half.")
      if reg[600] == 0 then reg[200] = done end
    end
  end
)";

int luaSpeak(lua_State* lua) {
  speak(luaL_checkstring(lua, 1), luaL_checkstring(lua, 2));
  return 0;
}
int luaPrint(lua_State* lua) {
  print(luaL_checkstring(lua, 1));
  return 0;
}

class LuaStory {
 public:
  LuaStory() : lua_(luaL_newstate()) {
    if (luaL_loadstring(lua_, LuaStep) != LUA_OK) std::abort();
    lua_createtable(lua_, Registers, 0);
    for (int number = 0; number < Registers; ++number) {
      lua_pushinteger(lua_, number == StepNumber ? 1 : 0);
      lua_rawseti(lua_, -2, number);
    }
  }
  ~LuaStory() { lua_close(lua_); }
  LuaStory(const LuaStory&) = delete;
  LuaStory& operator=(const LuaStory&) = delete;

  void run(int count) {
    lua_pushvalue(lua_, 1);
    lua_pushvalue(lua_, 2);
    lua_pushcfunction(lua_, luaSpeak);
    lua_pushcfunction(lua_, luaPrint);
    lua_pushinteger(lua_, count);
    if (lua_pcall(lua_, 4, 0, 0) != LUA_OK) {
      std::fprintf(stderr, "%s\n", lua_tostring(lua_, -1));
      std::abort();
    }
  }

 private:
  lua_State* lua_;
};

}  // namespace

int main() {
  qv::bench::Table table;
  PlainTable plain;
  RegisterTable registers;
  plain.at(StepNumber) = registers.at(StepNumber) = 1;

  std::vector<int32_t> order(4'000'000);
  uint32_t state = 1;
  for (int32_t& index : order) {
    state = state * 1664525 + 1013904223;
    index = static_cast<int32_t>((state >> 8) % Registers);
  }
  table.atMost(
      "register read / bounds-checked array read", 1.5,
      qv::bench::measure([&] { readAll(registers, order); }, [&] { readAll(plain, order); }));

  constexpr int Steps = 1'000'000;
  table.atMost(
      "step over registers / the same switch over an array", 1.3,
      qv::bench::measure([&] { runSteps(registers, Steps); }, [&] { runSteps(plain, Steps); }));
  LuaStory story;
  table.fasterBy(
      "step in Lua 5.4 / step over registers", 4,
      qv::bench::measure([&] { runSteps(registers, Steps); }, [&] { story.run(Steps); }, 7));
  return table.status();
}
