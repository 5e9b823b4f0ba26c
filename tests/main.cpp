// Runs the tests, under the locale that ZRT_TEST_LOCALE names if it is set. Knows of no single
// test.
#include <gtest/gtest.h>

#include <clocale>
#include <cstdio>
#include <cstdlib>

int main(int argc, char** argv) {
  constexpr int kSkipped = 77;
  testing::InitGoogleTest(&argc, argv);
  if (const char* locale = std::getenv("ZRT_TEST_LOCALE")) {
    if (std::setlocale(LC_ALL, locale) == nullptr) {
      std::fprintf(stderr, "locale %s is not on this machine\n", locale);
      return kSkipped;
    }
  }
  return RUN_ALL_TESTS();
}
