// What an evaluator object owns beside its texts.
#pragma once

#include <memory>
#include <vector>

#include "ZRTExpression.h"

struct ZRTExpression::OwnedState {
  std::shared_ptr<ErrorHandler> handler;                   // shared by objects that were assigned
  std::vector<std::unique_ptr<QLMDataField>> mask_fields;  // handed out by SearchDataField
};
