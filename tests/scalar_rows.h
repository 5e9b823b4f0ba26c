// Rows of texts and outcomes for integers and floats, over one set of tokens. A status stands where
// a value would: no value in these tests lies between -518 and -500.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <sstream>
#include <string>
#include <vector>

#include "support.h"

constexpr int kKept = 77;  // what a result holds before, and often behind a failure

template <class Number>
struct Row {
  Number outcome;
  std::string texts;           // with ";" between them
  Number left_behind = kKept;  // in the result, by a failure
};

inline bool IsSame(double a, double b) {
  return a == b ? std::signbit(a) == std::signbit(b) : std::isnan(a) && std::isnan(b);
}

/// `door` takes the evaluator, a text and the place of the result.
template <class Number, class Door>
void CheckRows(Door door, const std::vector<Row<Number>>& rows) {
  World world;
  using T = ZRTTokens;
  for (const T& token :
       {T::IntScalar("a", 5), T::IntScalar("size", 8, 4), T::IntScalar("t0", 1, 0),
        T::IntScalar("my name", 5), T::IntScalar("12", 5), T::IntScalar("odd", 16777217, 4),
        T::IntArray("t9", {1}, 9), T::IntArray("arr", {10, 20, 30, 40}),
        T::IntArray("b8", {-1, 20}, 8), T::FloatScalar("f", 2.75F), T::FloatScalar("g", -2.75F, 3),
        T::FloatScalar("high", 3e9F), T::FloatScalar("low", -3e9F), T::FloatScalar("h", -0.5F, 3),
        T::FloatArray("fa", {1.5F, -2.5F}), T::FloatArray("f7", {-1.99F, INFINITY}, 7),
        T::IntScalar(std::string(300, 'n').c_str(), 5), T::FloatScalar("nan", NAN)}) {
    world.local_tokens.Add(token);
  }
  for (const auto& [outcome, texts, left_behind] : rows) {
    std::istringstream each(texts);
    for (std::string text; std::getline(each, text, ';');) {
      Number value = kKept;
      const int status = door(world.expression, text.data(), &value);
      const Number result = status == 0 ? value : static_cast<Number>(status);
      EXPECT_TRUE(IsSame(result, outcome)) << text << " gives " << result;
      EXPECT_TRUE(status == 0 || IsSame(value, left_behind)) << text << " leaves " << value;
    }
  }
}
