// Prints a digest over the outcomes of many fixed texts and buffers, one line a subject. Every
// build of the library, whatever its compiler, options and machine, must print the same: a line
// that differs tells a build that computes something else.
//
//   zrt_digest [COUNT [BLOCK_SIZE [LOCALE]]]
#include <clocale>
#include <iomanip>
#include <iostream>
#include <iterator>
#include <random>

#include "DataExpression.h"
#include "scan/operators.h"
#include "text_generator.h"
#include "twins.h"

namespace {

// The kinds of evaluations that are not another one's double, and these.
enum Subject { kScans = kSolvedInteger, kOperators, kRunLengths, kSubjects };
constexpr const char* kMoreNames[] = {"scans", "operators", "run lengths", "all"};

// FNV-1a of 64 bits.
struct Digest {
  std::uint64_t value = 0xCBF29CE484222325;

  void Add(const std::string& text) {
    for (const char c : text) value = (value ^ static_cast<std::uint8_t>(c)) * 0x100000001B3;
  }
};

class Outcomes {
 public:
  explicit Outcomes(int block_size) : setting_(block_size) {}

  void AddText() {
    const std::string text = generator_.BoundedText();
    AddEvaluations(text);
    ZRTExpression& expression = evaluator_.expression;
    unsigned short first = 99, last = 99;
    AddNumbers(kScans, {expression.GetLeftMostOperator(text.c_str(), &first), first,
                        expression.GetRightMostOperator(text.c_str(), &last), last,
                        expression.IsNumber(text.c_str())});
  }

  void AddOperator() {
    const auto code = static_cast<unsigned short>(Below(16));
    const Stream count = {
        {0, 0, 0, static_cast<std::uint8_t>(Below(30))},
        32
    };
    RowDataStream left, right;
    Fill(left, AnyStream());
    Fill(right, code == zrt::OpReplicate ? count : AnyStream());
    AddNumbers(kOperators, {evaluator_.expression.ExecuteBitStreamOperator(&left, code, &right)});
    digests_[kOperators].Add(Show(left));
  }

  // A buffer as run-length text, and as a literal of which an expression is made.
  void AddBuffer() {
    const Stream stream = AnyStream();
    LByteBuffer data;
    Fill(data, stream.bytes);
    std::string text(2 * stream.bytes.size() + 3, '|');
    fnGetDataExpression(&data, text.data());
    digests_[kRunLengths].Add(text);
    text.resize(text.find('\0'));
    AddEvaluations(text);
    const std::string digits = Show(stream).substr(0, 2 * stream.bytes.size());
    for (const char* const behind : {">>13", "<<3", "@#101", "^3", "&(~Long)", "|0xF0F", "$n"}) {
      if (Below(8) == 0) AddEvaluations("~0x0" + digits + behind);
    }
  }

  void Print() {
    Digest all;
    for (const Digest& digest : digests_) all.Add(std::to_string(digest.value));
    digests_[kSubjects] = all;
    for (std::size_t i = 0; i < std::size(digests_); ++i) {
      std::cout << std::left << std::setfill(' ') << std::setw(16)
                << (i < kScans ? kNames[i] : kMoreNames[i - kScans]) << std::right
                << std::setfill('0') << std::setw(16) << std::hex << digests_[i].value << '\n';
    }
  }

 private:
  std::size_t Below(std::size_t limit) { return generator_.Below(limit); }
  void AddNumbers(Subject subject, std::initializer_list<int> numbers) {
    for (const int number : numbers) digests_[subject].Add(std::to_string(number) + ",");
  }

  // Bytes and a bit length that need not agree, in runs, some of the size that kernels for wide
  // vectors like.
  Stream AnyStream() {
    Stream stream;
    const std::size_t size = Below(Below(32) == 0 ? 20000 : Below(4) == 0 ? 600 : 9);
    while (stream.bytes.size() < size) {
      const auto byte = static_cast<std::uint8_t>(Below(256));
      stream.bytes.insert(stream.bytes.end(), Below(4) == 0 ? 1 + Below(20) : 1, byte);
    }
    const auto spare_bits = static_cast<int>(Below(12));
    stream.bit_length = std::max(0, static_cast<int>(8 * stream.bytes.size()) - spare_bits);
    return stream;
  }

  // Into results that hold older bytes, and once into an empty one.
  void AddEvaluations(const std::string& text) {
    const Stream older = AnyStream();
    evaluator_.ResetRows();
    const Outcome bits = evaluator_.Evaluate(kBits, text);
    digests_[kBits].Add(Show(bits));
    const auto size = static_cast<std::size_t>(std::max(bits.stream.bit_length, 0) + 7) / 8;
    for (std::size_t kind = 0; kind < kScans; ++kind) {
      evaluator_.ResetRows();
      const std::size_t hex_length = 2 * size + 2;
      digests_[kind].Add(
          Show(evaluator_.Evaluate(static_cast<Kind>(kind), text, older, hex_length)));
    }
  }

  BlockSize setting_;
  Evaluator evaluator_;
  std::mt19937_64 random_{1};
  TextGenerator generator_{[this] { return random_(); }};
  Digest digests_[kSubjects + 1];
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
