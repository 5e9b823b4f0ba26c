// The packaged libraries of big numbers at each operator of bit vectors.
#include "bits_contestants.h"

#include <bit_array.h>
#include <gmp.h>
#include <llvm/ADT/APInt.h>
#include <llvm/ADT/ArrayRef.h>

#include <boost/multiprecision/cpp_int.hpp>
#include <memory>

#include "words.h"
#include "world.h"

namespace zrt_bench {

namespace {

using boost::multiprecision::cpp_int;
using llvm::APInt;

// Two numbers and the place for a third, for each library in its own type.
template <typename Number>
struct Operands {
  Number left, right, result;
};

Rows TwoRows(const Bytes& row, const Bytes& other) {
  Rows rows = OneRow(row);
  rows.emplace_back("other", other);
  return rows;
}

using SharedWords = std::shared_ptr<Operands<Words>>;

SharedWords MakeWords(const Bytes& left, const Bytes& right) {
  const Words words = ToWords(left);
  Operands<Words> operands{words, ToWords(right), Words(words.size())};
  return std::make_shared<Operands<Words>>(std::move(operands));
}

cpp_int ToBoost(const Bytes& bytes) {
  cpp_int number;
  import_bits(number, bytes.begin(), bytes.end());
  return number;
}

APInt ToApInt(const Bytes& bytes) {
  const Words words = ToWords(bytes);
  return {static_cast<unsigned>(8 * bytes.size()), llvm::makeArrayRef(words)};
}

std::function<std::string()> LowBits(const SharedWords& words) {
  return [words] {
    const Words& result = words->result;
    return ToBytes(result.data(), result.size(), 64 * result.size());
  };
}

std::function<std::string()> LowBits(const std::shared_ptr<Operands<APInt>>& work) {
  return [work] {
    const APInt& result = work->result;
    return ToBytes(result.getRawData(), result.getNumWords(), result.getBitWidth());
  };
}

std::function<std::string()> LowBits(const std::shared_ptr<Operands<cpp_int>>& work,
                                     std::size_t bit_count) {
  static_assert(sizeof(boost::multiprecision::limb_type) == sizeof(std::uint64_t));
  return [work, bit_count] {
    const auto& backend = work->result.backend();
    const Words words(backend.limbs(), backend.limbs() + backend.size());
    return ToBytes(words.data(), words.size(), bit_count);
  };
}

// `mpn` is called with the words of the result, of the rows and their count.
template <typename Mpn>
Contestant GmpMpn(const Bytes& left, const Bytes& right, Mpn mpn) {
  const SharedWords work = MakeWords(left, right);
  const auto apply = [work, mpn] {
    mpn(work->result.data(), work->left.data(), work->right.data(),
        static_cast<mp_size_t>(work->result.size()));
  };
  return MakeContestant("GMP mpn", Role::kPeer, apply, LowBits(work));
}

// `apply` gives a new value from the two rows.
template <typename Apply>
Contestant ApInt(const Bytes& left, const Bytes& right, Apply apply) {
  auto work = std::make_shared<Operands<APInt>>();
  work->left = ToApInt(left);
  work->right = ToApInt(right);
  return MakeContestant(
      "LLVM APInt", Role::kPeer, [work, apply] { work->result = apply(work->left, work->right); },
      LowBits(work));
}

// `apply` is called with the operands and writes to the result.
template <typename Apply>
Contestant Boost(const Bytes& left, const Bytes& right, std::size_t bit_count, Apply apply) {
  auto work = std::make_shared<Operands<cpp_int>>();
  work->left = ToBoost(left);
  work->right = ToBoost(right);
  return MakeContestant(
      "Boost", Role::kPeer, [work, apply] { apply(*work); }, LowBits(work, bit_count));
}

Contestant ReverseByLibbitarray(const Bytes& row) {
  const std::size_t bit_count = 8 * row.size();
  const Words words = ToWords(row);
  const std::shared_ptr<BIT_ARRAY> bits(bit_array_create(bit_count), bit_array_free);
  std::copy(words.begin(), words.end(), bits->words);
  return MakeContestant(
      "libbitarray", Role::kPeer, [bits] { bit_array_reverse(bits.get()); },
      [bits, bit_count] { return ToBytes(bits->words, bits->num_of_words, bit_count); });
}

Contestant JoinByGmp(const Bytes& row, const Bytes& other, std::size_t bit_count) {
  struct Work {
    Integer left, right, result;
  };
  auto work = std::make_shared<Work>();
  mpz_import(work->left.get(), row.size(), 1, 1, 0, 0, row.data());
  mpz_import(work->right.get(), other.size(), 1, 1, 0, 0, other.data());
  const auto join = [work, bit_count] {
    mpz_mul_2exp(work->result.get(), work->left.get(), bit_count);
    mpz_ior(work->result.get(), work->result.get(), work->right.get());
  };
  return MakeContestant("GMP mpz", Role::kPeer, join,
                        [work, bit_count] { return work->result.LowBits(2 * bit_count); });
}

// The pattern doubled until it is there often enough: GMP has nothing shorter.
Contestant ReplicateByGmp(unsigned pattern, unsigned bit_count, std::size_t times) {
  struct Work {
    Integer pattern, result, shifted;
  };
  auto work = std::make_shared<Work>();
  mpz_set_ui(work->pattern.get(), pattern);
  const auto replicate = [work, bit_count, times] {
    mpz_set(work->result.get(), work->pattern.get());
    std::size_t there = 1;
    for (std::size_t bit = std::size_t{1} << 31U; bit > 0; bit /= 2) {
      if (2 * bit > times) continue;
      const std::size_t wanted = times / bit;
      mpz_mul_2exp(work->shifted.get(), work->result.get(), there * bit_count);
      mpz_ior(work->result.get(), work->result.get(), work->shifted.get());
      there *= 2;
      if (there == wanted) continue;
      mpz_mul_2exp(work->result.get(), work->result.get(), bit_count);
      mpz_ior(work->result.get(), work->result.get(), work->pattern.get());
      ++there;
    }
  };
  return MakeContestant("GMP mpz", Role::kPeer, replicate, [work, bit_count, times] {
    return work->result.LowBits(bit_count * times);
  });
}

Contestant ReplicateByApInt(unsigned pattern, unsigned bit_count, std::size_t times) {
  auto work = std::make_shared<Operands<APInt>>();
  const APInt once(bit_count, pattern);
  const auto replicate = [work, once, bit_count, times] {
    work->result = APInt::getSplat(static_cast<unsigned>(bit_count * times), once);
  };
  return MakeContestant("LLVM APInt", Role::kPeer, replicate, LowBits(work));
}

}  // namespace

std::vector<Contestant> ShiftLeft(std::size_t byte_count) {
  const Bytes row = RandomBytes(byte_count);
  const auto by_mpn = [](mp_ptr result, mp_srcptr left, mp_srcptr, mp_size_t count) {
    mpn_lshift(result, left, count, 3);
  };
  const auto by_boost = [](Operands<cpp_int>& work) { work.result = work.left << 3; };
  return Contest(TextToStream("row<<3", OneRow(row)), GmpMpn(row, row, by_mpn),
                 Boost(row, row, 8 * byte_count, by_boost), Memcpy(row));
}

std::vector<Contestant> And(std::size_t byte_count) {
  const Bytes row = RandomBytes(byte_count), other = RandomBytes(byte_count, 2);
  const auto by_mpn = [](auto... operands) { mpn_and_n(operands...); };
  const auto by_ap_int = [](const APInt& left, const APInt& right) { return left & right; };
  return Contest(TextToStream("row&other", TwoRows(row, other)), GmpMpn(row, other, by_mpn),
                 ApInt(row, other, by_ap_int), Memcpy(row));
}

std::vector<Contestant> Not(std::size_t byte_count) {
  const Bytes row = RandomBytes(byte_count);
  const auto by_mpn = [](mp_ptr result, mp_srcptr left, mp_srcptr, mp_size_t count) {
    mpn_com(result, left, count);
  };
  const auto by_ap_int = [](const APInt& left, const APInt&) { return ~left; };
  return Contest(TextToStream("~row", OneRow(row)), GmpMpn(row, row, by_mpn),
                 ApInt(row, row, by_ap_int), Memcpy(row));
}

std::vector<Contestant> Reverse(std::size_t byte_count) {
  const Bytes row = RandomBytes(byte_count);
  return Contest(TextToStream("$row", OneRow(row)), ReverseByLibbitarray(row), Memcpy(row));
}

std::vector<Contestant> Join(std::size_t byte_count, int spare_bits) {
  Bytes row = RandomBytes(byte_count), other = RandomBytes(byte_count, 2);
  row[0] = static_cast<unsigned char>(row[0] >> spare_bits);
  other[0] = static_cast<unsigned char>(other[0] >> spare_bits);
  const std::size_t bit_count = 8 * byte_count - static_cast<std::size_t>(spare_bits);
  const auto by_boost = [bit_count](Operands<cpp_int>& work) {
    work.result = work.left << bit_count;
    work.result |= work.right;
  };
  return Contest(TextToStream("row@other", TwoRows(row, other), spare_bits),
                 JoinByGmp(row, other, bit_count), Boost(row, other, 2 * bit_count, by_boost),
                 Memcpy(Bytes(2 * byte_count)));
}

std::vector<Contestant> ReplicateBits(std::size_t byte_count) {
  constexpr unsigned kPattern = 0b1011001110001, kBits = 13;
  const std::size_t times = 8 * byte_count / kBits;
  return Contest(TextToStream("#1011001110001^" + std::to_string(times)),
                 ReplicateByGmp(kPattern, kBits, times), ReplicateByApInt(kPattern, kBits, times),
                 Memcpy(Bytes(byte_count)));
}

std::vector<Contestant> ReplicateByte(std::size_t byte_count) {
  const auto room = std::make_shared<Bytes>(byte_count);
  const auto fill = [room] { std::memset(room->data(), 0x5A, room->size()); };
  const auto value = [room] { return AsText(room->data(), room->size()); };
  return Contest(TextToStream("0x5A^" + std::to_string(byte_count)),
                 ReplicateByGmp(0x5A, 8, byte_count), ReplicateByApInt(0x5A, 8, byte_count),
                 MakeContestant("memset", Role::kLimit, fill, value));
}

}  // namespace zrt_bench
