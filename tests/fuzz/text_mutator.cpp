// Mutates texts of the language by their grammar: pieces between operators and parentheses go, come
// and change places with others. Every other mutation is the fuzzer's own.
#include <algorithm>
#include <random>

#include "support.h"
#include "text_generator.h"

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t max_size);

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t max_size, unsigned seed) {
  static std::minstd_rand random;
  static TextGenerator generator([] { return random(); }, RichNames());
  random.seed(seed);
  const std::size_t choice = generator.Below(8);
  if (choice < 4 || size < 2) return LLVMFuzzerMutate(data, size, max_size);

  std::string text(data + 1, data + size);  // behind the byte that chooses
  constexpr std::string_view kEdges = "()[]&|!~<>+-*/%@^$, ";
  const std::size_t edge = text.find_first_of(kEdges, generator.Below(text.size()));
  const std::size_t start = edge == std::string::npos ? 0 : edge + 1;
  const std::size_t end = std::min(text.find_first_of(kEdges, start), text.size());
  const std::string piece = text.substr(start, end - start);
  std::string other = generator.Text();
  if (choice == 4) other = "(" + other + ")";
  if (choice == 5) other = piece + kEdges[4 + generator.Below(14)] + other;
  if (choice == 6) other = "(" + piece + kEdges[4 + generator.Below(14)] + other + ")";
  text.replace(start, end - start, other);

  data[0] = generator.Below(4) == 0 ? static_cast<std::uint8_t>(random()) : data[0];
  const std::size_t text_size = std::min(text.size(), max_size - 1);
  std::copy_n(text.begin(), text_size, data + 1);
  return 1 + text_size;
}
