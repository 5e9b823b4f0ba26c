// Lines by way of the editing library, which knows the terminal, moves the cursor and keeps the
// history. What stands below the line is drawn here, while nobody types.
#include <histedit.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <clocale>
#include <cstdio>
#include <cwchar>
#include <iostream>
#include <utility>

#include "line_editor.h"
#include "shown_text.h"
#include "terminal.h"

// The library takes its settings as arguments of any number and type.
// NOLINTBEGIN(*-pro-type-vararg)

namespace {

struct State {
  State(LineEditor::Complete complete_words, LineEditor::Remark remark_on_line)
      : complete(std::move(complete_words)),
        remark(std::move(remark_on_line)),
        edit(el_init("zrteval", stdin, stdout, stderr)),
        past(history_init()) {
    HistEvent event{};
    history(past, &event, H_SETSIZE, 1000);
    history(past, &event, H_SETUNIQUE, 1);
    el_set(edit, EL_CLIENTDATA, this);
    el_set(edit, EL_PROMPT, &State::Prompt);
    el_set(edit, EL_EDITOR, "emacs");
    el_set(edit, EL_SIGNAL, 1);
    el_set(edit, EL_HIST, history, past);
    // By its wide name: of a narrow one the library keeps a copy that it never gives back.
    el_wset(edit, EL_ADDFN, L"zrt-complete", L"completes a name", &State::CompleteWord);
    el_set(edit, EL_BIND, "^I", "zrt-complete", nullptr);
    el_set(edit, EL_BIND, "^R", "em-inc-search-prev", nullptr);
    el_set(edit, EL_GETCFN, &State::GetCharacter);
  }
  State(const State&) = delete;
  State& operator=(const State&) = delete;
  ~State() {
    el_end(edit);
    history_end(past);
  }

  static State* Of(EditLine* edit) {
    void* data = nullptr;
    el_get(edit, EL_CLIENTDATA, &data);
    return static_cast<State*>(data);
  }

  static char* Prompt(EditLine* edit) { return Of(edit)->prompt.data(); }

  // The next character, once the line below says what it has to say.
  static int GetCharacter(EditLine* edit, wchar_t* character) {
    constexpr int kPause = 120;  // milliseconds without a key
    State* state = Of(edit);
    pollfd input = {STDIN_FILENO, POLLIN, 0};
    if (poll(&input, 1, kPause) == 0) state->ShowRemark();
    std::mbstate_t shift{};
    while (true) {
      char byte = '\0';
      const bool is_interrupted = TakeInterrupt();
      const ssize_t count = is_interrupted ? 0 : read(STDIN_FILENO, &byte, 1);
      if (is_interrupted || TakeInterrupt()) {
        state->is_interrupted = true;
        state->HideRemark();
        *character = L'\n';
        return 1;
      }
      if (count == 0 || (count < 0 && errno != EINTR)) {
        return 0;
      }
      if (count < 0) continue;
      const std::size_t size = std::mbrtowc(character, &byte, 1, &shift);
      if (size == static_cast<std::size_t>(-2)) continue;
      if (size == static_cast<std::size_t>(-1)) *character = L'\uFFFD';
      if (byte == '\n' || byte == '\r') state->HideRemark();
      return 1;
    }
  }

  static unsigned char CompleteWord(EditLine* edit, int /*character*/) {
    State* state = Of(edit);
    const LineInfo* line = el_line(edit);
    const std::string_view beginning(line->buffer,
                                     static_cast<std::size_t>(line->cursor - line->buffer));
    const LineEditor::Completion completion = state->complete(beginning);
    if (completion.words.empty()) return CC_REFRESH_BEEP;
    std::string common = completion.words.front();
    for (const std::string& word : completion.words) {
      const auto end = std::mismatch(common.begin(), common.end(), word.begin(), word.end()).first;
      common.erase(end, common.end());
    }
    const std::string rest = common.substr(completion.typed);
    if (!rest.empty()) {
      return el_insertstr(edit, rest.c_str()) == 0 ? CC_REFRESH : CC_ERROR;
    }
    if (completion.words.size() == 1) return CC_REFRESH;
    state->HideRemark();
    std::string list = "\n";
    std::size_t used = 0;
    for (const std::string& word : completion.words) {
      const std::string shown_word = Shown(word);
      const std::size_t columns = ColumnsOf(shown_word);
      if (used > 0 && used + columns >= OutputStyle().columns) {
        list += '\n';
        used = 0;
      }
      list += shown_word + "  ";
      used += columns + 2;
    }
    list += '\n';
    std::fputs(list.c_str(), stdout);
    return CC_REDISPLAY;
  }

  // Where the cursor stands, and the line, if both fit into a row of the terminal.
  struct Row {
    std::string line;
    std::size_t column;
    bool fits;
  };
  Row CurrentRow() const {
    const LineInfo* info = el_line(edit);
    Row row{std::string(info->buffer, info->lastchar), 0, false};
    const std::string_view before(info->buffer,
                                  static_cast<std::size_t>(info->cursor - info->buffer));
    row.column = prompt.size() + ColumnsOf(before);
    row.fits = prompt.size() + ColumnsOf(row.line) < OutputStyle().columns;
    return row;
  }

  void ShowRemark() {
    const Row row = CurrentRow();
    if (!row.fits) return HideRemark();
    const std::string words = remark(row.line);
    if (words == shown) return;
    DrawBelow(words, row.column);
  }

  void HideRemark() {
    if (!shown.empty()) DrawBelow("", CurrentRow().column);
  }

  // Down one row, which may make the terminal scroll, and back to the column.
  void DrawBelow(const std::string& words, std::size_t column) {
    std::string drawn = "\n\r\033[K" + words + "\033[A\r";
    if (column > 0) drawn += "\033[" + std::to_string(column) + 'C';
    std::fputs(drawn.c_str(), stdout);
    std::fflush(stdout);
    shown = words;
  }

  LineEditor::Complete complete;
  LineEditor::Remark remark;
  EditLine* edit;
  History* past;
  std::string prompt;
  std::string shown;
  bool is_interrupted = false;
};

class EditingEditor : public LineEditor {
 public:
  EditingEditor(Complete complete, Remark remark)
      : state_(std::move(complete), std::move(remark)) {}

  End Read(const std::string& prompt, std::string* line) override {
    std::cout.flush();
    state_.prompt = prompt;
    state_.is_interrupted = false;
    el_resize(state_.edit);
    el_set(state_.edit, EL_PREP_TERM, 1);  // before the prompt: who answers that is listened to
    int count = 0;
    const char* typed = el_gets(state_.edit, &count);
    if (state_.is_interrupted) return End::kInterrupted;
    if (typed == nullptr || count <= 0) {
      std::cout << '\n';
      return End::kEndOfInput;
    }
    line->assign(typed, static_cast<std::size_t>(count));
    if (line->ends_with('\n')) line->pop_back();
    HistEvent event{};
    if (!line->empty()) history(state_.past, &event, H_ENTER, line->c_str());
    return End::kLine;
  }

 private:
  State state_;
};

}  // namespace

// NOLINTEND(*-pro-type-vararg)

std::unique_ptr<LineEditor> MakeEditingEditor(LineEditor::Complete complete,
                                              LineEditor::Remark remark) {
  std::setlocale(LC_CTYPE, "C.UTF-8");  // of what is typed
  return std::make_unique<EditingEditor>(std::move(complete), std::move(remark));
}
