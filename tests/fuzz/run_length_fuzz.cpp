// The run-length writer on any buffer.
#include "fuzz.h"

ZRT_FUZZ([](Input input) { return RunLengthsDiffer(input, turn == 0 ? 300 : 60); })
