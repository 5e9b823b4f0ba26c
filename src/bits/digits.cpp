// Digits both ways by arithmetic on vectors; a table would cost a load for each digit. Few digits
// are better off without vectors.
#include "bits/digits.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <utility>

#include "bits/bit_value.h"
#include "bits/wide.h"
#include "bits/word.h"

namespace zrt {
namespace {

// A digit without a second one.
std::uint8_t HighNibble(char digit) {
  const int value = digit <= '9' ? digit - '0' : (digit | ' ') - 'a' + 10;
  return static_cast<std::uint8_t>(value << 4);
}

// Four bytes as digits, the first one in the top byte.
std::uint64_t DigitsOf(std::uint32_t number, std::uint8_t gap) {
  std::uint64_t values = (number | std::uint64_t{number} << 16) & 0x0000FFFF0000FFFFU;
  values = (values | values << 8) & 0x00FF00FF00FF00FFU;
  values = (values | values << 4) & InEachByte(0xF);
  const std::uint64_t above_nine = (values + InEachByte(6)) >> 4 & InEachByte(1);
  return values + InEachByte('0') + above_nine * gap;
}

// Vectors that every machine has, and those of machines that have wider ones. (A size that is a
// template's parameter is not for all compilers.)
struct Narrow {
  using Chars [[gnu::vector_size(16)]] = std::uint8_t;
  using Digits [[gnu::vector_size(16)]] = std::int8_t;      // the same, compared in one step
  using Pairs [[gnu::vector_size(16)]] = std::uint16_t;     // of them, to make a byte each
  using Bytes [[gnu::vector_size(8)]] = std::uint8_t;       // these bytes
  using BytePairs [[gnu::vector_size(8)]] = std::uint16_t;  // the same, shifted in one step
};
struct Wide {
  using Chars [[gnu::vector_size(32)]] = std::uint8_t;
  using Digits [[gnu::vector_size(32)]] = std::int8_t;
  using Pairs [[gnu::vector_size(32)]] = std::uint16_t;
  using Bytes [[gnu::vector_size(16)]] = std::uint8_t;
  using BytePairs [[gnu::vector_size(16)]] = std::uint16_t;
};

// The place of the first byte whose top bit is set; their count if there is none.
template <class Chars>
ZRT_INLINE std::size_t FirstTopBit(const Chars& chars) {
  std::array<std::uint64_t, sizeof(Chars) / kWordSize> words{};
  std::memcpy(words.data(), &chars, sizeof(Chars));
  for (std::size_t i = 0; i < words.size(); ++i) {
    const std::uint64_t top_bits = words[i] & InEachByte(0x80);
    if (top_bits != 0) return i * kWordSize + FirstByte(top_bits);
  }
  return sizeof(Chars);
}
#ifdef __x86_64__  // has an instruction that gathers top bits
inline std::size_t FirstTopBit(const Narrow::Chars& chars) {
  using Plain [[gnu::vector_size(sizeof(chars))]] = char;
  const int bits = __builtin_ia32_pmovmskb128(reinterpret_cast<Plain>(chars));
  return static_cast<std::size_t>(std::countr_zero(static_cast<unsigned>(bits) | 1U << 16));
}
[[gnu::target("avx2")]] inline std::size_t FirstTopBit(const Wide::Chars& chars) {
  using Plain [[gnu::vector_size(sizeof(chars))]] = char;
  const int bits = __builtin_ia32_pmovmskb256(reinterpret_cast<Plain>(chars));
  return static_cast<std::size_t>(std::countr_zero(static_cast<unsigned>(bits)));
}
#endif

// Steps of as many digits as a vector has bytes. Vectors are handed on by reference alone, as in
// the kernels; none is wider than the machine has them, since compilers would go byte by byte then.
template <class Vectors>
struct Steps {
  using Chars = typename Vectors::Chars;
  using Digits = typename Vectors::Digits;
  using Pairs = typename Vectors::Pairs;
  using Bytes = typename Vectors::Bytes;
  using BytePairs = typename Vectors::BytePairs;
  static constexpr std::size_t kStep = sizeof(Chars);

  ZRT_INLINE static void KeepAbove(Chars& chars, const Chars& least) {
    chars = chars > least ? chars : least;
  }
  ZRT_INLINE static void KeepBelow(Chars& chars, const Chars& most) {
    chars = chars < most ? chars : most;
  }

