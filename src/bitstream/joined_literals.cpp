// One pass from left to right that lays bytes behind each other. Knows nothing of other operands
// and operators: the walk deals with them.
#include "bitstream/joined_literals.h"

#include <algorithm>
#include <array>
#include <limits>
#include <optional>

#include "bits/digits.h"
#include "bits/kernels.h"
#include "scan/number.h"

namespace zrt {
namespace {

constexpr std::size_t kMostBytesOfBits = std::numeric_limits<std::int32_t>::max() / 8;

constexpr std::size_t kShortName = 511;

constexpr std::array<bool, 256> CharsOfJoinedLiterals() {
  std::array<bool, 256> chars{};
  for (const char c : std::string_view("0123456789ABCDEFabcdefx@^()")) {
    chars[static_cast<unsigned char>(c)] = true;
  }
  return chars;
}
constexpr std::array<bool, 256> kIsInJoinedLiterals = CharsOfJoinedLiterals();

// A literal as the lookups want it. An object of its own: as characters are written to it, the
// compiler could not keep in registers what stands beside it.
struct LiteralName {
  NameBuffer short_one{kShortName};
  std::optional<NameBuffer> long_one;
};

class Reader {
 public:
  Reader(std::string_view text, const Scopes& scopes, OutcomePlace& place, BitValue& value,
         LiteralName& name)
      : rest_(text),
        scopes_(scopes),
        place_(place),
        value_(value),
        literal_name_(name),
        name_(name.short_one.text()) {
    BeginName();
  }

  // A long literal that is the caller's whole text, so that its name is there already.
  bool ReadAlone() {
    if (rest_.size() <= kShortName || !rest_.starts_with("0x")) return false;
    char* const name = NameInPlace(rest_);
    if (!name) return false;
    FindRoom();
    const std::string_view digits = rest_.substr(2);
    const std::size_t size = (digits.size() + 1) / 2;
    if (size > kMostBytesOfBits || !ReadHexDigits(digits, room_.first(size))) return false;
    if (scopes_.Know(name)) return false;
    room_ = room_.subspan(size);
    Finish();
    return true;
  }

  bool Read() {
    is_group_ = rest_.starts_with('(');
    for (bool is_first = true;; is_first = false) {  // of its chain
      for (; Skip('('); is_first = true) ++depth_;
      if (!rest_.starts_with("0x")) return false;
      if (byte_count() == 0) Begin();
      if (!ReadLiteral() || (Skip('^') && !(is_first && Replicate()))) return false;
      while (depth_ > 0 && Skip(')')) --depth_;
      if (rest_.empty()) break;
      is_group_ = is_group_ && depth_ > 0;
      if (!Skip('@')) return false;
    }
    if (depth_ > 0) return false;
    Finish();
    return true;
  }

  [[nodiscard]] std::string_view rest() const { return rest_; }
  [[nodiscard]] bool is_group() const { return is_group_; }

 private:
  [[nodiscard]] std::size_t byte_count() const { return value_.byte_count() - room_.size(); }

  bool Skip(char c) {
    if (!rest_.starts_with(c)) return false;
    rest_.remove_prefix(1);
    return true;
  }

  void Finish() {
    value_.set_bit_length(static_cast<int>(8 * byte_count()));
    value_.Shorten(byte_count());
  }

  // Finds room for the name of a long literal at once, if the text begins with one.
  void Begin() {
    const std::string_view begin = rest_.substr(0, kShortName);
    if (begin.size() == kShortName && begin.find('@') == std::string_view::npos &&
        begin.find(')') == std::string_view::npos) {
      UseLongName();
    }
    FindRoom();
  }

  // For as many bytes as literals can have; replications may add to them.
  void FindRoom() {
    if (value_.byte_count() > 0) return;
    place_.OfferTo(value_, rest_.size() / 2);
    room_ = value_.Rebuild(std::max(rest_.size() / 2, value_.capacity()));
  }

  bool ReadLiteral() {
    const std::string_view behind = rest_.substr(2);
    const std::size_t count = ReadByteOfRun(behind) ? 2 : ReadDigits(behind);
    const std::size_t size = (count + 1) / 2;
    if (count == 0 || byte_count() + size > kMostBytesOfBits || IsName(2 + count)) return false;
    literal_size_ = size;
    room_ = room_.subspan(size);
    rest_ = behind.substr(count);
    return true;
  }

