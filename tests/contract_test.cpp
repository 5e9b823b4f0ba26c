// The library over closed libraries that are their contracts and nothing more, values left open
// included: what it gives there, and what becomes of its results when they refuse to store.
#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <limits>
#include <memory>
#include <sstream>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "DataExpression.h"
#include "contract_support.h"
#include "random_text.h"
#include "scan/operators.h"

// Builds what evaluators read, and tells blocks their size and when to refuse.
struct ContractHost {
  static void AddToken(ZRTTokenTree& tree, const char* name, unsigned short type,
                       std::vector<int> ints, std::vector<float> floats = {}) {
    static std::deque<ZRTTokens> tokens;
    static std::deque<RBTreeNode> nodes;
    ZRTTokens& token = tokens.emplace_back();
    RBTreeNode& node = nodes.emplace_back();
    std::tie(token.type_, token.ints_, token.floats_) = std::tie(type, ints, floats);
    std::tie(node.key_, node.object_, node.next_) = std::make_tuple(name, &token, tree.root_);
    tree.root_ = &node;
  }
  static void AddField(QLMPlusData& data, const char* name, const char* rows) {
    auto& field = data.fields_[name] = std::make_unique<QLMDataField>();
    std::istringstream each(rows);
    for (std::string row; each >> row;) {
      RowDataStream bytes;
      Fill(bytes, row);
      const LByteBuffer& row_bytes = bytes;
      *field->AddRow(bytes.BitLength) = row_bytes;
    }
  }
  static const std::string& NameOf(const QLMDataField& field) { return field.name_; }

  static void SetList(int status) { ErrorHandler::list_status_ = status; }
  static void AddEntry(ErrorHandler& handler, unsigned short code, const char* message) {
    ErrorElement& entry = handler.list_[{code, 8}];
    std::tie(entry.message_, entry.field_) = std::make_tuple(message, 7);
  }
  static std::string Record(const ErrorHandler& handler) {
    return handler.request_ + handler.record_;
  }

  static void SetBlockSize(int size) { LByteBuffer::default_size_ = size; }
  // A chain of two blocks with as many bytes together.
  static void FillUp(LByteBuffer& buffer, std::size_t byte_count) {
    SetBlockSize(static_cast<int>(byte_count / 2));
    buffer.block_->bytes.resize(byte_count - byte_count / 2, 0xAB);
    buffer.AllocateNewBlock()->block_->bytes.resize(byte_count / 2, 0xCD);
  }
  // From now on `granted` bytes and blocks are taken, and then one or all others refused.
  static void Refuse(long granted, bool for_good) {
    LByteBuffer::call_count_ = 0;
    LByteBuffer::first_refused_ = granted + 1;
    LByteBuffer::last_refused_ = for_good ? LByteBuffer::kNever : granted + 1;
  }
  // Whether there was a refusal.
  static bool Relent() {
    const bool was_refused = LByteBuffer::call_count_ >= LByteBuffer::first_refused_;
    LByteBuffer::first_refused_ = LByteBuffer::kNever;
    return was_refused;
  }
};

namespace {

struct Scene {
  Scene() {
    ContractHost::AddField(external, "A", "11/8 22/8");
    ContractHost::AddField(local, "A", "EE/8");
    ContractHost::AddField(local, "B", "11/8 22/8 33/8 44/8");
    ContractHost::AddField(global, "hidden", "0ABC/12");
    ContractHost::AddField(global, "Long", "0102030405060708090A/75");
    ContractHost::AddField(global, "Spare", "FFFF/12");
    ContractHost::AddField(global, "Less", "AB/24");
    ContractHost::AddField(global, "None", "");
    expression.SetLocalTokenTree(&Tokens().first);
    expression.SetGlobalTokenTree(&Tokens().second);
    expression.SetExternalZRTData(&external);
    expression.SetLocalZRTData(&local);
    expression.SetGlobalZRTData(&global);
  }

