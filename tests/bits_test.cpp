// Bit-vector texts: operands, chains, groups and unary operators with what a failure leaves, the
// order in which rows are taken, and the stream. Tables run on streams whose blocks grow and on
// blocks of 4, 7 and 256 bytes. What each operator does is tested elsewhere.
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>

#include "support.h"

namespace {

// A table reads "text = outcome ...": a "'" in a text is a blank, "empty" the empty text. An
// outcome is what the result stream holds, which held `before`, with the status in front if there
// is one.
template <class Door>
void Check(const char* table, const char* before, Door door) {
  std::istringstream cases(table);
  for (std::string text, equals, expected; cases >> text >> equals >> expected;) {
    if (text == "empty") text.clear();
    std::ranges::replace(text, '\'', ' ');
    for (const int block_size : {0, 4, 7, 256}) {
      const BlockSize setting(block_size);
      RichWorld scope;
      RowDataStream stream;
      Fill(stream, before);
      std::string given = text;
      const int status = door(scope.expression, given.data(), &stream);
      const std::string outcome = status == 0 ? "" : std::to_string(status) + ":";
      EXPECT_EQ(outcome + Hex(stream), expected) << text << ", blocks of " << block_size;
      EXPECT_EQ(given, text);
    }
  }
}

TEST(Bits, Operands) {
  const auto read = [](ZRTExpression& expression, char* text, RowDataStream* stream) {
    return GetBitStreamValue(expression, text, stream);
  };
  Check(R"(
    #1 = 5A01/1            #000000001 = 5A0001/9    #1111000011 = 5A03C3/10   0xF = 5AF0/8
    0xaBc = 5AABC0/16      0x123456789 = 5A1234567890/40   4294967297 = 5A00000001/32
    12[3] = 5A0000000C/32  1. = 5A00000001/32       #11[n]x = 5A03/2          10 = 5A00000063/32
    n = 5A00000002/32      neg[7] = 5AFFFFFFFE/32   t[1] = 5A00000014/32      t = 5A00000000/32
    t['n'-'1']x = 5A00000014/32    t[(0)] = 5A0000000A/32    t[!0] = 5A00000014/32
    t[f] = 5A0000001E/32   t[(1)@2] = 5A00000014/32    t[nosuch] = -516:5A/3    t[0-1] = -516:5A/3
    hidden = 5A0ABC/12   Long = 5A0102030405060708090A/75   Less = 5AAB/24   More[1] = 5AAABB/8
    A = 5A11/8   A'[n] = 5A22/8   A[0] = 5A11/8   A[3] = -518:5A/0   None = -518:5A/0
    ID_MASK = 5A/0   ID_MASK[1] = 5A/0   ID_MASK[2] = -518:5A/0   FuseArray_TDO = 5A00000005/32
    f = -507:5A/3  odd = -507:5A/3   A[ = -512:5A/3   t[1 = -512:5A/3  t['] = -513:5A/3
    A] = -514:5A/3 [1] = -515:5A/3   '[1] = -511:5A/3 1+1 = -511:5A/3  empty = -511:5A/3
    # = -511:5A/3  0X1 = -511:5A/3   1.5 = -511:5A/3  A' = -511:5A/3   id_mask = -511:5A/3)",
        "5A/3", read);
  const std::string many(300, '0');  // no part of an operand has a limit
  const std::string cases = "t[" + many + "1] = 00000014/32  #" + many + "1 = " + many.substr(226) +
                            "01/301  0x1" + many + "5 = 1" + many + "5/1208";
  Check(cases.c_str(), "/0", read);
}

TEST(Bits, Chains) {
  Check(R"(
    empty = -511:/0    0x12 = 12/8    12'@'34 = 0000000C00000022/64    1+2*3 = 00000009/32
    0xF0&0x3C&0x18 = 10/8     0x1234<<4 = 2340/16    0x0F^2@0x12 = 0F0F12/24   #101@#11111 = BF/8
    1+ = 00000001/32   0x12@' = 12/8   0x12<< = 12/8   1,2 = 00000001/32   1<2>3 = 00000001/32
    A[n-1]@A[1+1] = 1122/16   A[0]@A[2]@A = 112222/24   ID_MASK@hidden = 0ABC/12
    Spare@0x12 = FFFF12/20    Less@0x12 = 0000AB12/32   Long@#1 = 020406080A0C0E101215/76
    +1 = -511:/0    ~0x0F = -511:/0    nosuch+1 = -511:/0    '12 = -511:/0     size-1 = -511:/0
    1+2' = -511:00000001/32     1,nosuch = -511:00000001/32     1+(2) = -511:00000001/32
    1++2 = -506:00000001/32     1'+','2 = -506:00000001/32      0xFF^0x0000000001 = -517:FF/8
    1+f = -507:00000001/32      1/0 = -510:00000001/32          A@A@A = -518:1122/16
    None@1 = -518:/0            0x12@More@0x34 = -518:AABB/8)",
        "5A/3", [](ZRTExpression& expression, char* text, RowDataStream* stream) {
          return expression.SolveBitStreamExpression(text, stream);
        });
}

int EvaluateWhole(ZRTExpression& expression, const char* text, RowDataStream* stream) {
  return expression.GetBitStream(text, stream);
}

TEST(Bits, GroupsAndUnaryOperators) {
  Check(R"(
    (0xFF^2)@0x12 = FFFF12/24   (#1@#0)^3 = 2A/6    (0xFF^2)<<4 = FFF0/16   ((0x0F)) = 0F/8
    ~0x0F = F0/8      !0x00 = 01/8      !(0x05) = 00/8     0xF0&~0x3C = C0/8   (0xF)@~0x0F = F0F0/16
    0x11@$0x80@0x22 = 110122/24    1+2*(3) = 00000009/32    8>>'(1)' = 00000004/32
    0x12@(0x34)@0x56 = 123456/24   (#101@#1)@#0011 = B3/8    (0x12)@((0x34@(0x56))) = 123456/24
    1,(2) = 00000001/32      (1),2 = 00000001/32      1<(2) = 00000001/32      0x00$(0x12) = 48/8
    0xF0&~(0x0F) = F0/8      ~~(0x0F) = 0F/8          !'(0x05)'|0x01 = 01/8    0x1@!~(0xF) = 1000/16
    (0x12)'@'0x34 = 1234/16  0x12'@'~'0x0F'@'0x34 = 12F034/24
    More = AABB/8   (Less) = AB/24   ~Spare = 0000/12   ID_MASK = /0
    B@B@B = 112233/24         B@(B)@B = 331122/24       (B)@B@(B) = 113322/24   B@~B@B = 22EE33/24
    B@(B@(B@(B))) = 44332211/32   ((B)@B)@(B@B) = 11223344/32   B[3]@(B)@B[0] = 331122/24
    () = -511:/0     ('0x12) = -511:/0   (0x12)@ = -511:/0   ~~0x0F = -511:/0   ~1+ = -511:/0
    1) = -511:/0     x+!(1) = -511:/0    (nosuch = -508:/0   (1)2 = -509:/0     (1)) = -509:/0
    $(0x80) = -509:/0    1$0xF0 = -509:/0    x!(1) = -509:/0    ~A[1]+2] = -509:/0
    A[(1)] = -509:/0   A[~1] = -514:/0   ~A[~1] = -516:/0    (0x0F)^2@0x12 = -517:0F/8
    1(nosuch)2 = -511:/0    1(1)nosuch = -509:/0    1(1)+nosuch = -511:/0   1~1+nosuch = -509:/0
    0x12@(0x34)^0x0000000001 = -517:1234/16    (1/0)+1 = -510:/0    1/(0) = -510:00000001/32)",
        "/0", EvaluateWhole);
}

// Only a chain empties the stream; the last operators of other texts work on the older bytes too.
TEST(Bits, ResultsBehindOlderBytes) {
  Check(R"(
    0x12 = 12/8         1+nosuch = -511:00000001/32   (nosuch) = -511:5A01/9   (1 = -508:5A01/9
    (0x12) = 5A0112/8   1<<(2) = 680400000004/32      nosuch@(1) = -511:5A01/9
    ~0x0F = 5A01F0/8    0x12@(0x34) = -518:1234/8     (0x12)^0x0000000001 = -517:5A0112/8)",
        "5A01/9", EvaluateWhole);
}

TEST(Bits, RowsMoveOnFromTextToText) {
  RichWorld scope;
  const auto evaluate = [&](const char* text) { return Evaluate(scope.expression, text); };
  EXPECT_EQ(evaluate("B[3]@B"), "3311/16");
  EXPECT_EQ(evaluate("nosuch@(B)"), "-511") << "the group has taken its row";
  EXPECT_EQ(evaluate("B@nosuch"), "-511");
  EXPECT_EQ(evaluate("B@hidden@B[1]@hidden"), "44ABC11ABC/40");
  EXPECT_EQ(evaluate("B"), "-518");
}

TEST(RowDataStream, CopyBlock) {
  for (const int block_size : {0, 4, 7, 256}) {
    const BlockSize setting(block_size);
    RowDataStream source, target, shared(0, 5), empty;
    Fill(source, "0102030405060708090A/75");
    Fill(target, "AABBCC/24");
    target.CopyBlock(static_cast<RowDataStream*>(nullptr));
    target.CopyBlock(&source);
    EXPECT_EQ(Hex(target), "AABBCC0102030405060708090A/75");
    const RowDataStream copy(source);
    shared = source;
    shared.WriteData(0, 0xEE);
    source.CopyBlock(&shared);
    EXPECT_EQ(Hex(shared), "EE02030405060708090AEE02030405060708090A/75");
    target.ClearBuffer();
    target.CopyBlock(&empty);
    EXPECT_EQ(Hex(target), "/0");
    target = copy;
    EXPECT_EQ(Hex(target), "0102030405060708090A/75");
  }
}

}  // namespace
