// How values, failures and progress are shown. Evaluates nothing.
#pragma once

#include <iosfwd>
#include <string>

#include "RowDataStream.h"
#include "files.h"

enum class BitFormat { kHex, kBin, kRaw };

/// The bytes that the bit length of `stream` needs, the last byte last: missing ones are 0, those
/// in front of the length are left out.
std::string ValidBytes(RowDataStream* stream);

/// "0x" and two digits a byte.
std::string HexText(const std::string& bytes);

/// Hexadecimal text, exactly the valid bits as 0 and 1, or the bytes themselves.
std::string BitText(RowDataStream* stream, BitFormat format);

/// The shortest text that reads back to the same value; inf, -inf or nan.
std::string FloatText(float value);

/// Standard error, for a message behind what went to standard output so far. Progress is gone.
std::ostream& ErrorStream();

/// Prints "zrteval: message" in one line to standard error. Shown() is applied to the message, so
/// what it quotes may be any text.
void Complain(const std::string& message);

/// Prints the message of `failure`, with the place that it is about, if there is one.
void Complain(const Failure& failure);

/// Says on a terminal's standard error what is being done; the next call takes its place.
void ShowProgress(const std::string& step);
