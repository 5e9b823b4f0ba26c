// Prints a digest over the outcomes of many fixed texts and buffers, one line a subject. Every
// build of the library, whatever its compiler, options and machine, must print the same: a line
// that differs tells a build that computes something else.
//
//   zrt_digest [COUNT [BLOCK_SIZE [LOCALE]]]
#include <algorithm>
#include <bit>
#include <clocale>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <iomanip>
#include <iostream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "round_trip.h"
#include "scan/operators.h"
#include "support.h"

namespace {

enum Subject { kIntegers, kFloats, kBits, kChains, kHexTexts, kScans, kOperators, kRunLengths };
constexpr const char* kNames[] = {"integers", "floats", "bits",      "chains",
                                  "texts",    "scans",  "operators", "run lengths"};

// FNV-1a of 64 bits. Numbers go in from the lowest byte on, whatever the machine's order is.
struct Digest {
  std::uint64_t value = 0xCBF29CE484222325;

  void Add(std::uint8_t byte) { value = (value ^ byte) * 0x100000001B3; }
  void Add(std::uint64_t number) {
    for (unsigned low_bit = 0; low_bit < 64; low_bit += 8) {
      Add(static_cast<std::uint8_t>(number >> low_bit));
    }
  }
  void Add(int number) { Add(static_cast<std::uint64_t>(std::int64_t{number})); }
  void Add(float number) { Add(std::isnan(number) ? -1 : std::bit_cast<std::int32_t>(number)); }
  template <class Bytes>
  void Add(const Bytes& bytes) {
    for (const auto byte : bytes) Add(static_cast<std::uint8_t>(byte));
    Add(std::uint64_t{bytes.size()});
  }
  void Add(RowDataStream& stream) {
    Add(BytesOf(stream));
    Add(stream.BitLength);
  }
};

// Whether no replication can fill the memory: there are two at most, by a hundred at most. Beside a
// group or a unary operator the count may be all the rest.
bool IsBounded(const std::string& text) {
  const bool is_flat = text.find_first_of("(~!$") == std::string::npos;
  std::size_t count = 0;
  for (std::size_t i = 0; (i = text.find('^', i)) != std::string::npos; ++count) {
    const std::size_t begin = std::min(text.find_first_not_of(' ', ++i), text.size());
    const std::size_t end = std::min(text.find_first_not_of("0123456789", begin), text.size());
    const char* const followers = is_flat ? " @+-*/%&|>" : ")";
    const bool is_number = end == text.size() || std::strchr(followers, text[end]) != nullptr;
    if (count == 2 || end == begin || end - begin > 2 || !is_number) return false;
  }
  return true;
}

class Outcomes {
 public:
  explicit Outcomes(int block_size) : block_size_(block_size) {
    for (const auto& [data, name, rows] : kRichFields) {
      std::string key = name;
      if (rows.size() > 1) fields_.push_back((world_.*data).GetDataField(key.data()));
    }
  }

  void AddText() {
    text_ = generator_.Text();
    if (IsBounded(text_)) Evaluate();
    unsigned short first = 99, last = 99;
    Digest& digest = digests_[kScans];
    digest.Add(GetLeftMostOperator(expression_, text_.c_str(), &first));
    digest.Add(GetRightMostOperator(expression_, text_.c_str(), &last));
    digest.Add(first * 100 + last);
    digest.Add(IsNumber(expression_, text_.c_str()));
  }

  // Bytes and bit lengths that need not agree, some of the size that kernels for wide vectors like.
  void AddOperator() {
    const std::size_t code = Below(16);
    RowDataStream left = Stream(), right = Stream();
    if (code == zrt::OpReplicate) {
      right.ClearBuffer();
      Fill(right, "000000" + std::to_string(10 + Below(20)) + "/32");
    }
    Add(kOperators, left, [&](ZRTExpression& expression, char*, RowDataStream* value) {
      return ExecuteBitStreamOperator(expression, value, static_cast<unsigned short>(code), &right);
    });
  }

