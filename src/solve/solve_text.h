// What the evaluators call: a text is marked and walked, whatever its length.
#pragma once

#include <string_view>
#include <utility>

#include "ErrorCodes.h"
#include "scan/marks.h"
#include "solve/walk.h"
#include "solve/walk_steps.h"

namespace zrt {

/// Evaluates `text` by `policy`: as an expression, or as one chain whatever it holds.
/// @return ErrStreamWrite for a text of more than kMaxTextLength characters, with nothing read or
///         delivered; else what the walk says. Throws std::bad_alloc before anything is delivered.
template <class Policy>
ZRTStatus SolveText(std::string_view text, Policy&& policy) {
  if (text.size() > kMaxTextLength) return ErrStreamWrite;
  const MarkedText marked(text, MarkedText::Parentheses::kMarked);
  return Walk<Policy>::Solve(policy, marked);
}
template <class Policy>
ZRTStatus SolveTextAsChain(std::string_view text, Policy&& policy) {
  if (text.size() > kMaxTextLength) return ErrStreamWrite;
  const MarkedText marked(text, MarkedText::Parentheses::kPlain);
  return WalkSteps<Policy>(policy, marked).SolveChain();
}

}  // namespace zrt
