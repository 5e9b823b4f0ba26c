// Text to text: GMP reads, computes and writes with all sizes known beforehand; the limit does so
// by the packaged codec and a plain loop.
#include "text_contestants.h"

#include <gmp.h>
#include <modp_b16.h>

#include <array>

#include "words.h"

namespace zrt_bench {

namespace {

struct CodecWork {
  explicit CodecWork(const Bytes& data)
      : bytes(data),
        digits(Literal(data.data(), data.size()).substr(2)),
        text(2 * data.size() + 1, '\0') {}

  Bytes bytes;
  std::string digits;  // what is decoded
  std::string text;    // what is encoded, and a place for the NUL that the codec writes
};

char* Chars(Bytes* bytes) { return reinterpret_cast<char*>(bytes->data()); }

void Encode(CodecWork* work) {
  modp_b16_encode(work->text.data(), Chars(&work->bytes), work->bytes.size());
}

void Decode(CodecWork* work) {
  modp_b16_decode(Chars(&work->bytes), work->digits.data(), work->digits.size());
}

// What the C libraries have written into a text that has more room.
std::string UpToNul(const std::string& text) { return text.substr(0, text.find('\0')); }

std::string WithPrefix(const std::string& text) { return "0x" + UpToNul(text); }

std::string Digits(const unsigned char* bytes, std::size_t byte_count) {
  return Literal(bytes, byte_count).substr(2);
}

// The number that the digits of the texts are, with those that GMP leaves out at the front.
struct GmpWork {
  GmpWork(std::vector<std::string> texts, std::size_t byte_count)
      : digits(std::move(texts)), text(2 * byte_count + 2, '\0') {}

  std::vector<std::string> digits;
  Integer result, operand;
  std::string text;

