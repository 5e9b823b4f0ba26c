// The run-length writer on any buffer.
#include "fuzz.h"

ZRT_FUZZ(RunLengthsDiffer)
