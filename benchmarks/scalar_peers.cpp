// What each evaluator wants before it can be asked: names, and the text in its own words.
#include "scalar_peers.h"

#include <muParser.h>
#include <muParserInt.h>

#include <array>
#include <fparser.hh>
#include <lua.hpp>
#include <memory>
#include <stdexcept>

#include "world.h"

namespace zrt_bench {

namespace {

class LuaState {
 public:
  LuaState(const std::string& text, Numbers numbers)
      : text_("return " + text), numbers_(numbers), state_(luaL_newstate()) {
    if (state_ == nullptr) throw std::bad_alloc();
    SetInteger("a", Names::kA);
    SetInteger("b", Names::kB);
    SetInteger("c", Names::kC);
    SetInteger("i", Names::kI);
    lua_newtable(state_.get());
    for (int i = 0; i < static_cast<int>(std::size(Names::kT)); ++i) {
      lua_pushinteger(state_.get(), Names::kT[i]);
      lua_seti(state_.get(), -2, i);
    }
    lua_setglobal(state_.get(), "t");
    lua_pushnumber(state_.get(), Names::kX);
    lua_setglobal(state_.get(), "x");
    lua_pushnumber(state_.get(), Names::kY);
    lua_setglobal(state_.get(), "y");
  }

  void Evaluate() {
    lua_State* lua = state_.get();
    if (luaL_loadbufferx(lua, text_.data(), text_.size(), "=x", "t") != LUA_OK ||
        lua_pcall(lua, 0, 1, 0) != LUA_OK) {
      throw std::runtime_error(lua_tostring(lua, -1));
    }
    value_ = numbers_ == Numbers::kInteger ? static_cast<double>(lua_tointeger(lua, -1))
                                           : lua_tonumber(lua, -1);
    lua_settop(lua, 0);
  }

  double value() const { return value_; }

 private:
  struct Close {
    void operator()(lua_State* state) const { lua_close(state); }
  };

  void SetInteger(const char* name, int value) {
    lua_pushinteger(state_.get(), value);
    lua_setglobal(state_.get(), name);
  }

  std::string text_;
  Numbers numbers_;
  std::unique_ptr<lua_State, Close> state_;
  double value_ = 0;
};

struct FparserWork {
  FunctionParser parser;
  std::string text;
  std::string names = "a,b,c,i,x,y";
  std::array<double, 6> values = {Names::kA, Names::kB, Names::kC, Names::kI, Names::kX, Names::kY};
  double value = 0;
};

template <typename Parser>
struct MuParserWork {
  explicit MuParserWork(std::string text_to_evaluate) : text(std::move(text_to_evaluate)) {
    constexpr const char* kNames[] = {"a", "b", "c", "i", "x", "y"};
    for (std::size_t i = 0; i < values.size(); ++i) parser.DefineVar(kNames[i], &values[i]);
  }

  std::string text;
  std::array<double, 6> values = {Names::kA, Names::kB, Names::kC, Names::kI, Names::kX, Names::kY};
  Parser parser;
  double value = 0;
};

template <typename Parser>
Contestant MuParserContestant(const char* name, const std::string& text) {
  auto work = std::make_shared<MuParserWork<Parser>>(text);
  return MakeContestant(
      name, Role::kPeer,
      [work] {
        work->parser.SetExpr(work->text);
        work->value = work->parser.Eval();
      },
      [work] { return ValueText(work->value); });
}

}  // namespace

std::string ValueText(double value) { return "value " + std::to_string(value); }

Contestant Fparser(const std::string& text) {
  auto work = std::make_shared<FparserWork>();
  work->text = text;
  return MakeContestant(
      "fparser", Role::kPeer,
      [work] {
        if (work->parser.Parse(work->text, work->names) >= 0) {
          throw std::runtime_error(work->parser.ErrorMsg());
        }
        work->value = work->parser.Eval(work->values.data());
      },
      [work] { return ValueText(work->value); });
}

Contestant Lua(const std::string& text, Numbers numbers) {
  auto work = std::make_shared<LuaState>(text, numbers);
  return MakeContestant(
      "Lua", Role::kPeer, [work] { work->Evaluate(); },
      [work] { return ValueText(work->value()); });
}

Contestant MuParserInt(const std::string& text) {
  return MuParserContestant<mu::ParserInt>("muParserInt", text);
}

Contestant MuParser(const std::string& text) {
  return MuParserContestant<mu::Parser>("muParser", text);
}

}  // namespace zrt_bench
