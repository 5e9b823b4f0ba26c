// Operands of bit vectors. Unlike the scalar kinds they look for a data field first, take an index
// of 0 as none, and go by the value of an index whatever the status of its evaluation.
#include "bitstream/bit_operand.h"

#include <cstdint>
#include <limits>
#include <optional>

#include "bits/digits.h"
#include "bits/exhausted_memory.h"
#include "bits/word.h"
#include "bitstream/stream_bytes.h"
#include "names/token_shape.h"
#include "scalar/operand.h"
#include "scan/number.h"
#include "scan/operand_text.h"
#include "scan/short_operand.h"

namespace zrt {
namespace {

// More digits make a bit length that 32 bits do not hold.
constexpr std::size_t kMaxHexDigits = std::size_t{std::numeric_limits<std::int32_t>::max() / 8} * 2;

constexpr std::string_view kHexPrefix = "0x";

// An integer is four bytes.
BitWord WordOf(int number) {
  return {
      .bits = static_cast<std::uint32_t>(number), .byte_count = sizeof(number), .bit_length = 32};
}

// The width is asked for before the row: reading the current row moves the pointer on.
template <class Watch>
ZRTStatus ReadField(QLMDataField& field, int index, BitValue& value, Watch watch) {
  LByteBuffer* row = nullptr;
  if (index > 0) {
    row = field.GetRow(index);
    value.set_bit_length(field.GetRowWidth(index));
  } else {
    value.set_bit_length(field.GetCurrentRowWidth());
    row = field.GetCurrentRow();
    if (field.GetRowCount() == 1) field.ResetRowPointer();
  }
  watch->NoteRow(row);
  if (!row) return ErrStreamWrite;
  BorrowBytes(*row, value);
  return kOk;
}

// A mask name that no scope holds is a field with one empty row. Without an index the answer is
// known; with one, which rows there are is the closed library's to say.
ZRTStatus ReadMaskField(int index, BitValue& value) {
  if (index <= 0) {
    value.set_bit_length(0);
    return kOk;
  }
  QLMDataField field;
  field.AddRow(0);
  const ZRTStatus status = ReadField(field, index, value, Unwatched{});
  (void)value.OwnBytes();  // the field goes
  return status;
}

ZRTStatus ReadToken(ZRTTokens& token, int index, BitWord& word) {
  switch (ShapeOfToken(token.GetTokenType())) {
    case TokenShape::kInteger: word = WordOf(token.GetIntValue()); return kOk;
    case TokenShape::kIntegerArray: word = WordOf(token.GetIntArrayValue(index)); return kOk;
    default: return ErrBadTokenType;
  }
}

ZRTStatus ReadLiteral(std::string_view text, BitValue& value) {
  switch (KindOfNumber(text)) {
    case NumberBinary:
    case NumberBinaryLong: {
      const std::string_view digits = text.substr(1);
      ReadBinaryDigits(digits, value.Rebuild(BytesFor(static_cast<std::int64_t>(digits.size()))));
      value.set_bit_length(static_cast<int>(digits.size()));
      return kOk;
    }
    case NumberHex:
    case NumberHexLong: {
      const std::string_view digits = text.substr(2);
      if (digits.size() > kMaxHexDigits) return ErrStreamWrite;
      const auto bytes = value.Rebuild((digits.size() + 1) / 2);
      (void)ReadHexDigits(digits, bytes);
      value.set_bit_length(static_cast<int>(8 * bytes.size()));
      return kOk;
    }
    case NumberDecimal: value.Set(WordOf(LeadingDecimal(text))); return kOk;
    default: return ErrUnknownOperand;
  }
}

template <class Watch>
ZRTStatus ReadMeaning(const Meaning& meaning, std::string_view name, int index, BitValue& value,
                      Watch watch) {
  if (meaning.field) return ReadField(*meaning.field, index, value, watch);
  if (meaning.is_mask) return ReadMaskField(index, value);
  if (!meaning.token) return ReadLiteral(name, value);
  BitWord word{};
  const ZRTStatus status = ReadToken(*meaning.token, index, word);
  if (status == kOk) value.Set(word);
  return status;
}

// MeaningOf(), told to the watcher.
template <class Watch>
Meaning NotedMeaningOf(std::string_view name, char* buffer, const Scopes& scopes, Watch watch) {
  const Meaning meaning = MeaningOf(name, buffer, scopes);
  if constexpr (kIsWatched<Watch>) NoteMeaning(meaning, buffer, scopes, watch);
  return meaning;
}

// What begins as a hexadecimal literal, if it is one that a word holds, as most operands are, and
// that no scope knows. False, with nothing done, if it is anything else.
template <class Watch>
bool ReadHexWord(std::string_view text, const Scopes& scopes, BitWord& value, Watch watch) {
  constexpr std::size_t kMostDigits = 2 * kWordSize;
  std::string_view digits = text;
  digits.remove_prefix(kHexPrefix.size());
  if (digits.empty() || digits.size() > kMostDigits) return false;
  char name[kHexPrefix.size() + kMostDigits + 1];
  char* const name_digits = name + kHexPrefix.copy(name, kHexPrefix.size());
  std::uint64_t number = 0;
  if (!ReadHexDigits(digits, name_digits, number)) return false;
  name_digits[digits.size()] = '\0';
  if (scopes.Know(name)) return false;
  watch->NoteLiteral();
  const auto byte_count = static_cast<std::uint32_t>((digits.size() + 1) / 2);
  value = {.bits = number << (digits.size() % 2 * 4),
           .byte_count = byte_count,
           .bit_length = static_cast<std::int32_t>(8 * byte_count)};
  return true;
}

// The same for a decimal literal.
template <class Watch>
bool ReadSmallNumber(ShortOperand& plain, const Scopes& scopes, BitWord& value, Watch watch) {
  if (!plain.is_small_number() || scopes.Know(plain.name())) return false;
  watch->NoteLiteral();
  value = WordOf(plain.small_number());
  return true;
}

// A binary literal, which no scope knows.
bool ReadBinaryWord(std::string_view text, BitWord& value) {
  static_assert(ShortOperand::kMaxLength <= 64);
  const NumberKind kind = KindOfNumber(text);
  if (kind != NumberBinary && kind != NumberBinaryLong) return false;
  const std::string_view digits = text.substr(1);
  std::uint64_t number = 0;
  for (const char digit : digits) number = number << 1 | (digit == '1' ? 1U : 0U);
  value.Set(number, BytesFor(static_cast<std::int64_t>(digits.size())));
  value.bit_length = static_cast<std::int32_t>(digits.size());
  return true;
}

// A word that is no hexadecimal literal. By itself, since its copy wants room.
[[gnu::noinline]] bool ReadOtherWord(std::string_view text, const Scopes& scopes, BitWord& value) {
  ShortOperand plain(text);
  if (!plain.is_plain()) return false;
  if (ReadSmallNumber(plain, scopes, value, Unwatched{})) return true;
  const Meaning meaning = MeaningOf(text, plain.name(), scopes);
  if (meaning.token) return ReadToken(*meaning.token, kNoIndex, value) == kOk;
  return !meaning.is_there() && ReadBinaryWord(text, value);
}

// A longer hexadecimal one: turned into bytes and, where it needs it, copied as a name in one go, a
// part at a time that stays in the cache, before it is known that it is no name. Nothing, with
// `value` empty, if it is no such literal.
template <class Watch>
std::optional<ZRTStatus> ReadHex(std::string_view text, const Scopes& scopes, OutcomePlace& place,
                                 BitValue& value, Watch watch) {
  constexpr std::size_t kPart = 16384;  // digits
  if (!text.starts_with(kHexPrefix)) return std::nullopt;
  const std::string_view digits = text.substr(kHexPrefix.size());
  if (digits.empty() || digits.size() > kMaxHexDigits) return std::nullopt;
  const std::size_t byte_count = (digits.size() + 1) / 2;
  char* name = NameInPlace(text);
  std::optional<NameBuffer> copy;
  if (!name) name = copy.emplace(text.size()).text();
  place.OfferTo(value, byte_count);
  const auto bytes = value.Rebuild(byte_count);
  for (std::size_t done = 0; done < digits.size(); done += kPart) {
    const std::string_view part = digits.substr(done, kPart);
    if (!ReadHexDigits(part, bytes.subspan(done / 2, (part.size() + 1) / 2))) {
      value.Rebuild(0);
      return std::nullopt;
    }
    if (copy) part.copy(name + kHexPrefix.size() + done, part.size());
  }
  if (copy) {
    kHexPrefix.copy(name, kHexPrefix.size());
    name[text.size()] = '\0';
  }
  const Meaning meaning = NotedMeaningOf(text, name, scopes, watch);
  if (!meaning.is_there()) {
    value.set_bit_length(static_cast<int>(8 * byte_count));
    return kOk;
  }
  value.Rebuild(0);
  return ReadMeaning(meaning, text, kNoIndex, value, watch);
}

template <class Watch>
ZRTStatus Read(std::string_view text, const Scopes& scopes, OutcomePlace& place, BitValue& value,
               Watch watch) {
  if (const auto status = ReadHex(text, scopes, place, value, watch)) return *status;
  if (ShortOperand plain(text); plain.is_plain()) {
    BitWord word{};
    if (ReadSmallNumber(plain, scopes, word, watch)) {
      value.Set(word);
      return kOk;
    }
    const Meaning meaning = NotedMeaningOf(text, plain.name(), scopes, watch);
    return ReadMeaning(meaning, text, kNoIndex, value, watch);
  }
  OperandText operand;
  if (const ZRTStatus status = SplitOperand(text, operand); status != kOk) return status;
  int index = kNoIndex;
  (void)EvaluateIndex(operand, scopes, index, watch);
  if (operand.index && index < 0) return ErrNegativeIndex;
  NameBuffer name(operand.name);
  const Meaning meaning = NotedMeaningOf(operand.name, name.text(), scopes, watch);
  return ReadMeaning(meaning, operand.name, index, value, watch);
}

}  // namespace

Meaning MeaningOf(std::string_view name, char* buffer, const Scopes& scopes) {
  Meaning meaning;
  meaning.field = scopes.FindField(buffer);
  if (meaning.field) return meaning;
  meaning.is_mask = IsMaskName(name);
  if (meaning.is_mask) return meaning;
  if (name == kFuseArrayOut) {
    OverwriteWithFuseArrayIn(buffer);
    meaning.field = scopes.FindField(buffer);
    if (meaning.field) return meaning;
  }
  meaning.token = scopes.FindToken(buffer);
  return meaning;
}

void NoteMeaning(const Meaning& meaning, char* buffer, const Scopes& scopes, Watcher* watch) {
  if (meaning.field)
    return watch->NoteField(*meaning.field, scopes.ScopeOf(*meaning.field, buffer));
  if (meaning.is_mask) return watch->NoteMaskName();
  if (meaning.token) return NoteToken(watch, scopes, *meaning.token, buffer);
  watch->NoteLiteral();
}

bool ReadBitWord(std::string_view text, const Scopes& scopes, BitWord& value) {
  return text.starts_with(kHexPrefix) ? ReadHexWord(text, scopes, value, Unwatched{})
                                      : ReadOtherWord(text, scopes, value);
}

template <class Watch>
ZRTStatus ReadBits(std::string_view text, const Scopes& scopes, OutcomePlace& place,
                   BitValue& value, Watch watch) {
  BitWord word{};
  if (text.starts_with(kHexPrefix) && ReadHexWord(text, scopes, word, watch)) {
    value.Set(word);
    return kOk;
  }
  return OnExhaustedMemory(ErrStreamWrite, [&] { return Read(text, scopes, place, value, watch); });
}

template ZRTStatus ReadBits(std::string_view, const Scopes&, OutcomePlace&, BitValue&, Unwatched);
template ZRTStatus ReadBits(std::string_view, const Scopes&, OutcomePlace&, BitValue&, Watcher*);

}  // namespace zrt
