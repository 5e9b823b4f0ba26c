// The evaluator: texts of the template language in, integers, floats and bit vectors out.
//
//   ZRTTokenTree tokens;                    // filled by the host, kept alive by the host
//   ZRTExpression expression;
//   expression.SetLocalTokenTree(&tokens);
//   int value = 0;
//   int status = expression.GetIntegerOperand("(size + 3) * 8", &value);
//
// Life. Construct, set the scopes in any order and at any time between evaluations, evaluate as
// often as you like, destroy. A scope that is null is skipped. Initialize() serves error reporting
// only.
//
// Names. Tokens are searched in the local tree, then in the global one. Data fields are searched in
// the external, then the local, then the global set. The first scope that holds a name wins.
//
// Status. Every evaluating operation returns 0 or a negative code of ErrorCodes.h; the first
// failure ends the evaluation. Nothing is thrown; exhausted memory and a text of more than
// 2147483647 characters are ErrStreamWrite in every evaluator.
//
// Threads. One object serves one evaluation at a time. No setter may be called and no scope changed
// during an evaluation: the bytes of rows are read where they lie. Objects in different threads may
// share trees and sets as far as these allow it; reading a field without an index moves the field's
// row pointer.
#pragma once

#include "ErrorCodes.h"
#include "RowDataStream.h"
#include "hq4170.h"
#include "qlmplusdata.h"
#include "zrtexpression/export.h"
#include "zrtexpression/trace.h"
#include "zrttokentree.h"

namespace zrt {
struct Scopes;
}

class ZRT_EXPORT ZRTExpression {
 public:
  /// An object with no directory, no error handler and no scope.
  ZRTExpression() noexcept;

  /// As if default-constructed and then assigned from `source`.
  ZRTExpression(const ZRTExpression& source) noexcept;

  /// Releases the directory, the error list if this was its last owner, and every field that
  /// SearchDataField made.
  ~ZRTExpression();

  /// Takes over the set-up of `source`: the scopes are shared references, the texts are copied, the
  /// error handler is shared and released with its last owner. What this object held is released,
  /// but for the fields that SearchDataField made, which stay until its end. What finds no
  /// memory, a text or the share of the handler, is left null.
  ZRTExpression& operator=(const ZRTExpression& source) noexcept;

  // ---- Set-up --------------------------------------------------------------------------------

  /// Sets the default directory to `dir` and loads "ErrorList.txt" from it. May be called again.
  /// @return 0 or above on success; ErrBadDirectory if `dir` cannot be entered (nothing changes);
  ///         ErrStreamWrite if memory runs out before the handler reads the list (the directory
  ///         may be set); else the handler's own negative status if it cannot read the list, be it
  ///         for want of memory, with the directory set and the handler in place. Each failure is
  ///         recorded in the handler, if there is one and memory for the text.
  int Initialize(char* dir);

  /// Tests that `dir` can be entered and keeps a copy of it, character for character. Null or empty
  /// sets the empty text untested. The process's current directory changes during the test and is
  /// the same afterwards: not to be called while another thread depends on it.
  /// @return 0; ErrBadDirectory if `dir` cannot be entered, or if the current directory cannot be
  ///         told or entered again, in which case it is not left; ErrStreamWrite if memory runs
  ///         out. On failure the object keeps what it had.
  int SetDefaultDir(char* dir);

  /// The directory as it was given, owned by the object; null before the first SetDefaultDir.
  char* GetDefaultDir();

  /// The error list and record, owned by the object; null before Initialize.
  ErrorHandler* GetErrorHandler();

  /// Each setter stores the reference, null included. The host keeps what it refers to alive for as
  /// long as the object may use it, and remains its owner.
  void SetGlobalTokenTree(ZRTTokenTree* tree);
  void SetLocalTokenTree(ZRTTokenTree* tree);
  void SetGlobalZRTData(QLMPlusData* data);
  void SetLocalZRTData(QLMPlusData* data);
  void SetExternalZRTData(QLMPlusData* data);

  // ---- Integers ------------------------------------------------------------------------------

