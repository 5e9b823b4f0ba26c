// Integer and float operands: a token, an element of a token, or a literal. The two kinds differ in
// how tokens and literals convert and in nothing else. The index serves bit vectors too.
#pragma once

#include <string_view>

#include "ErrorCodes.h"
#include "names/scopes.h"
#include "scalar/convert.h"
#include "scan/operand_text.h"
#include "scan/short_operand.h"
#include "solve/watch.h"

namespace zrt {

/// The index of an operand that has none.
inline constexpr int kNoIndex = -1;

/// Evaluates the index of `operand` as an integer expression into `index`, which stays kNoIndex if
/// there is none or if it fails before it gives a value. An index text holds no "]", so an operand
/// in it can have no index of its own: this goes down once and no further. Like all functions with
/// a `watch` it exists for Unwatched and for Watcher*.
template <class Watch>
ZRTStatus EvaluateIndex(const OperandText& operand, const Scopes& scopes, int& index, Watch watch);

/// Tells a watcher which token an operand is, and of which scope.
template <class Watch>
void NoteToken(Watch watch, const Scopes& scopes, ZRTTokens& token, char* name) {
  if constexpr (kIsWatched<Watch>) watch->NoteToken(token, scopes.ScopeOf(token, name));
}

/// Reads an operand that has brackets or is long.
template <class Number, class Watch>
ZRTStatus ReadIndexedScalar(std::string_view text, const Scopes& scopes, Number& value,
                            Watch watch);

/// Reads a token, which has an index if that is not kNoIndex.
template <class Number>
ZRTStatus ReadToken(ZRTTokens& token, int index, Number& value);

/// Reads a literal of any kind. @return kOk, ErrUnknownOperand.
template <class Number>
ZRTStatus ReadLiteral(std::string_view text, Number& value);

/// Reads one operand into `value`, which a failure leaves as it was. For int and float. A token is
/// asked for before the text is looked at as a number, so a token may hide a literal.
/// @return kOk, ErrBadTokenType, ErrUnknownOperand, ErrMissingCloseBracket, ErrEmptyIndex,
///         ErrStrayCloseBracket, ErrMissingArrayName, ErrNegativeIndex. Throws std::bad_alloc.
template <class Number, class Watch = Unwatched>
ZRTStatus ReadScalar(std::string_view text, const Scopes& scopes, Number& value, Watch watch = {}) {
  ShortOperand plain(text);
  if (!plain.is_plain()) return ReadIndexedScalar(text, scopes, value, watch);
  if (ZRTTokens* token = scopes.FindToken(plain.name())) {
    NoteToken(watch, scopes, *token, plain.name());
    return ReadToken(*token, kNoIndex, value);
  }
  watch->NoteLiteral();
  if (!plain.is_small_number()) return ReadLiteral(text, value);
  FromInteger(plain.small_number(), value);
  return kOk;
}

}  // namespace zrt
