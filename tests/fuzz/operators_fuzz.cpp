// Operators on values whose bytes, lengths and spare bits need not agree.
#include "fuzz.h"

ZRT_FUZZ(OperatorsDiffer)