  // The values of digits of either case, and 16 to 143 for what is no digit: decimal digits are
  // brought to the top of all numbers, letters to the bottom, and from there to their values in
  // steps that do not carry the others round to them.
  ZRT_INLINE static void ToValues(const Chars& chars, Chars& values) {
    values = chars + (255 - '9');
    KeepAbove(values, Chars{} + 6);
    values -= 256 - 10;
    Chars letters = (chars | ' ') - 'a';
    KeepBelow(letters, Chars{} + (143 - 10));
    KeepBelow(values, letters + 10);
  }

  // Two values make a byte.
  ZRT_INLINE static void ToBytes(const Chars& values, std::uint8_t* bytes) {
    Pairs pairs;
    std::memcpy(&pairs, &values, kStep);
    constexpr bool kIsLittle = std::endian::native == std::endian::little;
    const Pairs both = kIsLittle ? (pairs << 4) | (pairs >> 8) : (pairs >> 4) | pairs;
    const auto joined = __builtin_convertvector(both & 0xFF, Bytes);
    std::memcpy(bytes, &joined, sizeof(joined));
  }

  // `most` gathers the greatest values.
  ZRT_INLINE static void ReadStep(const char* digits, std::uint8_t* bytes, Chars& most) {
    Chars chars;
    Chars values;
    std::memcpy(&chars, digits, kStep);
    ToValues(chars, values);
    KeepAbove(most, values);
    ToBytes(values, bytes);
  }

  // The first place of what is no digit; kStep if there is none. No digit's value gets a top bit.
  ZRT_INLINE static std::size_t FirstOther(const Chars& values) {
    return FirstTopBit(values + (128 - 16));
  }

  // Whole steps in their place, and the rest with zeros behind it in a place of its own.
  ZRT_INLINE static bool Read(std::string_view digits, std::span<std::uint8_t> bytes) {
    constexpr std::ptrdiff_t kReadAhead = 1024;  // characters
    constexpr std::size_t kPart = 16384;         // characters, between looks at the others
    Chars most{};
    const std::size_t in_steps = digits.size() / kStep * kStep;
    for (std::size_t i = 0; i < in_steps;) {
      const std::size_t end = std::min(i + kPart, in_steps);
      for (; i < end; i += kStep) {
        // Between groups the literals of a text are read from the last one to the first.
        __builtin_prefetch(&digits[i] - kReadAhead);
        ReadStep(&digits[i], &bytes[i / 2], most);
      }
      if (FirstOther(most) < kStep) return false;
    }
    if (in_steps < digits.size()) {
      std::array<char, kStep> last{};
      std::array<std::uint8_t, kStep / 2> last_bytes{};
      last.fill('0');
      digits.substr(in_steps).copy(last.data(), kStep);
      ReadStep(last.data(), last_bytes.data(), most);
      const auto rest = bytes.subspan(in_steps / 2);
      std::copy_n(last_bytes.data(), rest.size(), rest.data());
    }
    return FirstOther(most) == kStep;
  }

  // A step at once; the rest in a place of its own with what is no digit behind it.
  ZRT_INLINE static std::size_t Copy(std::string_view text, char* copy, std::uint8_t* bytes) {
    const std::size_t in_steps = text.size() / kStep * kStep;
    std::size_t count = 0;
    std::size_t in_step = kStep;
    for (; count < in_steps; count += kStep) {
      Chars chars;
      Chars values;
      std::memcpy(&chars, &text[count], kStep);
      std::memcpy(copy + count, &chars, kStep);
      ToValues(chars, values);
      ToBytes(values, bytes + count / 2);
      in_step = FirstOther(values);
      if (in_step < kStep) break;
    }
    if (in_step < kStep) {
      count += in_step;
    } else if (count < text.size()) {
      std::array<char, kStep> last{};
      std::array<std::uint8_t, kStep / 2> last_bytes{};
      Chars most{};
      const std::size_t length = text.substr(count).copy(last.data(), kStep);
      std::copy_n(last.data(), length, copy + count);
      ReadStep(last.data(), last_bytes.data(), most);
      in_step = FirstOther(most);
      std::copy_n(last_bytes.data(), (in_step + 1) / 2, bytes + count / 2);
      count += in_step;
    }
    if (count % 2 != 0) bytes[count / 2] = HighNibble(text[count - 1]);
    return count;
  }

  template <std::size_t... kPlaces>
  ZRT_INLINE static void Interleave(const Bytes& first, const Bytes& second, Digits& both,
                                    std::index_sequence<kPlaces...> /*places*/) {
    both = reinterpret_cast<Digits>(__builtin_shufflevector(
        first, second, (kPlaces / 2 + (kPlaces % 2 == 0 ? 0 : sizeof(Bytes)))...));
  }

