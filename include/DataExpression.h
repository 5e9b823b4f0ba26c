// Writing a byte buffer as run-length text in the expression language.
#pragma once

#include "hq4170.h"
#include "zrtexpression/export.h"

/// Writes `data` as expression text in which seven or more equal bytes become a replication.
/// ZRTExpression::GetBitStream reads the text back into the same bytes.
///
///   01 55 55 55 55 55 55 55 55   ->  (0x0155@(0x55^7))
///   55 55 55 55 55 55 55 01 02   ->  (0x55^7)@0x0102
///   01 02 03                     ->  the empty text: there is no run worth writing
///
/// The byte that ends a run is written at once and never opens the next run.
///
/// @param data  the head of the bytes; not null, not changed, stays the caller's.
/// @param text  replaced by the NUL-terminated result; the caller's buffer of at least
///              2 * GetTotalSize() + 3 characters, whatever the result. Empty when `data` has no
///              run to write, which means that the buffer has no run-length form; also if
///              `data` is a chain of several blocks that finds no memory to be laid out in one, or
///              has more bytes than an index reaches.
///
/// Gives no status and throws nothing. Safe to call from any thread on buffers of its own.
ZRT_EXPORT void fnGetDataExpression(LByteBuffer* data, char* text);
