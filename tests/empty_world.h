// All five scopes, empty at first, and an evaluator that looks at them. Tests and benchmarks fill
// them with names of their own.
#pragma once

#include "ZRTExpression.h"

struct World {
  World() {
    expression.SetLocalTokenTree(&local_tokens);
    expression.SetGlobalTokenTree(&global_tokens);
    expression.SetExternalZRTData(&external_data);
    expression.SetLocalZRTData(&local_data);
    expression.SetGlobalZRTData(&global_data);
  }

  ZRTTokenTree local_tokens, global_tokens;
  QLMPlusData external_data, local_data, global_data;
  ZRTExpression expression;
};
