// Files to text by the library's run-length writer, with a plain hexadecimal literal where there is
// no run, and back by its evaluator.
#include <climits>
#include <new>
#include <vector>

#include "commands.h"
#include "evaluator.h"
#include "terminal.h"
#include "zrtexpression/texts.h"

namespace {

constexpr std::size_t kMostBytes = INT_MAX / 8;  // a bit length is an int

std::string TextOf(const std::string& bytes) {
  LByteBuffer chain;
  const std::vector<unsigned char> copied(bytes.begin(), bytes.end());
  std::string text;
  if (!chain.Append(copied) || !zrt::GetDataExpression(chain, &text)) throw std::bad_alloc();
  return text.empty() && !bytes.empty() ? HexText(bytes) : text;
}

// The bytes that `text` reads back to. The empty text is that of no bytes.
std::string ReadBack(const std::string& text, Explainer* explainer) {
  if (text.empty()) return text;
  RowDataStream stream;
  const int status = ZRTExpression().GetBitStream(text.c_str(), &stream);
  if (status == 0) return ValidBytes(&stream);
  throw Failure{kExpressionFailed, "the text does not read back: " + explainer->Message(status)};
}

}  // namespace

ExitCode Encode(const CodecRequest& request) {
  Explainer explainer(request.data_dir);
  ShowProgress("Reading");
  const std::string bytes = ReadFile(request.input_path, kInputOutput, kMostBytes);
  ShowProgress("Encoding");
  std::string text = TextOf(bytes);
  ShowProgress("Checking");
  if (request.verify && ReadBack(text, &explainer) != bytes) {
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
  std::string bytes;
  if (!text.empty()) {
    Scope no_names;
    TextEvaluator evaluator(&no_names, {request.max_bits, false, false});
    if (!evaluator.Evaluate(text, zrt::ValueKind::kBits)) {
      evaluator.PrintFailure(ErrorStream(), {ShownName(request.input_path), text}, &explainer,
                             ErrorStyle());
      return kExpressionFailed;
    }
    bytes = evaluator.ValueText(BitFormat::kRaw);
  }
  ShowProgress("Writing");
  WriteFile(request.output_path, bytes);
  ShowProgress("");
  return kAllEvaluated;
}
