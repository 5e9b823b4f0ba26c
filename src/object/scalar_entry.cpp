// The object's entry points to integer and float evaluation.
#include "ZRTExpression.h"
#include "names/scopes.h"
#include "object/status_of.h"
#include "object/watched.h"
#include "scalar/float.h"
#include "scalar/integer.h"
#include "scalar/operand.h"

using zrt::StatusOf;

int ZRTExpression::GetIntegerOperand(const char* text, int* result) {
  return SolveIntegerExpression(text, result);
}

int ZRTExpression::SolveIntegerExpression(const char* text, int* result) {
  return StatusOf([&] { return zrt::SolveInteger(text, CurrentScopes(), *result); });
}

int ZRTExpression::WatchInteger(const char* text, int* result, zrt::Failure* failure,
                                zrt::Observer* observer) {
  return zrt::WatchedStatusOf(text, failure, observer, [&](zrt::Watcher* watch) {
    return zrt::SolveInteger(text, CurrentScopes(), *result, watch);
  });
}

int ZRTExpression::GetIntegerValue(char* operand, int* result) {
  return StatusOf([&] { return zrt::ReadScalar(operand, CurrentScopes(), *result); });
}

int ZRTExpression::ExecuteIntegerOperator(int* value, unsigned short code, int operand) {
  return zrt::ApplyToInteger(*value, code, operand);
}

int ZRTExpression::GetFloatOperand(const char* text, float* result) {
  return SolveFloatExpression(text, result);
}

int ZRTExpression::SolveFloatExpression(const char* text, float* result) {
  return StatusOf([&] { return zrt::SolveFloat(text, CurrentScopes(), *result); });
}

int ZRTExpression::WatchFloat(const char* text, float* result, zrt::Failure* failure,
                              zrt::Observer* observer) {
  return zrt::WatchedStatusOf(text, failure, observer, [&](zrt::Watcher* watch) {
    return zrt::SolveFloat(text, CurrentScopes(), *result, watch);
  });
}

int ZRTExpression::GetFloatValue(char* operand, float* result) {
  return StatusOf([&] { return zrt::ReadScalar(operand, CurrentScopes(), *result); });
}

int ZRTExpression::ExecuteFloatOperator(float* value, unsigned short code, float operand) {
  return zrt::ApplyToFloat(*value, code, operand);
}
