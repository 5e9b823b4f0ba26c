// Values as text by the library's own functions where it has one, and messages behind progress.
#include "output.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <iostream>
#include <new>

#include "shown_text.h"
#include "terminal.h"
#include "zrtexpression/texts.h"

std::string ValidBytes(RowDataStream* stream) {
  std::string bytes(zrt::ValidByteCount(*stream), '\0');
  zrt::CopyValidBytes(*stream, zrt::SpareBits::kAsTheyAre,
                      reinterpret_cast<std::uint8_t*>(bytes.data()));  // NOLINT: chars are bytes
  return bytes;
}

std::string HexText(const std::string& bytes) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  std::string text = "0x";
  text.reserve(2 + 2 * bytes.size());
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    text += kDigits[byte >> 4U];
    text += kDigits[byte & 0xFU];
  }
  return text;
}

std::string BitText(RowDataStream* stream, BitFormat format) {
  if (format == BitFormat::kHex) {
    std::string text;
    if (!zrt::GetHexText(*stream, &text)) throw std::bad_alloc();
    return text;
  }
  std::string bytes = ValidBytes(stream);
  if (format == BitFormat::kRaw) return bytes;
  std::string bits(static_cast<std::size_t>(std::max(stream->BitLength, 0)), '0');
  for (std::size_t k = 0; k < bits.size(); ++k) {
    const auto byte = static_cast<unsigned char>(bytes[bytes.size() - 1 - k / 8]);
    if (((byte >> (k % 8)) & 1U) != 0) bits[bits.size() - 1 - k] = '1';
  }
  return bits;
}

// The language knows no "+" in an exponent and no fraction beside one: 1.5e+20 becomes 15e19.
std::string FloatText(float value) {
  if (std::isnan(value)) return "nan";  // to_chars would tell the sign of it
  char buffer[32];
  std::string text(buffer, std::to_chars(std::begin(buffer), std::end(buffer), value).ptr);
  const std::size_t exponent_mark = text.find('e');
  if (exponent_mark == std::string::npos) return text;
  std::string digits = text.substr(0, exponent_mark);
  int exponent = std::atoi(text.c_str() + exponent_mark + 1);
  if (const std::size_t point = digits.find('.'); point != std::string::npos) {
    digits.erase(point, 1);
    exponent -= static_cast<int>(digits.size() - point);
  }
  return digits + "e" + std::to_string(exponent);
}

std::ostream& ErrorStream() {
  std::cout.flush();
  ShowProgress("");
  return std::cerr;
}

void Complain(const std::string& message) { ErrorStream() << "zrteval: " + Shown(message) + '\n'; }

void Complain(const Failure& failure) {
  if (!failure.where) return Complain(failure.message);
  PrintDiagnostic(ErrorStream(), *failure.where, failure.message, ErrorStyle(), Tone::kFailure);
}

void ShowProgress(const std::string& step) {
  static bool is_shown = false;
  if (!IsErrorTerminal() || (step.empty() && !is_shown)) return;
  std::cerr << "\r\033[K" << step << (step.empty() ? "" : " ...") << std::flush;
  is_shown = !step.empty();
}
