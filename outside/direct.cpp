// The current-directory calls under the names that the library uses, for platforms that have them
// under others. Each does exactly what the platform's own call does.
#include <unistd.h>

#include <cerrno>
#include <cstddef>

// NOLINTBEGIN(bugprone-reserved-identifier): these are the names that other platforms give them.
extern "C" {

__attribute__((visibility("default"))) char* _getcwd(char* buffer, int size);
__attribute__((visibility("default"))) int _chdir(const char* path);

char* _getcwd(char* buffer, int size) {
  if (size < 0) {
    errno = EINVAL;
    return nullptr;
  }
  return getcwd(buffer, static_cast<std::size_t>(size));
}

int _chdir(const char* path) { return chdir(path); }
}
// NOLINTEND(bugprone-reserved-identifier)