  /// Evaluates `text` to a signed 32-bit integer.
  ///
  ///   expression.GetIntegerOperand("2+3*4", &value);    // 20: no operator precedence
  ///   expression.GetIntegerOperand("2+(3*4)", &value);  // 14
  ///
  /// @param text    not null, not changed.
  /// @param result  not null. Written on success. A failure leaves it alone, but for an operator
  ///                beside a group or a unary operand that is refused: then it holds the value so
  ///                far.
  /// @return 0, or ErrMissingOperand, ErrBadTokenType, ErrUnbalancedParenthesis,
  ///         ErrMisplacedOperator, ErrInvalidOperator (also a division by 0), ErrUnknownOperand,
  ///         ErrMissingCloseBracket, ErrEmptyIndex, ErrStrayCloseBracket, ErrMissingArrayName,
  ///         ErrNegativeIndex, ErrStreamWrite.
  int GetIntegerOperand(const char* text, int* result);

  /// Reads one operand: a name, a name with an index, or a literal. The index is an expression, the
  /// operand itself is not. Not null, `operand` not changed, `*result` written on success only.
  /// @return 0, or ErrBadTokenType, ErrUnknownOperand, ErrMissingCloseBracket, ErrEmptyIndex,
  ///         ErrStrayCloseBracket, ErrMissingArrayName, ErrNegativeIndex, ErrStreamWrite.
  int GetIntegerValue(char* operand, int* result);

  // ---- Floats --------------------------------------------------------------------------------

  /// Evaluates `text` to a 32-bit float, rounding to single precision at each step. A division by 0
  /// gives infinity or NaN. Literals are decimal whatever the locale: "0x10" reads 0.
  /// Parameters, statuses and `*result` after a failure as for GetIntegerOperand.
  int GetFloatOperand(const char* text, float* result);

  // ---- Bit vectors ---------------------------------------------------------------------------

  /// Evaluates `text` to a bit vector of any length.
  ///
  ///   expression.GetBitStream("(0xFF^2)@0x12", &stream);  // FF FF 12, BitLength 24
  ///
  /// @param text    not null, not changed.
  /// @param result  not null, the caller's; hand it in empty with BitLength 0. A text without a
  ///                group and a unary operator empties it first and leaves the value of the chain
  ///                so far in it if it fails; too long a text, or one for which there is no memory
  ///                from the start, leaves it alone. Any other text appends behind what it holds,
  ///                and the operators beside its outermost group or unary operator work on the
  ///                older bytes too, which may be changed or lost, in a failure of these operators
  ///                as well: with 5A in it, "1<<(2)" shifts 5A00000001. A text that fails earlier
  ///                touches nothing. A stream that has no room for all of its value gets the first
  ///                bytes and the BitLength of that value, and the status is ErrStreamWrite.
  /// @return 0, or any status of ErrorCodes.h but ErrBadDirectory.
  int GetBitStream(const char* text, RowDataStream* result);

  /// Evaluates `text` and writes the value as "0x" and two digits a byte, in the case of the closed
  /// library's digits (capitals in the stand-in), the last byte last. Bytes above what the bit
  /// length needs are left out, missing ones are "0".
  /// @param text     not null, not changed.
  /// @param hexText  the caller's buffer of 2 * ((BitLength + 7) / 8) + 3 characters for the value;
  ///                 untouched on failure.
  /// @return as the overload above.
  int GetBitStream(const char* text, char* hexText);

  /// Evaluates a chain of operands joined by binary operators, with no group and no unary operator.
  /// `result` is emptied first and holds the value so far after a failure; too long a text, or one
  /// for which there is no memory from the start, leaves it alone. Not null; `text` is not changed.
  /// @return as GetBitStream, but for ErrUnbalancedParenthesis and ErrMisplacedOperator.
  int SolveBitStreamExpression(char* text, RowDataStream* result);

  // ---- Where, why and how --------------------------------------------------------------------

