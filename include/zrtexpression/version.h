// The library's version, for hosts that compile against several; the build reads it from here.
#pragma once

#define ZRT_VERSION_MAJOR 1
#define ZRT_VERSION_MINOR 0
#define ZRT_VERSION_PATCH 0
#define ZRT_VERSION       "1.0.0"
