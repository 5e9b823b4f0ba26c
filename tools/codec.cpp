// Files to text by the library's run-length writer, with a plain hexadecimal literal where there is
// no run, and back by its evaluator.
#include <climits>
#include <new>
#include <vector>

#include "DataExpression.h"
#include "commands.h"

namespace {

constexpr std::size_t kMostBytes = INT_MAX / 8;  // a bit length is an int

std::string TextOf(const std::string& bytes) {
  LByteBuffer chain;
  const std::vector<unsigned char> copied(bytes.begin(), bytes.end());
  if (!chain.Append(copied)) throw std::bad_alloc();
  std::string text(2 * bytes.size() + 3, '\0');
  fnGetDataExpression(&chain, text.data());
  text.resize(text.find('\0'));
  return text.empty() && !bytes.empty() ? HexText(bytes) : text;
}

// The bytes that `text` stands for, none for the empty text. `what` begins the message of a
// failure.
std::string BytesOf(const std::string& text, Explainer* explainer, const std::string& what) {
  if (text.empty()) return text;
  RowDataStream stream;
  const int status = ZRTExpression().GetBitStream(text.c_str(), &stream);
  if (status >= 0) return ValidBytes(&stream);
  throw Failure{kExpressionFailed, what + ": " + explainer->Explain(status)};
}

}  // namespace

ExitCode Encode(const CodecRequest& request) {
  Explainer explainer(request.data_dir);
  ShowProgress("Reading");
  const std::string bytes = ReadFile(request.input_path, kInputOutput, kMostBytes);
  ShowProgress("Encoding");
  std::string text = TextOf(bytes);
  ShowProgress("Checking");
  if (request.verify && BytesOf(text, &explainer, "the text does not read back") != bytes) {
    throw Failure{kExpressionFailed, "the text reads back to other bytes"};
  }
  ShowProgress("Writing");
  if (!text.empty()) text += '\n';
  WriteFile(request.output_path, text);
  ShowProgress("");
  return kAllEvaluated;
}

ExitCode Decode(const CodecRequest& request) {
  Explainer explainer(request.data_dir);
  ShowProgress("Reading");
  std::string text = ReadText(request.input_path, kInputOutput);
  if (text.ends_with('\n')) text.pop_back();
  if (text.ends_with('\r')) text.pop_back();
  ShowProgress("Decoding");
  const std::string bytes = BytesOf(text, &explainer, ShownName(request.input_path));
  ShowProgress("Writing");
  WriteFile(request.output_path, bytes);
  ShowProgress("");
  return kAllEvaluated;
}
