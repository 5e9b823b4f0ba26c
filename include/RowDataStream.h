// The value of a bit-vector evaluation: a chain of bytes and the number of bits in it that count.
//
// The stream is right-aligned. Bytes are indexed from 0, most significant first; bit k, k = 0 being
// the least significant, lies in the byte at index GetTotalSize() - 1 - k / 8, at bit k % 8. A
// stream whose BitLength is no multiple of 8 has its partial byte at index 0, the valid bits in the
// low part: the 12 bits ABC are the bytes 0A BC with BitLength 12.
//
//   RowDataStream stream;
//   expression.GetBitStream("0xFF^4", &stream);    // FF FF FF FF
//   unsigned byte_count = stream.GetTotalSize();   // 4
//   int bit_count = stream.BitLength;              // 32
//
// The bits of byte 0 above BitLength are not masked by any operation; "~" sets them, for one.
#pragma once

#include "hq4170.h"
#include "zrtexpression/export.h"

// The second CopyBlock hides the base's on purpose: CopyBlock(nullptr) stays unambiguous. Streams
// are deleted by their own type.
#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Woverloaded-virtual"
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
#endif

/// A byte chain with a length in bits. Bytes are read and written through the operations inherited
/// from LByteBuffer. The destructor is not virtual: delete a stream as a RowDataStream.
/// One stream serves one thread at a time.
class ZRT_EXPORT RowDataStream : public LByteBuffer {
 public:
  /// An empty stream with BitLength 0.
  RowDataStream();

  /// A copy of the bytes of `other`, and its BitLength.
  RowDataStream(const RowDataStream& other);

  /// An empty stream whose BitLength is `bitLength` (bits). `size` reserves nothing.
  RowDataStream(int size, int bitLength);

  ~RowDataStream();

  /// Makes this stream refer to the blocks of `other` (the bytes are not copied) and takes its
  /// BitLength. The blocks are freed once, by their last owner. One that never held a byte has none
  /// to share. Returns this stream.
  RowDataStream& operator=(const RowDataStream& other);

  /// Appends the bytes of `source` behind those that are here and sets BitLength to that of
  /// `source`: a target that was not empty ends with more bytes than its BitLength accounts for.
  /// `source` stays the caller's and is unchanged; null does nothing. If memory runs out, the bytes
  /// that found room stay and BitLength is that of `source`. Of a chain of more than 2147483647
  /// bytes, which an index does not reach, the first ones are appended.
  virtual void CopyBlock(RowDataStream* source);

  /// Number of valid bits. ClearBuffer() leaves it as it is.
  int BitLength;
};

#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif
