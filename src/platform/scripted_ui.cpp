#include <cstdio>

#include "platform/ui.h"

namespace tevo::platform {

int Scripted_Ui::Message_Box(const Message_Box_Request& box) {
  shown.push_back(box);
  if (!quiet) std::fprintf(stderr, "%s: %s\n", box.title.c_str(), box.text.c_str());
  if (!button_answers.empty()) {
    int b = button_answers.front();
    button_answers.pop_front();
    return b;
  }
  return box.default_button;
}

std::optional<File_Answer> Scripted_Ui::Open_File(const File_Request& request) {
  file_requests.push_back(request);
  if (file_answers.empty()) return std::nullopt;
  auto a = file_answers.front();
  file_answers.pop_front();
  return a;
}

std::optional<File_Answer> Scripted_Ui::Save_File(const File_Request& request) {
  return Open_File(request);
}

int Scripted_Ui::Choose(const std::string&, const std::string&, const std::vector<std::string>&,
                        int initial) {
  if (choice_answers.empty()) return initial;
  int c = choice_answers.front();
  choice_answers.pop_front();
  return c;
}

std::optional<std::string> Scripted_Ui::Ask_Text(const std::string&, const std::string&,
                                                 const std::string& initial) {
  if (text_answers.empty()) return initial;
  auto t = text_answers.front();
  text_answers.pop_front();
  return t;
}

std::optional<std::vector<Param_Row>> Scripted_Ui::Edit_Parameters(const std::string&, const std::string&,
                                                                   const std::vector<Param_Row>& rows,
                                                                   const Param_Check&) {
  parameter_tables.push_back(rows);
  if (parameter_answers.empty()) return rows;
  auto answer = parameter_answers.front();
  parameter_answers.pop_front();
  if (!answer) return std::nullopt;
  std::vector<Param_Row> out = rows;
  for (const Param_Row& a : *answer)
    for (Param_Row& r : out)
      if (r.name == a.name) r.value = a.value;
  return out;
}

Ui& Default_Ui() {
  static Scripted_Ui ui;
  return ui;
}

}  // namespace tevo::platform