  using Trees = std::pair<ZRTTokenTree, ZRTTokenTree>;  // local, global; evaluating changes neither
  static Trees& Tokens() {
    static Trees trees = [] {
      Trees made;
      ContractHost::AddToken(made.first, "n", 2, {2});
      ContractHost::AddToken(made.first, "neg", 4, {-2});
      ContractHost::AddToken(made.first, "hidden", 2, {7});
      ContractHost::AddToken(made.first, "t", 6, {10, 20, 30});
      ContractHost::AddToken(made.first, "f", 1, {}, {2.5F});
      ContractHost::AddToken(made.second, "g", 7, {}, {1.5F, -2.5F});
      ContractHost::AddToken(made.second, "n", 2, {99});
      ContractHost::AddToken(made.second, "FuseArray_TDI", 4, {5});
      return made;
    }();
    return trees;
  }

  QLMPlusData external, local, global;
  ZRTExpression expression;
};

std::string OutcomeOf(char kind, ZRTExpression& expression, const char* text) {
  int status = 0;
  std::ostringstream value;
  if (kind == 'i') {
    int number = 77;
    status = expression.GetIntegerOperand(text, &number);
    value << number;
  } else if (kind == 'f') {
    float number = 77;
    status = expression.GetFloatOperand(text, &number);
    value << number;
  } else if (kind == 'h') {
    static char hex[1 << 16];  // any value of these tests
    status = expression.GetBitStream(text, hex);
    value << hex;
  } else {
    return Evaluate(expression, text);
  }
  return status == 0 ? value.str() : std::to_string(status);
}

// Each row: integer, float, bit vector or hexadecimal text, an expression, and its value or status.
TEST(Contract, Evaluations) {
  std::istringstream cases(R"(
    i t[1]*2+neg = 38    i (n+1)*(t[2]-n) = 84     i ~n = -3      i f = 2     i g[1] = -2
    i t[9] = 7           i 12<<2|1 = 49            i x = -511     i t = -507  i 1/0 = -510
    i hidden = 7         i FuseArray_TDO = -511    i t[0-1] = -516
    f f*2-1 = 4          f g[0]+t[0] = 11.5        f g[2] = 7     f 1<<2 = -510
    b 0xaBc@#101 = 055e05/19    b 12 = 0000000c/32 b t = 00000007/32   b t[n] = 0000001e/32
    b A@A@A = 112211/24  b A[2]@B[3]@A = 223311/24 b A[3] = -518  b None = -518 b hidden = 0abc/12
    b (B)@B@(B) = 113322/24     b ~Spare = 0000/12 b Less@0x12 = 0000ab12/32   b ID_MASK = /0
    b ID_MASK[1] = /0    b ID_MASK[2] = -518       b FuseArray_TDO = 00000005/32
    b Long>>1 = 00810182028303840485/75            b $Long = 509010e060a020c04080/75
    h (0xFF^2)@0xaB = 0xffffab  h #1^70 = 0x3fffffffffffffffff    h Less = 0x0000ab    h f = -507
    b 0x01+0x01 = 02/8   b 0x0102-0x0001 = 0101/16 b 0x80<<0x04 = 00/8         b 0xF0$(0x1) = 08/8
    b 0x12@(0x34)@0x56 = 123456/24     b 0xFF^(3)@#1 = 01ffffff/25    b (0x0F|0x30)&n = 02/8)");
  for (std::string kind, text, equals, outcome; cases >> kind >> text >> equals >> outcome;) {
    for (const int block_size : {4, 7, 300}) {
      ContractHost::SetBlockSize(block_size);
      Scene scene;
      EXPECT_EQ(OutcomeOf(kind[0], scene.expression, text.c_str()), outcome) << kind << " " << text;
    }
  }
}

TEST(Contract, SetUpAndLookups) {
  Scene scene;
  std::string name = "FuseArray_TDO", mask = "FuseArray_MASK_TDI", token = "n", here = ".";
  EXPECT_EQ(scene.expression.SearchDataField(name.data()), nullptr);
  EXPECT_EQ(name, "FuseArray_TDI");
  QLMDataField* field = scene.expression.SearchDataField(mask.data());
  EXPECT_EQ(ContractHost::NameOf(*field) + std::to_string(field->GetRowCount()), mask + "1");
  auto& [local, global] = Scene::Tokens();
  EXPECT_EQ(SearchToken(scene.expression, token.data()), local.GetToken(token.data()));
  EXPECT_EQ(GetTokenFromTree(scene.expression, &global, token.data())->GetIntValue(), 99);
  EXPECT_TRUE(IsToken(scene.expression, "A[1].x") && !IsToken(scene.expression, ".A"));

  ContractHost::SetList(-42);
  EXPECT_EQ(scene.expression.Initialize(here.data()), -42);
  ErrorHandler& handler = *scene.expression.GetErrorHandler();
  const std::string request = "./ErrorList.txt 8";
  EXPECT_EQ(ContractHost::Record(handler), request + "\nZRT Template Process Error.\n");
  ContractHost::AddEntry(handler, 65036, "M");
  ContractHost::SetList(3);
  const ZRTExpression copy(scene.expression);
  EXPECT_EQ(scene.expression.Initialize(here.data()), 3);
  EXPECT_EQ(scene.expression.Initialize(token.data()), ErrBadDirectory);
  EXPECT_EQ(ContractHost::Record(handler), request + "\nM\nn\n");
}

TEST(Contract, StreamsAndRunLengthTexts) {
  for (const int block_size : {4, 7, 300}) {
    ContractHost::SetBlockSize(block_size);
    RowDataStream stream, target, shared;
    Fill(stream, "ABABABABABABABAB0CCD/80");
    char text[23];
    fnGetDataExpression(&stream, text);
    EXPECT_STREQ(text, "(0xab^8)@0x0ccd");
    const RowDataStream copy(stream);
    shared = stream;
    shared.CopyBlock(&stream);  // onto its own end
    EXPECT_EQ(Hex(stream), "abababababababab0ccdabababababababab0ccd/80");
    target.CopyBlock(static_cast<RowDataStream*>(nullptr));
    target = copy;
    EXPECT_EQ(Hex(target), "abababababababab0ccd/80");
  }
}

// Two blocks may hold more than an index reaches. What cannot be read is refused.
TEST(Contract, RefusesBytesBeyondAnIndex) {
  if (!IsHuge()) GTEST_SKIP() << "takes gigabytes: set ZRT_HUGE to run it";
  for (const unsigned int byte_count : {0x7FFFFFFFU, 0x80000000U}) {
    const bool fits = byte_count < 0x80000000U;
    const std::string refused = std::to_string(ErrStreamWrite);
    Scene scene;
    ContractHost::AddField(scene.local, "long", "/8");
    std::string name = "long";
    LByteBuffer& row = *scene.local.GetDataField(name.data())->GetRow(1);
    ContractHost::FillUp(row, byte_count);
    RowDataStream stream, small;
    static_cast<LByteBuffer&>(stream) = row;
    Fill(small, "5a/8");
    EXPECT_EQ(Evaluate(scene.expression, "0x12|long"), fits ? "df/8" : refused);
    EXPECT_EQ(ExecuteBitStreamOperator(scene.expression, &small, zrt::OpAnd, &stream),
              fits ? 0 : ErrStreamWrite);
    EXPECT_EQ(Hex(small), fits ? "48/8" : "5a/8");
    if (fits) continue;
    EXPECT_EQ(ExecuteBitStreamOperator(scene.expression, &stream, zrt::OpAnd, &small),
              ErrStreamWrite);
    EXPECT_EQ(scene.expression.GetBitStream("1+(2)", &stream), ErrStreamWrite);
    char text[] = "1";
    fnGetDataExpression(&stream, text);
    EXPECT_STREQ(text, "");
    EXPECT_EQ(stream.GetTotalSize(), byte_count);
  }
}

struct Result {
  bool operator==(const Result&) const = default;

  int status;
  std::string bytes;
  int bit_length;
};

// `operation` stores, by way of a call that it hands to its last argument, into a stream that holds
// `older`. Afterwards scene and stream serve as ever.
constexpr long kUnlimited = std::numeric_limits<long>::max() - 1;

template <class Operation>
Result Store(const std::string& older, const Operation& operation, long granted, bool for_good,
             bool& was_refused) {
  Scene scene;
  RowDataStream stream;
  Fill(stream, older);
  const int status = operation(scene.expression, stream, [&](const auto& call) {
    ContractHost::Refuse(granted, for_good);
    const int result = call();
    was_refused = ContractHost::Relent();
    return result;
  });
  const std::string held = Hex(stream);
  const int bit_length = stream.BitLength;
  stream.ClearBuffer();
  stream.BitLength = 0;
  EXPECT_EQ(scene.expression.GetBitStream("(B[2]@t[1])^2", &stream), 0);
  EXPECT_EQ(Hex(stream), "22000000142200000014/80");
  return {status, held.substr(0, held.find('/')), bit_length};
}

// Refuses the first byte or block that `operation` asks for, the second, and so on, each alone and
// with all that follow. Either nobody notices, or the status tells it and bytes are missing at the
// end of what is left: of the usual result or, if `restores`, of the older bytes.
template <class Operation>
void Refuse(const std::string& what, const std::string& older, bool restores,
            const Operation& operation) {
  bool is_refused = true;
  const Result plain = Store(older, operation, kUnlimited, true, is_refused);
  const Result kept{ErrStreamWrite, restores ? older.substr(0, older.find('/')) : plain.bytes,
                    restores ? Bits(older).bit_length : plain.bit_length};
  for (const bool for_good : {false, true}) {
    is_refused = true;
    for (long granted = 0; is_refused; ++granted) {
      const Result result = Store(older, operation, granted, for_good, is_refused);
      if (result == plain) continue;
      EXPECT_TRUE(is_refused && kept.bytes.starts_with(result.bytes)) << what << ", " << granted;
      EXPECT_EQ(result, (Result{kept.status, result.bytes, kept.bit_length})) << what;
      EXPECT_TRUE(!restores || for_good || kept == result) << what << ", " << granted;
    }
  }
}

void RefuseEvaluations(std::string text, const char* older) {
  const auto refuse = [&](const auto& call) {
    Refuse(text, older, false, [&](auto& expression, RowDataStream& stream, const auto& run) {
      return run([&] { return call(expression, text.data(), &stream); });
    });
  };
  refuse([](ZRTExpression& expression, const char* given, RowDataStream* stream) {
    return expression.GetBitStream(given, stream);
  });
  refuse(std::mem_fn(&ZRTExpression::SolveBitStreamExpression));
  refuse(GetBitStreamValue);
  Refuse(text, older, false, [&](auto& expression, RowDataStream& stream, const auto& run) {
    RowDataStream source;
    (void)expression.GetBitStream(text.c_str(), &source);
    const unsigned int wanted = stream.GetTotalSize() + source.GetTotalSize();
    run([&] {
      stream.CopyBlock(&source);
      return 0;
    });
    return stream.GetTotalSize() == wanted ? 0 : int{ErrStreamWrite};
  });
}

TEST(Contract, RefusalsCutResultsShort) {
  RandomText random_text(7);
  for (int i = 0; i < 200; ++i) {
    ContractHost::SetBlockSize(4 + i % 9);
    const std::string text = i < 2 ? "(Long^9)@~Long" : random_text();
    RefuseEvaluations(text, i % 2 == 0 ? "/0" : "5a01/9");
    // Hexadecimal text is written without a store.
    Scene scene, other;
    const std::string usual = OutcomeOf('h', scene.expression, text.c_str());
    ContractHost::Refuse(0, true);
    EXPECT_EQ(OutcomeOf('h', other.expression, text.c_str()), usual) << text;
    ContractHost::Relent();
  }
}

TEST(Contract, RefusalsLeaveTheLeftStreamOfAnOperator) {
  const char* const values[] = {"/0", "85/3", "8f03/12", "00000003/32",
                                "0102030405060708090a0b0c0d0e0f10/125"};
  for (int row = 0; row < 15 * 25; ++row) {
    ContractHost::SetBlockSize(4 + row % 4);
    const auto code = static_cast<unsigned short>(row / 25);
    const std::string left = values[row % 5], right = values[row / 5 % 5];
    std::string what = std::to_string(code);
    what.append(" on ").append(left).append(" by ").append(right);
    const auto operate = [&](ZRTExpression& expression, RowDataStream& stream, const auto& run) {
      RowDataStream operand;
      Fill(operand, right);
      const int status =
          run([&] { return ExecuteBitStreamOperator(expression, &stream, code, &operand); });
      EXPECT_EQ(Hex(operand), right);
      return status;
    };
    Refuse(what, left, true, operate);
    if (code == zrt::OpConcat || code == zrt::OpReplicate) continue;
    bool is_refused = false;
    (void)Store(left, operate, 0, true, is_refused);
    EXPECT_FALSE(is_refused) << what << ": its result has the place of the left stream";
  }
}

}  // namespace