  std::string Value() const {
    const std::string written = UpToNul(text);
    return "0x" + std::string(text.size() - 2 - written.size(), '0') + written;
  }
};

template <typename Compute>
Contestant Gmp(std::vector<std::string> digits, std::size_t byte_count, Compute compute) {
  auto work = std::make_shared<GmpWork>(std::move(digits), byte_count);
  const auto evaluate = [work, compute] {
    mpz_set_str(work->result.get(), work->digits[0].c_str(), 16);
    compute(work.get());
    mpz_get_str(work->text.data(), -16, work->result.get());  // capitals
  };
  return MakeContestant("GMP mpz", Role::kPeer, evaluate, [work] { return work->Value(); });
}

void ShiftInPlace(Bytes* bytes) {
  const std::size_t last = bytes->size() - 1;
  unsigned char* at = bytes->data();
  for (std::size_t i = 0; i < last; ++i) {
    at[i] = static_cast<unsigned char>(at[i] << 3U | at[i + 1] >> 5U);
  }
  at[last] = static_cast<unsigned char>(at[last] << 3U);
}

}  // namespace

Contestant EncodeByModp(const Bytes& bytes) {
  auto work = std::make_shared<CodecWork>(bytes);
  return MakeContestant(
      "modp_b16", Role::kPeer, [work] { Encode(work.get()); },
      [work] { return WithPrefix(work->text); });
}

Contestant DecodeByModp(const Bytes& bytes) {
  auto work = std::make_shared<CodecWork>(bytes);
  std::fill(work->bytes.begin(), work->bytes.end(), static_cast<unsigned char>(0));
  return MakeContestant(
      "modp_b16", Role::kPeer, [work] { Decode(work.get()); },
      [work] { return AsText(work->bytes.data(), work->bytes.size()); });
}

std::vector<Contestant> WriteHex(std::size_t byte_count) {
  const Bytes row = RandomBytes(byte_count);
  return Contest(TextToText("row", byte_count, OneRow(row)), EncodeByModp(row), Memcpy(row));
}

std::vector<Contestant> ReadHex(std::size_t byte_count) {
  const Bytes bytes = RandomBytes(byte_count);
  return Contest(TextToStream(Literal(bytes.data(), byte_count)), DecodeByModp(bytes),
                 Memcpy(bytes));
}

std::vector<Contestant> ShiftText(std::size_t byte_count) {
  auto work = std::make_shared<CodecWork>(RandomBytes(byte_count));
  const auto by_codec = [work] {
    Decode(work.get());
    ShiftInPlace(&work->bytes);
    Encode(work.get());
  };
  const auto value = [work] { return WithPrefix(work->text); };
  const auto by_gmp = [byte_count](GmpWork* gmp) {
    mpz_mul_2exp(gmp->result.get(), gmp->result.get(), 3);
    mpz_tdiv_r_2exp(gmp->result.get(), gmp->result.get(), 8 * byte_count);
  };
  return Contest(TextToText("0x" + work->digits + "<<3", byte_count),
                 Gmp({work->digits}, byte_count, by_gmp),
                 MakeContestant("codec, shift", Role::kLimit, by_codec, value));
}

std::vector<Contestant> JoinText(std::size_t byte_count) {
  constexpr std::size_t kPieces = 8;
  const std::size_t piece_bytes = byte_count / kPieces;
  const Bytes bytes = RandomBytes(byte_count);
  std::vector<std::string> pieces;
  std::string text;
  for (std::size_t i = 0; i < kPieces; ++i) {
    pieces.push_back(Digits(&bytes[i * piece_bytes], piece_bytes));
    text += (i == 0 ? "0x" : "@0x") + pieces.back();
  }
  auto work = std::make_shared<CodecWork>(bytes);
  const auto by_codec = [work, pieces, piece_bytes] {
    char* at = Chars(&work->bytes);
    for (const std::string& piece : pieces) {
      modp_b16_decode(at, piece.data(), piece.size());
      at += piece_bytes;
    }
    Encode(work.get());
  };
  const auto join = [piece_bytes](GmpWork* gmp) {
    for (std::size_t i = 1; i < kPieces; ++i) {
      mpz_set_str(gmp->operand.get(), gmp->digits[i].c_str(), 16);
      mpz_mul_2exp(gmp->result.get(), gmp->result.get(), 8 * piece_bytes);
      mpz_ior(gmp->result.get(), gmp->result.get(), gmp->operand.get());
    }
  };
  const auto value = [work] { return WithPrefix(work->text); };
  return Contest(TextToText(text, byte_count), Gmp(pieces, byte_count, join),
                 MakeContestant("modp_b16", Role::kLimit, by_codec, value));
}

std::vector<Contestant> ShortJoin() {
  const auto join_and_shift = [](GmpWork* gmp) {
    mpz_set_str(gmp->operand.get(), gmp->digits[1].c_str(), 16);
    mpz_mul_2exp(gmp->result.get(), gmp->result.get(), 8);
    mpz_ior(gmp->result.get(), gmp->result.get(), gmp->operand.get());
    mpz_mul_2exp(gmp->result.get(), gmp->result.get(), 3);
    mpz_tdiv_r_2exp(gmp->result.get(), gmp->result.get(), 16);
  };
  return Contest(TextToText("(0x1F@0x2B)<<3", 2), Gmp({"1F", "2B"}, 2, join_and_shift));
}

std::vector<Contestant> ShortMask() {
  const auto mask = [](GmpWork* gmp) {
    mpz_set_str(gmp->operand.get(), gmp->digits[1].c_str(), 16);
    mpz_com(gmp->result.get(), gmp->result.get());
    mpz_and(gmp->result.get(), gmp->result.get(), gmp->operand.get());
  };
  return Contest(TextToText("~0x0123456789ABCDEF&0xF0F0F0F0F0F0F0F0", 8),
                 Gmp({"0123456789ABCDEF", "F0F0F0F0F0F0F0F0"}, 8, mask));
}

}  // namespace zrt_bench
