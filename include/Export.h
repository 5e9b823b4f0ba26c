// Marks what the library exports. A static build defines ZRT_STATIC, the library's own shared build
// ZRT_BUILDING; a host of the shared library defines neither. The build files see to all three.
#pragma once

#if defined(ZRT_STATIC)
#define ZRT_EXPORT
#elif defined(_WIN32)
#if defined(ZRT_BUILDING)
#define ZRT_EXPORT __declspec(dllexport)
#else
#define ZRT_EXPORT __declspec(dllimport)
#endif
#else
#define ZRT_EXPORT __attribute__((visibility("default")))
#endif