  // The other way round: bytes to digits. `gap` lies between "9" and the digit for ten.
  ZRT_INLINE static void WriteStep(const std::uint8_t* bytes, char* digits, std::uint8_t gap) {
    Bytes low;
    std::memcpy(&low, bytes, sizeof(low));
    const auto high = reinterpret_cast<Bytes>(reinterpret_cast<BytePairs>(low) >> 4);
    Digits chars;
    Interleave(high, low, chars, std::make_index_sequence<kStep>());
    chars &= 0xF;
    const Digits zero = Digits{} + '0';
    chars += chars > 9 ? zero + static_cast<std::int8_t>(gap) : zero;
    std::memcpy(digits, &chars, kStep);
  }

  // A step or more. The last one ends where the bytes do, whatever part of them it writes again: a
  // loop over a rest of any length costs more.
  ZRT_INLINE static void Write(std::span<const std::uint8_t> bytes, std::uint8_t gap, char* text) {
    const std::size_t last = bytes.size() - sizeof(Bytes);
    for (std::size_t i = 0; i < last; i += sizeof(Bytes)) WriteStep(&bytes[i], text + 2 * i, gap);
    WriteStep(&bytes[last], text + 2 * last, gap);
  }
};

ZRT_FOR_WIDE bool ReadWide(std::string_view digits, std::span<std::uint8_t> bytes) {
  return Steps<Wide>::Read(digits, bytes);
}
ZRT_FOR_WIDE std::size_t CopyWide(std::string_view text, char* copy, std::uint8_t* bytes) {
  return Steps<Wide>::Copy(text, copy, bytes);
}
ZRT_FOR_WIDE void WriteWide(std::span<const std::uint8_t> bytes, std::uint8_t gap, char* text) {
  Steps<Wide>::Write(bytes, gap, text);
}

// The same with steps of four bytes.
void WriteWords(std::span<const std::uint8_t> bytes, std::uint8_t gap, char* text) {
  const std::size_t last = bytes.size() - 4;
  for (std::size_t i = 0;; i = std::min(i + 4, last)) {
    std::uint32_t number = 0;
    for (const std::uint8_t byte : bytes.subspan(i, 4)) number = number << 8 | byte;
    const std::uint64_t digits = BigEndian(DigitsOf(number, gap));
    std::memcpy(text + 2 * i, &digits, kWordSize);
    if (i == last) return;
  }
}

}  // namespace

bool ReadHexDigits(std::string_view digits, std::span<std::uint8_t> bytes) {
  return HasWideVectors() ? ReadWide(digits, bytes) : Steps<Narrow>::Read(digits, bytes);
}

std::size_t CopyHexDigits(std::string_view text, char* copy, std::uint8_t* bytes) {
  return HasWideVectors() ? CopyWide(text, copy, bytes) : Steps<Narrow>::Copy(text, copy, bytes);
}

char* WriteHexDigits(std::span<const std::uint8_t> bytes, char digit_ten, char* text) {
  const auto gap = static_cast<std::uint8_t>(digit_ten - '9' - 1);
  char* const end = text + 2 * bytes.size();
  if (bytes.size() >= 16) {
    HasWideVectors() ? WriteWide(bytes, gap, text) : Steps<Narrow>::Write(bytes, gap, text);
  } else if (bytes.size() >= 4) {
    WriteWords(bytes, gap, text);
  } else {
    for (const std::uint8_t byte : bytes) {
      *text++ = HexDigit(byte >> 4, digit_ten);
      *text++ = HexDigit(byte & 0xF, digit_ten);
    }
  }
  return end;
}

void ReadBinaryDigits(std::string_view digits, std::span<std::uint8_t> bytes) {
  std::size_t digit = 0;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const std::size_t end = digits.size() - 8 * (bytes.size() - 1 - i);
    unsigned byte = 0;
    for (; digit < end; ++digit) byte = (byte << 1) | (digits[digit] == '1' ? 1U : 0U);
    bytes[i] = static_cast<std::uint8_t>(byte);
  }
}

void WriteHexText(std::span<const std::uint8_t> bytes, int bit_length, char digit_ten, char* text) {
  const std::size_t wanted = BytesFor(bit_length);
  const std::size_t count = std::min(wanted, bytes.size());
  *text++ = '0';
  *text++ = 'x';
  text = std::fill_n(text, 2 * (wanted - count), '0');
  *WriteHexDigits(bytes.last(count), digit_ten, text) = '\0';
}

}  // namespace zrt
