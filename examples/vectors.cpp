// A host as a device programmer has one: it takes the device's figures as tokens and its fuse rows
// as a data field, reads template lines, and writes the vectors that they stand for into a file.
//
//   vectors TEMPLATE VECTORS
//
// A template line is a command and an expression: "send" a bit vector, "wait" some seconds,
// "repeat" the next line so many times. Complaints name the line and the column, as compilers do.
#include <cstddef>
#include <fstream>
#include <iostream>
#include <string>
#include <utility>

#include "ZRTExpression.h"
#include "zrtexpression/texts.h"
#include "zrtexpression/words.h"

namespace {

// What the programmer knows of one device. The trees stay where they are: the evaluator refers to
// them.
struct Device {
  Device() {
    tokens.Add(ZRTTokens::IntScalar("rows", 3));
    tokens.Add(ZRTTokens::IntScalar("last_row", 2));
    tokens.Add(ZRTTokens::IntArray("command", {0x0B, 0x12, 0x93}));
    tokens.Add(ZRTTokens::FloatScalar("pulse", 0.0125F));

    QLMDataField* fuses = data.AddField("fuses");  // a row at each reading
    fuses->AddRow(12, {0x01, 0x23});
    fuses->AddRow(12, {0x04, 0x56});
    fuses->AddRow(12, {0x07, 0x89});
    data.AddField("id")->AddRow(8, {0x5A});
  }

  ZRTTokenTree tokens;
  QLMPlusData data;
};

// One template, line by line.
class Writer {
 public:
  Writer(Device* device, std::string name, std::ostream* vectors)
      : name_(std::move(name)), vectors_(*vectors) {
    expression_.SetLocalTokenTree(&device->tokens);
    expression_.SetExternalZRTData(&device->data);
  }

  // Whether all of the line could be written.
  bool Write(const std::string& line) {
    ++line_number_;
    const std::size_t first = line.find_first_not_of(' ');
    if (first == std::string::npos || line[first] == '#') return true;
    const std::size_t blank = line.find(' ', first);
    const std::size_t start = line.find_first_not_of(' ', blank);  // of the text
    const std::string command = line.substr(first, blank - first);
    if (start == std::string::npos) return Complain(first, "an expression is missing");
    const std::string text = line.substr(start);

    zrt::Failure failure;
    if (!Run(command, text, &failure)) return Complain(first, "there is no command " + command);
    if (failure.status == 0) return true;
    const bool is_index = failure.cause_status != 0;  // why an index failed says more
    const zrt::Place place = is_index ? failure.cause : failure.place;
    const int status = is_index ? failure.cause_status : failure.status;
    return Complain(start + place.offset, zrt::StatusSentence(status));
  }

 private:
  // Whether there is such a command.
  bool Run(const std::string& command, const std::string& text, zrt::Failure* failure) {
    int rounds = 1;
    std::swap(rounds, rounds_);
    if (command == "repeat") {
      expression_.WatchInteger(text.c_str(), &rounds_, failure);
      return true;
    }
    if (command != "send" && command != "wait") return false;
    for (; rounds > 0 && failure->status == 0; --rounds) {
      command == "send" ? Send(text, failure) : Wait(text, failure);
    }
    return true;
  }

  void Send(const std::string& text, zrt::Failure* failure) {
    RowDataStream stream;  // a new one for each value: it is to be handed in empty
    if (expression_.WatchBits(text.c_str(), &stream, failure) != 0) return;
    std::string digits;
    if (!zrt::GetHexText(stream, &digits)) {
      failure->status = ErrStreamWrite;
      return;
    }
    vectors_ << "SEND " << stream.BitLength << " " << digits << "\n";
  }

  void Wait(const std::string& text, zrt::Failure* failure) {
    float seconds = 0;
    if (expression_.WatchFloat(text.c_str(), &seconds, failure) != 0) return;
    vectors_ << "WAIT " << seconds << "\n";
  }

  bool Complain(std::size_t offset, const std::string& what) {
    std::cout << name_ << ":" << line_number_ << ":" << offset + 1 << ": " << what << "\n";
    return false;
  }

  ZRTExpression expression_;
  std::string name_;
  std::ostream& vectors_;
  int line_number_ = 0;
  int rounds_ = 1;  // of the next line
};

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::cout << "usage: vectors TEMPLATE VECTORS\n";
    return 2;
  }
  std::ifstream lines(argv[1]);
  std::ofstream vectors(argv[2]);
  Device device;
  Writer writer(&device, argv[1], &vectors);
  bool is_right = lines.is_open();
  for (std::string line; std::getline(lines, line);) is_right &= writer.Write(line);
  vectors.close();
  if (!vectors || lines.bad()) {
    std::cout << "the files cannot be read or written\n";
    return 2;
  }
  return is_right ? 0 : 1;
}
