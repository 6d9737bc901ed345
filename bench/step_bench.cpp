// A step of a scene as modules run it, over the manager's registers, against the same switch by
// hand over a plain array, and against the same step in Lua.

#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include <lua.hpp>

#include "bench/ground.h"
#include "bench/ratio.h"
#include "scenario/scenario.h"
#include "scenes/scene_form.h"

namespace {

using namespace qv;
using bench::keep;

constexpr int32_t Flag = 600, Counter = 200, Steps = 4;
// Short rounds and many of them: a round that another program cuts into says nothing.
constexpr int Rounds = 50'000, Measured = 101;

int32_t plain[RegisterCount];

struct Scene {
  static int32_t& at(int32_t number) { return Reg(number); }
};
struct Plain {
  static int32_t& at(int32_t number) { return plain[number]; }
};

// Commands that do nothing, out of line as the engine's are.
[[gnu::noinline]] void speak(const char* speaker, const char* voice) {
  keep(speaker), keep(voice);
}
[[gnu::noinline]] void print(const char* text) {
  keep(text);
}

/// Four steps, each of two reads, one write and three commands with texts.
template <typename Registers>
[[gnu::noinline]] void runScene() {
  for (Registers::at(StepRegister) = 1;; ++Registers::at(StepRegister)) {
    switch (Registers::at(StepRegister)) {
      case 1:
        speak("A", "V00\\0000_001");
        print("The first line of the page, ");
        print("and its second half.");
        if (Registers::at(Flag) == 0) Registers::at(Counter) = Registers::at(Counter + 1);
        break;
      case 2:
        speak("B", "V00\\0000_002");
        print("The second line of the page, ");
        print("and its other half.");
        if (Registers::at(Flag) == 0) Registers::at(Counter) = Registers::at(Counter + 2);
        break;
      case 3:
        speak("A", "V00\\0000_003");
        print("The third line of the page, ");
        print("and what follows it.");
        if (Registers::at(Flag) == 0) Registers::at(Counter) = Registers::at(Counter + 3);
        break;
      case Steps:
        speak("B", "V00\\0000_004");
        print("The last line of the page, ");
        print("and its end.");
        if (Registers::at(Flag) == 0) Registers::at(Counter) = Registers::at(Counter + 4);
        return;
      default:
        std::abort();
    }
  }
}

constexpr const char* LuaScene = R"(
  local reg, speak, print, rounds = ...
  local function scene()
    reg[7] = 1
    while true do
      local step = reg[7]
      if step == 1 then
        speak("A", "V00\\0000_001")
        print("The first line of the page, ")
        print("and its second half.")
        if reg[600] == 0 then reg[200] = reg[201] end
      elseif step == 2 then
        speak("B", "V00\\0000_002")
        print("The second line of the page, ")
        print("and its other half.")
        if reg[600] == 0 then reg[200] = reg[202] end
      elseif step == 3 then
        speak("A", "V00\\0000_003")
        print("The third line of the page, ")
        print("and what follows it.")
        if reg[600] == 0 then reg[200] = reg[203] end
      elseif step == 4 then
        speak("B", "V00\\0000_004")
        print("The last line of the page, ")
        print("and its end.")
        if reg[600] == 0 then reg[200] = reg[204] end
        return
      end
      reg[7] = reg[7] + 1
    end
  end
  for round = 1, rounds do scene() end
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
    if (luaL_loadstring(lua_, LuaScene) != LUA_OK) std::abort();
    lua_createtable(lua_, RegisterCount, 0);
    for (int32_t number = 0; number < RegisterCount; ++number) {
      lua_pushinteger(lua_, 0);
      lua_rawseti(lua_, -2, number);
    }
  }
  ~LuaStory() { lua_close(lua_); }
  LuaStory(const LuaStory&) = delete;
  LuaStory& operator=(const LuaStory&) = delete;

  void run(int rounds) {
    lua_pushvalue(lua_, 1);
    lua_pushvalue(lua_, 2);
    lua_pushcfunction(lua_, luaSpeak);
    lua_pushcfunction(lua_, luaPrint);
    lua_pushinteger(lua_, rounds);
    if (lua_pcall(lua_, 4, 0, 0) == LUA_OK) return;
    std::fprintf(stderr, "%s\n", lua_tostring(lua_, -1));
    std::abort();
  }

 private:
  lua_State* lua_;
};

template <typename Registers>
void play() {
  for (int round = 0; round < Rounds; ++round)
    runScene<Registers>();
}

}  // namespace

int main() {
  bench::Ground ground;
  QVScenario manager;
  manager.Open("Bench", RegisterCount, StringRegisterCount, SystemRegisterCount);
  setTheScenario(&manager);
  bench::Table table;
  table.atMost("step of a scene / the same switch over a plain array", 1.3,
               bench::measure(play<Scene>, play<Plain>, Measured));
  LuaStory story;
  table.fasterBy("step in Lua 5.4 / step of a scene", 4,
                 bench::measure(
                     play<Scene>, [&] { story.run(Rounds); }, 15));
  setTheScenario(nullptr);
  return table.status();
}
