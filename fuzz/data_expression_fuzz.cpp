// The run-length writer on any buffer: the same text from one block and from many, which reads
// back. Each two bytes of the input are a byte and how many of it, so that runs are common.
#include <cstdlib>

#include "round_trip.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  std::string bytes;
  for (std::size_t i = 1; i < size; i += 2) {
    bytes.append(1 + data[i] % 20U, static_cast<char>(data[i - 1]));
  }
  const std::string text = RoundTrip(bytes, 0);
  if (text != RoundTrip(bytes, 5) || !(text.empty() || text[0] == '(')) std::abort();
  return 0;
}
