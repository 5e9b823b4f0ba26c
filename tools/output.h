// How values, failures and progress are shown. Evaluates nothing.
#pragma once

#include <string>

#include "ZRTExpression.h"

enum class BitFormat { kHex, kBin, kRaw };

/// The bytes that the bit length of `stream` needs, the last byte last: missing ones are 0, those
/// in front of the length are left out.
std::string ValidBytes(RowDataStream* stream);

/// "0x" and two digits a byte. Of ValidBytes() this is the library's own hexadecimal text.
std::string HexText(const std::string& bytes);

/// Hexadecimal text, exactly the valid bits as 0 and 1, or the bytes themselves.
std::string BitText(RowDataStream* stream, BitFormat format);

/// The shortest text that reads back to the same value; inf, -inf or nan.
std::string FloatText(float value);

/// Tells what a status means, in the words of the error list.
class Explainer {
 public:
  /// `data_dir` holds ErrorList.txt, which is read at once; if empty, the directory that belongs to
  /// this program does, and is looked at when a failure needs it. Complains of a list that is wrong
  /// or cannot be read, but for one of this program's own that is not there.
  explicit Explainer(const std::string& data_dir);

  /// Status, name, and the sentence of the error list if there is one.
  std::string Explain(int status);

 private:
  void LoadList(const std::string& dir);

  bool is_loaded_ = false;
  ZRTExpression expression_;  // serves its error list alone
};

/// Prints "zrteval: message" in one line to standard error, behind what went to standard output so
/// far. Shown() is applied to the message, so what it quotes may be any text.
void Complain(const std::string& message);

/// Says on a terminal's standard error what is being done; the next call takes its place.
void ShowProgress(const std::string& step);
