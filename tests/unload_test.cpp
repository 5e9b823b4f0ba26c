// A host that takes the library in as a plug-in and lets it go: `unload_test LIBRARY...` opens the
// first, closes it, and sees that none of them is left in the process. Knows of the library its
// file.
#include <dlfcn.h>

#include <iostream>

int main(int argc, char** argv) {
  void* library = argc > 1 ? dlopen(argv[1], RTLD_NOW) : nullptr;
  if (!library) {
    std::cout << "nothing is loaded\n";
    return 1;
  }
  dlclose(library);
  int left = 0;
  for (int i = 1; i < argc; ++i) {
    if (!dlopen(argv[i], RTLD_NOW | RTLD_NOLOAD)) continue;
    std::cout << argv[i] << " is still loaded\n";
    ++left;
  }
  return left;
}
