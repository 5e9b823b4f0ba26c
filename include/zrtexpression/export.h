// Marks what the library exports. A static build defines ZRT_STATIC; the library's own shared build
// and a host of the shared library define nothing. The build files see to it.
#pragma once

#if defined(ZRT_STATIC)
#define ZRT_EXPORT
#define ZRT_HIDDEN
#else
#define ZRT_EXPORT __attribute__((visibility("default")))
#define ZRT_HIDDEN \
  __attribute__((visibility("hidden")))  // a member of an exported class that is not
#endif
