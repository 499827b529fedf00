// The parameter window (m292): the descriptive parameters of the data set,
// shown as texts by their tags and taken back on OK. Parameters that fix the
// points or the axis (points, sweep width, frequencies, reference) are not
// among them: the axis is set by the reference mode.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace tevo {
struct Session;
}

namespace tevo::editing {

enum class Param_Kind { Text, Real, Integer };

struct Param_Field {
  const char* tag;  // the parameter's tag, as printed beside the value
  Param_Kind kind;
};

// The parameters the window edits, in the order shown.
const std::vector<Param_Field>& Param_Edit_Fields();

// The value of `tag` as the window shows it; numbers in their shortest form
// that reads back to the same value. Empty for an unknown tag.
std::string Param_Edit_Text(const Session& s, const std::string& tag);

// Whether `text` may stand in the field of `tag`: any text for a text
// field, a finite number for a real one, a whole number for an integer one
// (blanks around are allowed).
bool Param_Edit_Valid(const std::string& tag, const std::string& text);

// OK: takes the texts given by tag (tags not given keep their values).
// Texts are trimmed, the nuclei spelled through the nucleus table, the
// instrument ID put in upper case. Nothing is taken when any text is not
// valid; then the first such tag is returned in `bad`. Returns true when a
// value changed; the data set then counts as changed.
bool Param_Edit_OK(Session& s, const std::map<std::string, std::string>& texts, std::string* bad = nullptr);

}  // namespace tevo::editing