  /// The evaluators above, which also tell where a failure stands and let an observer watch. The
  /// evaluation, its status and its result are the same; what is watched costs what the observer
  /// does, besides some tens of nanoseconds an event.
  /// @param text,result  as of the evaluators.
  /// @param failure   filled whatever the status; null if it is not wanted.
  /// @param observer  told of each step as it happens; null for nobody. It must not evaluate with
  ///                  this object, nor change a scope or the text.
  int WatchInteger(const char* text, int* result, zrt::Failure* failure,
                   zrt::Observer* observer = nullptr);
  int WatchFloat(const char* text, float* result, zrt::Failure* failure,
                 zrt::Observer* observer = nullptr);
  int WatchBits(const char* text, RowDataStream* result, zrt::Failure* failure,
                zrt::Observer* observer = nullptr);
  int WatchBits(const char* text, char* hexText, zrt::Failure* failure,
                zrt::Observer* observer = nullptr);

  /// Tells `observer` each operand that an evaluation of `text` would read, in the order of
  /// reading, those of an index before their operand: what its name stands for, without a value.
  /// Nothing is evaluated, so no row moves; names that stand for nothing are told too.
  /// @return 0, or the status of a text that cannot be cut: ErrMissingOperand,
  ///         ErrUnbalancedParenthesis, ErrMisplacedOperator, ErrInvalidOperator,
  ///         ErrMissingCloseBracket, ErrEmptyIndex, ErrStrayCloseBracket, ErrMissingArrayName,
  ///         ErrNegativeIndex (an index that cannot be cut), ErrStreamWrite; the operands up to
  ///         there have been told.
  int GetNames(const char* text, zrt::ValueKind kind, zrt::Observer* observer,
               zrt::Failure* failure = nullptr);

  // ---- Lookups -------------------------------------------------------------------------------

  /// The data field of that name, or null. "FuseArray_TDO" that no scope holds is searched again as
  /// "FuseArray_TDI", and the caller's buffer then reads so: it must be writable. A mask name that
  /// no scope holds gives a new field with one empty row, owned by this object until its end.
  /// Never free what a lookup returns. Null also if memory runs out.
  QLMDataField* SearchDataField(char* name);

  /// The same without the second search; `name` is not changed.
  QLMDataField* SearchDataFieldSTAPLimpl(char* name);

 private:
  // Exported with the class, as its public operations are, which do their work by the same
  // functions.

  int ProcessException(int code, unsigned long category, const char* text);
  void SetErrorInstruction(char* text);

  int GetLeftMostOperator(const char* text, unsigned short* code);
  int GetRightMostOperator(const char* text, unsigned short* code);
  int GetSubExpression(char* text, int open, int* close);
  int IsNumber(const char* text);
  bool IsHexDigit(char c);

  ZRTTokens* SearchToken(char* name);
  ZRTTokens* GetTokenFromTree(ZRTTokenTree* tree, char* name);
  bool IsIgnoreInst(char* name);
  bool IsToken(const char* text);

  int SolveIntegerExpression(const char* text, int* result);
  int ExecuteIntegerOperator(int* value, unsigned short code, int operand);
  int SolveFloatExpression(const char* text, float* result);
  int GetFloatValue(char* operand, float* result);
  int ExecuteFloatOperator(float* value, unsigned short code, float operand);
  int GetBitStreamValue(char* text, RowDataStream* stream);
  int ExecuteBitStreamOperator(RowDataStream* left, unsigned short code, RowDataStream* right);

  // Texts are arrays of this object's; the five scopes are the host's.
  char* DefaultDir = nullptr;
  ErrorHandler* Handler = nullptr;
  ZRTTokenTree* GlobalTokenTree = nullptr;
  ZRTTokenTree* LocalTokenTree = nullptr;
  QLMPlusData* GlobalZRTData = nullptr;
  QLMPlusData* LocalZRTData = nullptr;
  QLMPlusData* ExternalZRTData = nullptr;
  char* ErrorInstruction = nullptr;

  ZRT_HIDDEN zrt::Scopes CurrentScopes() const;

  // What stands behind Handler when objects share it, and the fields made for mask names.
  struct OwnedState;
  OwnedState* owned_ = nullptr;
};
