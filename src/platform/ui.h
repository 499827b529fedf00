// The seam to the window system for questions, messages and file pickers.
//
// The GUI implements it with Qt widgets; tests and the command-line tool use
// Scripted_Ui, which answers from a queue (or with the default button) and
// prints every message as "title: text" to stderr.
#pragma once

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace tevo::platform {

// What the one message window shows; the core decodes the style into this.
struct Message_Box_Request {
  std::string title;  // already defaulted ("メッセージ" when empty)
  std::string text;
  int style = 0;  // the style word it was built from
  std::vector<std::string> buttons;  // captions of Command1.. in order, 1 to 3
  int icon = 0;  // 0 none, 1..4
  int default_button = 1;  // 1-based index into buttons
};

struct File_Request {
  std::string title;
  std::string filter;  // "caption|pattern|caption|pattern..."
  int filter_index = 1;  // 1-based
  std::string initial_dir;
  std::string initial_name;
  std::string default_ext;
  // Several files may be chosen (an open only): the answer's path is then
  // the folder and the file names joined with "|".
  bool multiple = false;
};

struct File_Answer {
  std::string path;
  int filter_index = 1;
};

// One row of a parameter table: the name shown under "Parameter Name" (a
// leading "*" marks a required one) and the text under "Data".
struct Param_Row {
  std::string name;
  std::string value;
  bool operator==(const Param_Row&) const = default;
};
// True when the table refuses `value` for row `row`.
using Param_Check = std::function<bool(std::size_t row, const std::string& value)>;

class Ui {
 public:
  virtual ~Ui() = default;
  // Shows the message window modally; returns the 1-based button pressed,
  // or 0 when the window was closed another way.
  virtual int Message_Box(const Message_Box_Request& box) = 0;
  virtual void Beep() {}
  // The hourglass while long work runs.
  virtual void Wait_Cursor(bool /*on*/) {}
  // Lets the window system breathe during long loops.
  virtual void Do_Events() {}
  virtual std::optional<File_Answer> Open_File(const File_Request& request) = 0;
  virtual std::optional<File_Answer> Save_File(const File_Request& request) = 0;
  // A choice among options (option buttons of a small dialog); returns the
  // 0-based option or -1 on cancel.
  virtual int Choose(const std::string& title, const std::string& prompt,
                     const std::vector<std::string>& options, int initial) = 0;
  // A line of text typed by the operator; nullopt on cancel.
  virtual std::optional<std::string> Ask_Text(const std::string& title, const std::string& prompt,
                                              const std::string& initial) = 0;
  // The user window at start: the known user names and a name field that
  // starts with `initial`. Returns the name to run with ("右の使用者で実行"),
  // or nullopt for "終了". Without a window of its own, a text question.
  virtual std::optional<std::string> Ask_User(const std::vector<std::string>& /*users*/,
                                              const std::string& initial) {
    return Ask_Text("NMR 1D", "右の使用者で実行", initial);
  }
  // A table of parameters the operator corrects (the window named `form`,
  // NMR1D_Form103 or NMR1D_Form103_CSV). A typed value that `check`
  // refuses goes back to the one before; OK is taken only when no row is
  // refused. Returns the rows, or nullopt on cancel. Without a window of its
  // own: the rows as they are.
  virtual std::optional<std::vector<Param_Row>> Edit_Parameters(const std::string& /*form*/,
                                                                const std::string& /*title*/,
                                                                const std::vector<Param_Row>& rows,
                                                                const Param_Check& /*check*/) {
    return rows;
  }
};

// Answers from queues; with a queue empty, the default button, the first
// option, the initial text, and no file. Messages go to stderr unless quiet.
class Scripted_Ui : public Ui {
 public:
  int Message_Box(const Message_Box_Request& box) override;
  std::optional<File_Answer> Open_File(const File_Request& request) override;
  std::optional<File_Answer> Save_File(const File_Request& request) override;
  int Choose(const std::string& title, const std::string& prompt,
             const std::vector<std::string>& options, int initial) override;
  std::optional<std::string> Ask_Text(const std::string& title, const std::string& prompt,
                                      const std::string& initial) override;
  std::optional<std::vector<Param_Row>> Edit_Parameters(const std::string& form, const std::string& title,
                                                        const std::vector<Param_Row>& rows,
                                                        const Param_Check& check) override;

  std::deque<int> button_answers;  // 1-based buttons for the next message boxes
  std::deque<std::optional<File_Answer>> file_answers;
  std::deque<int> choice_answers;
  std::deque<std::optional<std::string>> text_answers;
  // Tables for the next parameter windows; an answer is applied row by row
  // by name over the rows shown (nullopt cancels).
  std::deque<std::optional<std::vector<Param_Row>>> parameter_answers;
  std::vector<std::vector<Param_Row>> parameter_tables;  // every table shown, in order
  std::vector<Message_Box_Request> shown;  // every message box, in order
  std::vector<File_Request> file_requests;  // every file dialog asked for, in order
  bool quiet = false;
};

// The process-wide fallback used by a Session that was given no Ui.
Ui& Default_Ui();

}  // namespace tevo::platform
