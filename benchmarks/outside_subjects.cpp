// The byte buffers of the stand-ins, one byte at a time by their public calls, as the contract has
// it.
#include <algorithm>
#include <memory>
#include <numeric>
#include <random>

#include "hq4170.h"
#include "subject.h"
#include "world.h"

namespace zrt_bench {

namespace {

constexpr int kByteCount = 1 << 20;

std::vector<Contestant> Append() {
  const auto bytes = std::make_shared<Bytes>(RandomBytes(kByteCount));
  const auto buffer = std::make_shared<LByteBuffer>();
  const auto vector = std::make_shared<Bytes>();
  const auto write = [bytes, buffer] {
    buffer->ClearBuffer();
    for (const unsigned char byte : *bytes) buffer->WriteData(byte);
  };
  const auto written = [buffer] { return AsText(buffer->GetDataBlock(), buffer->GetTotalSize()); };
  const auto push_back = [bytes, vector] {
    vector->clear();
    for (const unsigned char byte : *bytes) vector->push_back(byte);
  };
  const auto pushed = [vector] { return AsText(vector->data(), vector->size()); };
  return Contest(MakeContestant("this library", Role::kLibrary, write, written),
                 MakeContestant("std::vector", Role::kPeer, push_back, pushed));
}

// The sum of all bytes, read in the order of `places`.
Contestant Reader(const char* name, Role role, std::shared_ptr<LByteBuffer> buffer,
                  std::shared_ptr<std::vector<int>> places) {
  for (const unsigned char byte : RandomBytes(kByteCount)) {
    LByteBuffer* last = buffer->GetLastBlock(buffer.get());
    if (last->WriteData(byte) == 0) last->AllocateNewBlock()->WriteData(byte);
  }
  const auto sum = std::make_shared<unsigned>();
  const auto read = [buffer = std::move(buffer), places = std::move(places), sum] {
    *sum = 0;
    for (const int place : *places) *sum += buffer->ReadData(place);
  };
  return MakeContestant(name, role, read, [sum] { return std::to_string(*sum); });
}

std::vector<Contestant> Read(bool in_order) {
  const auto places = std::make_shared<std::vector<int>>(kByteCount);
  std::iota(places->begin(), places->end(), 0);
  if (!in_order) std::shuffle(places->begin(), places->end(), std::mt19937(1));
  return Contest(Reader("this library", Role::kLibrary, std::make_shared<LByteBuffer>(256), places),
                 Reader("one block", Role::kLimit, std::make_shared<LByteBuffer>(), places));
}

}  // namespace

void AddOutside(Subjects* subjects) {
  subjects->push_back(Timed("D/append", "1 MiB appended by WriteData", Append));
  subjects->push_back(Timed("D/in order", "1 MiB read, blocks of 256", [] { return Read(true); }));
  subjects->push_back(
      Timed("D/at random", "1 MiB read, blocks of 256", [] { return Read(false); }));
}

}  // namespace zrt_bench