  // Digits to the first byte of the room, and to the name. Runs are many and short.
  bool ReadByteOfRun(std::string_view digits) {
    if (digits.size() < 3 || digits[2] != '^' || room_.empty()) return false;
    std::uint64_t byte = 0;
    const bool are_digits = ReadHexDigits(digits.substr(0, 2), name_ + 2, byte);
    room_[0] = static_cast<std::uint8_t>(byte);
    return are_digits;
  }

  // The same with all the digits that there are. Gives their count.
  std::size_t ReadDigits(std::string_view text) {
    for (;;) {
      const std::size_t most = std::min({text.size(), name_size_, 2 * room_.size()});
      const std::size_t count = CopyHexDigits(text.substr(0, most), name_ + 2, room_.data());
      if (count < most || count == text.size() || !IsHexadecimalDigit(text[count])) return count;
      if (most == name_size_) {
        UseLongName();
      } else {
        MakeRoom(count);
      }
    }
  }

  // The literal that was read last stands as often as a decimal number says.
  bool Replicate() {
    constexpr std::size_t kSafeDigits = 9;
    const std::string_view digits = rest_.substr(0, kSafeDigits);
    std::size_t count = 0;
    std::size_t length = 0;
    for (; length < digits.size() && IsDecimalDigit(digits[length]); ++length) {
      name_[length] = digits[length];
      count = 10 * count + static_cast<std::size_t>(digits[length] - '0');
    }
    if (count == 0) return false;
    const std::size_t size = literal_size_;
    const std::size_t more = (count - 1) * size;
    if (byte_count() + more > kMostBytesOfBits || IsName(length)) return false;
    BeginName();
    if (more > room_.size()) MakeRoom(more);
    const kernels::Bytes all(room_.data() - size, more + size);
    kernels::Repeat(all, size);
    room_ = room_.subspan(more);
    rest_.remove_prefix(length);
    return true;
  }

  bool IsName(std::size_t length) {
    name_[length] = '\0';
    return scopes_.Know(name_);
  }
  void BeginName() {
    name_[0] = '0';
    name_[1] = 'x';
  }

  // Room for all that may come, once for all.
  void UseLongName() {
    literal_name_.long_one.emplace(rest_.size());
    name_ = literal_name_.long_one->text();
    BeginName();
    name_size_ = rest_.size();
  }

  void MakeRoom(std::size_t byte_count_to_come) {
    const std::size_t laid = byte_count();
    BitValue larger;
    const auto bytes = larger.Rebuild(2 * (laid + byte_count_to_come));
    std::copy_n(value_.Bytes().data(), laid, bytes.data());
    value_ = std::move(larger);
    room_ = value_.OwnBytes().subspan(laid);
  }

  std::string_view rest_;
  const Scopes& scopes_;
  OutcomePlace& place_;
  BitValue& value_;
  std::span<std::uint8_t> room_;  // of the value, for what is still to be laid
  std::size_t literal_size_ = 0;  // bytes, of the one that was read last
  std::size_t depth_ = 0;
  bool is_group_ = false;
  LiteralName& literal_name_;
  char* name_;
  std::size_t name_size_ = kShortName - 2;  // digits
};

}  // namespace

bool MayBeJoinedLiterals(std::string_view text) {
  constexpr std::size_t kEnd = 8;  // characters: an operator and a short operand
  if (text.front() != '(' && !text.starts_with("0x")) return false;
  return std::ranges::all_of(text.substr(text.size() - kEnd), [](char c) {
    return kIsInJoinedLiterals[static_cast<unsigned char>(c)];
  });
}

JoinedLiterals ReadJoinedLiterals(std::string_view text, const Scopes& scopes, OutcomePlace& place,
                                  BitValue& value) {
  LiteralName name;
  Reader reader(text, scopes, place, value, name);
  const bool are_read = reader.ReadAlone() || reader.Read();
  if (!are_read) value.Shorten(0);
  return {are_read, reader.is_group(), text.size() - reader.rest().size()};
}

}  // namespace zrt