  // A buffer as run-length text, and as a literal of which an expression is made.
  void AddBuffer() {
    std::string bytes;
    const std::size_t size = Below(Below(32) == 0 ? 20000 : 300), kinds = 1 + Below(256);
    while (bytes.size() < size) {
      const std::size_t count = 1 + Below(20);
      bytes.append(count, static_cast<char>(Below(kinds)));
    }
    digests_[kRunLengths].Add(RoundTrip(bytes, block_size_));
    text_ = OneOf({"", "~", "!", "$"}) + "0x0";
    for (const char c : bytes) {
      const auto byte = static_cast<unsigned char>(c);
      text_ += {util_Hex2HexAnsi(byte / 16), util_Hex2HexAnsi(byte % 16)};
    }
    text_ += OneOf({"", ">>13", "<<3", "@#101", "^3", "&(~Long)", "|0xF0F", "+(1)", "$n"});
    Evaluate();
  }

  void Print() const {
    Digest all;
    for (const Digest& digest : digests_) all.Add(digest.value);
    for (std::size_t i = 0; i < std::size(kNames); ++i) Print(kNames[i], digests_[i]);
    Print("all", all);
  }

 private:
  static void Print(const char* name, const Digest& digest) {
    std::cout << std::left << std::setw(12) << std::setfill(' ') << name << std::right << std::hex
              << std::setw(16) << std::setfill('0') << digest.value << '\n';
  }

  std::size_t Below(std::size_t limit) { return generator_.Below(limit); }
  std::string OneOf(const std::vector<const char*>& choices) {
    return choices[Below(choices.size())];
  }
  RowDataStream Stream() {
    RowDataStream stream;
    std::vector<unsigned char> bytes(Below(Below(4) == 0 ? 600 : 9));
    for (unsigned char& byte : bytes) byte = static_cast<unsigned char>(random_());
    stream.Append(bytes);
    stream.BitLength =
        std::max(0, static_cast<int>(8 * bytes.size()) - static_cast<int>(Below(12)));
    return stream;
  }

  // Status and result, the text, which a search may rewrite, and the row that each field is at.
  template <class Value, class Operation>
  void Add(Subject subject, Value&& value, Operation operation) {
    Digest& digest = digests_[subject];
    digest.Add(operation(expression_, text_.data(), &value));
    digest.Add(value);
    digest.Add(text_);
    for (QLMDataField* field : fields_) {
      const LByteBuffer* next = field->GetCurrentRow();
      int index = 1;
      while (index <= field->GetRowCount() && field->GetRow(index) != next) ++index;
      digest.Add(index);
      field->ResetRowPointer();
    }
  }

  void Evaluate() {
    const auto bits = std::mem_fn<int(const char*, RowDataStream*)>(&ZRTExpression::GetBitStream);
    Add(kIntegers, 77, std::mem_fn(&ZRTExpression::GetIntegerOperand));
    Add(kIntegers, 77, std::mem_fn(&ZRTExpression::GetIntegerValue));
    Add(kFloats, 77.0F, std::mem_fn(&ZRTExpression::GetFloatOperand));
    Add(kFloats, 77.0F, GetFloatValue);
    RowDataStream value;
    Add(kBits, value, bits);
    const auto size = static_cast<std::size_t>(std::max(value.BitLength, 0) + 7) / 8;
    Add(kHexTexts, std::string(2 * size + 3, '|'),
        [](ZRTExpression& expression, const char* text, std::string* hex_text) {
          return expression.GetBitStream(text, hex_text->data());
        });
    // Into results that hold older bytes.
    Add(kBits, Stream(), bits);
    Add(kBits, Stream(), GetBitStreamValue);
    Add(kChains, Stream(), std::mem_fn(&ZRTExpression::SolveBitStreamExpression));
  }

  int block_size_;
  BlockSize setting_{block_size_};
  RichWorld world_;
  ZRTExpression& expression_ = world_.expression;
  std::vector<QLMDataField*> fields_;
  std::mt19937_64 random_{1};
  TextGenerator generator_{[this] { return random_(); }, RichNames()};
  std::string text_;
  Digest digests_[std::size(kNames)];
};

}  // namespace

int main(int argc, char** argv) {
  const long count = argc > 1 ? std::atol(argv[1]) : 20000;
  if (argc > 3 && std::setlocale(LC_ALL, argv[3]) == nullptr) return 2;
  Outcomes outcomes(argc > 2 ? std::atoi(argv[2]) : 0);
  for (long i = 0; i < count; ++i) {
    outcomes.AddText();
    if (i % 4 == 0) outcomes.AddOperator();
    if (i % 16 == 0) outcomes.AddBuffer();
  }
  outcomes.Print();
}
