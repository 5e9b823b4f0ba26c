// Bytes with runs, and what the writer and the evaluator make of them.
#include "run_length_contestants.h"

#include <modp_b16.h>

#include <memory>
#include <random>

#include "DataExpression.h"
#include "text_contestants.h"
#include "world.h"

namespace zrt_bench {

namespace {

// Runs of 7 to 40 with random bytes between them, as many as the share of the runs wants on the
// average. With one run only it stands at the end, so that a writer cannot know before that there
// is anything to write.
Bytes MakeBytes(std::size_t byte_count, Runs runs) {
  Bytes bytes = RandomBytes(byte_count);
  if (runs == Runs::kAll || runs == Runs::kOne) {
    const auto first = runs == Runs::kAll ? bytes.begin() : bytes.end() - 8;
    std::fill(first, bytes.end(), static_cast<unsigned char>(0x5A));
    return bytes;
  }
  std::mt19937 random(3);
  std::uniform_int_distribution<std::size_t> run_length(7, 40);
  const std::size_t most_between = runs == Runs::kTenth ? 423 : 47;  // twice the average
  std::uniform_int_distribution<std::size_t> between(0, most_between);
  for (std::size_t at = between(random); at < byte_count; at += between(random)) {
    const std::size_t count = std::min(run_length(random), byte_count - at);
    std::fill_n(bytes.begin() + static_cast<std::ptrdiff_t>(at), count, bytes[at]);
    at += count;
  }
  return bytes;
}

struct WriterWork {
  explicit WriterWork(const Bytes& bytes) : text(2 * bytes.size() + 3, ' ') {
    for (const unsigned char byte : bytes) data.WriteData(byte);
  }

  LByteBuffer data;
  std::string text;

  std::string ReadBack() const {
    ZRTExpression expression;
    RowDataStream stream;
    const int status = expression.GetBitStream(text.c_str(), &stream);
    if (status != 0) return StatusText(status);
    return AsText(stream.GetDataBlock(), stream.GetTotalSize());
  }
};

}  // namespace

std::vector<Contestant> WriteRunLength(std::size_t byte_count, Runs runs) {
  const Bytes bytes = MakeBytes(byte_count, runs);
  auto work = std::make_shared<WriterWork>(bytes);
  const auto write = [work] { fnGetDataExpression(&work->data, work->text.data()); };
  Contestant codec = EncodeByModp(bytes);
  codec.value = [text = codec.value] { return modp::b16_decode(text().substr(2)); };
  const auto value = [work] { return work->ReadBack(); };
  return Contest(MakeContestant("this library", Role::kLibrary, write, value), codec,
                 Memcpy(bytes, true));
}

std::vector<Contestant> ReadRunLength(std::size_t byte_count, Runs runs) {
  const Bytes bytes = MakeBytes(byte_count, runs);
  WriterWork writer(bytes);
  fnGetDataExpression(&writer.data, writer.text.data());
  writer.text.resize(writer.text.find('\0'));
  return Contest(TextToStream(writer.text), DecodeByModp(bytes), Memcpy(bytes, true));
}

}  // namespace zrt_bench
