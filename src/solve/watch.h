// Who watches an evaluation. Mostly nobody: then each call below is nothing at all. Else a watcher,
// which keeps the place of the failure and tells a host's observer what happens, in the order in
// which it happens. It is told of texts as views into the text that was handed in, and knows
// nothing of scopes and of how values are kept.
#pragma once

#include <concepts>
#include <cstdint>
#include <string_view>
#include <type_traits>

#include "ErrorCodes.h"
#include "scan/operators.h"
#include "zrtexpression/trace.h"

namespace zrt {

/// Keeps and tells. Lives for one evaluation and reads no value.
class Watcher {
 public:
  /// `observer` may be null. `text` is the evaluation's whole text.
  Watcher(const char* text, Observer* observer) : text_(text), observer_(observer) {}

  /// Notes what failed and where. @return `status`.
  ZRTStatus Fail(ZRTStatus status, std::string_view where);

  void Cut(CutEvent::By by, std::string_view piece, std::string_view middle);
  void Unread(std::string_view part);

  /// An operand is about to be read. What it turns out to be is noted meanwhile.
  void BeginOperand(std::string_view text);
  void NoteLiteral() { operand_.meaning = OperandEvent::Meaning::kLiteral; }
  void NoteMaskName() { operand_.meaning = OperandEvent::Meaning::kMaskName; }
  void NoteToken(ZRTTokens& token, OperandEvent::Scope scope);
  void NoteField(QLMDataField& field, OperandEvent::Scope scope);
  void NoteRow(LByteBuffer* row) { operand_.row = row; }

  /// It has been read, or has failed. @return its number.
  ValueNumber EndOperand(const ValueView& value);
  ZRTStatus FailOperand(ZRTStatus status);

  void BeginIndex(std::string_view name, std::string_view index);
  void EndIndex(int status, int value);

  void Operator(OperatorEvent event, std::string_view where, OperatorCode code);
  void Result(ValueNumber number, const ValueView& value);
  void Outcome(ValueNumber number, const ValueView& value);

  /// Ends the evaluation. `failure` may be null.
  void Finish(int status, Failure* failure);

 private:
  [[nodiscard]] Place PlaceOf(std::string_view part) const {
    return {static_cast<std::size_t>(part.data() - text_), part.size()};
  }
  [[nodiscard]] std::string_view OperandThroughIndex() const;
  void FillOperandPlaces();

  const char* text_;
  Observer* observer_;
  Failure failure_;
  std::string_view operand_text_;
  OperandEvent operand_;
  // The operand whose index is being evaluated. That has no index of its own.
  std::string_view indexed_text_;
  OperandEvent indexed_;
  Failure index_failure_;
  bool is_in_index_ = false;
  ValueNumber next_number_ = 0;
};

/// Nobody. Takes the place of a Watcher* wherever nothing is to be told.
struct Unwatched {
  const Unwatched* operator->() const { return this; }

  static constexpr ZRTStatus Fail(ZRTStatus status, std::string_view /*where*/) { return status; }
  static constexpr ZRTStatus FailOperand(ZRTStatus status) { return status; }
  static void Cut(CutEvent::By /*by*/, std::string_view /*piece*/, std::string_view /*middle*/) {}
  static void Unread(std::string_view /*part*/) {}
  static void BeginOperand(std::string_view /*text*/) {}
  static void NoteLiteral() {}
  static void NoteMaskName() {}
  static void NoteRow(LByteBuffer* /*row*/) {}
  static void BeginIndex(std::string_view /*name*/, std::string_view /*index*/) {}
  static void EndIndex(int /*status*/, int /*value*/) {}
};

/// What is asked or kept for a watcher alone stands behind this.
template <class Watch>
inline constexpr bool kIsWatched = !std::same_as<Watch, Unwatched>;

// What is kept for a watcher alone; it takes no room where nobody watches.
struct NotKept {};
template <class Watch, class Kept>
using IfWatched = std::conditional_t<kIsWatched<Watch>, Kept, NotKept>;

}  // namespace zrt
