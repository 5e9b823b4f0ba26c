// The run-length text of a chain of blocks, for the entry points that write it.
#pragma once

#include "hq4170.h"

namespace zrt {

/// Writes what fnGetDataExpression() writes. Throws std::bad_alloc, with nothing written.
void WriteDataExpression(LByteBuffer& data, char* text);

}  // namespace zrt
