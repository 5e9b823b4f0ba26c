// How a text was read: what the library's events tell of one evaluation, kept as plain data in the
// order in which it happened. It computes nothing, and knows no scope and no output.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "ZRTExpression.h"
#include "zrtexpression/trace.h"

/// A value, copied; of a long bit vector its first and last bytes alone.
struct ReadValue {
  static constexpr std::size_t kEnd = 8;  // bytes kept of each end; up to twice as many are all

  zrt::ValueKind kind = zrt::ValueKind::kInteger;
  int integer = 0;
  float floating = 0;
  int bit_length = 0;
  std::size_t byte_count = 0;
  std::array<std::uint8_t, 2 * kEnd> bytes{};  // the first ones, and from kEnd on the last ones

  [[nodiscard]] bool is_whole() const { return byte_count <= bytes.size(); }
};

class Reading : public zrt::Observer {
 public:
  struct Cut {
    zrt::CutEvent::By by{};
    zrt::Place piece;
    zrt::Place middle;
  };

  struct Operand {
    zrt::Place place;
    zrt::Place name;
    zrt::Place index;
    zrt::Place unread;
    zrt::OperandEvent::Meaning meaning{};
    zrt::OperandEvent::Scope scope{};
    zrt::OperandEvent::Literal literal{};
    bool has_index = false;
    int index_status = 0;
    int index_value = 0;
    int token_type = 0;           // as its library tells it; 0 if it is no token
    bool loses_fraction = false;  // a float token, cut off to an integer
    int row = 0;                  // the row that it was given, from 1; 0 for none
    int row_count = 0;            // of a field
    const QLMDataField* field = nullptr;
    zrt::ValueNumber number = 0;
    ReadValue value;
  };

  struct Operation {
    zrt::OperatorEvent::Effect effect{};
    bool is_unary = false;
    zrt::Place place;
    std::string text;
    zrt::ValueNumber left = 0;
    zrt::ValueNumber right = 0;
    ReadValue left_value;
    ReadValue right_value;
    bool has_result = false;
    ReadValue result;
  };

  struct Index {
    zrt::Place name;
    zrt::Place place;
    int status = 0;
    int value = 0;
  };

  /// An entry of one of the tables, in the order of the events. What stands between the begin and
  /// the end of an index belongs to that.
  struct Step {
    enum class Kind : std::uint8_t { kCut, kOperand, kOperation, kUnread, kIndexBegin, kIndexEnd };

    Kind kind{};
    std::uint32_t at = 0;
  };

  Reading() = default;

  /// Forgets all, for the next text.
  void Clear();

  /// Keeps what the operands of `text` stand for, also those that the evaluation did not reach.
  /// Nothing is evaluated. For a text that failed, so that hints can tell rows and types; a data
  /// field is told for every kind of values.
  void LookUp(ZRTExpression* expression, const std::string& text, zrt::ValueKind kind);

  /// The operand at `offset` among what was looked up, null if there is none.
  [[nodiscard]] const Operand* LookedUp(std::size_t offset) const;

  [[nodiscard]] const std::vector<Step>& steps() const { return steps_; }
  [[nodiscard]] const std::vector<Cut>& cuts() const { return cuts_; }
  [[nodiscard]] const std::vector<Operand>& operands() const { return operands_; }
  [[nodiscard]] const std::vector<Operation>& operations() const { return operations_; }
  [[nodiscard]] const std::vector<zrt::Place>& unread() const { return unread_; }
  [[nodiscard]] const std::vector<Index>& indexes() const { return indexes_; }

  [[nodiscard]] bool has_outcome() const { return has_outcome_; }
  [[nodiscard]] zrt::ValueNumber outcome() const { return outcome_; }
  [[nodiscard]] const ReadValue& outcome_value() const { return outcome_value_; }
  [[nodiscard]] const zrt::Failure& failure() const { return failure_; }

  /// False if memory ran out: the last events are missing.
  [[nodiscard]] bool is_complete() const { return is_complete_; }

  void OnCut(const zrt::CutEvent& event) noexcept override;
  void OnIndexBegin(zrt::Place name, zrt::Place index) noexcept override;
  void OnIndexEnd(int status, int value) noexcept override;
  void OnOperand(const zrt::OperandEvent& event) noexcept override;
  void OnOperator(const zrt::OperatorEvent& event) noexcept override;
  void OnResult(zrt::ValueNumber number, const zrt::ValueView& value) noexcept override;
  void OnUnread(zrt::Place place) noexcept override;
  void OnOutcome(zrt::ValueNumber number, const zrt::ValueView& value) noexcept override;
  void OnFailure(const zrt::Failure& failure) noexcept override;

 private:
  void LookUpBefore(ZRTExpression* expression, const std::string& text, zrt::ValueKind kind,
                    std::size_t end);
  template <class Table>
  void Keep(Step::Kind kind, Table& table, typename Table::value_type entry) noexcept;

  std::vector<Step> steps_;
  std::vector<Cut> cuts_;
  std::vector<Operand> operands_;
  std::vector<Operation> operations_;
  std::vector<zrt::Place> unread_;
  std::vector<Index> indexes_;
  std::vector<Operand> looked_up_;
  bool has_outcome_ = false;
  bool is_complete_ = true;
  zrt::ValueNumber outcome_ = 0;
  ReadValue outcome_value_;
  zrt::Failure failure_;
};
