// Words for a person: the statuses by name and by sentence, and the library's version.
#pragma once

#include "zrtexpression/export.h"

namespace zrt {

/// "ErrUnknownOperand" for -511; "" for 0 and for numbers that are no status. Never null.
ZRT_EXPORT const char* StatusName(int status) noexcept;

/// What the status says, as one short sentence without a full stop; "" as above.
ZRT_EXPORT const char* StatusSentence(int status) noexcept;

/// The version of the library that is loaded, as "1.0.0"; ZRT_VERSION is that of the header.
ZRT_EXPORT const char* Version() noexcept;

}  // namespace zrt
