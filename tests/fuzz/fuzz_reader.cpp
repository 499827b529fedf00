// One reader under libFuzzer. The input is cut at each "\n@@@@\n" into the
// files of the reader's data set (Fuzz_Files, "|"-separated names relative
// to a scratch folder; a missing piece leaves its file out), and the file
// Fuzz_Open is opened through the open command, as the program
// does, on a fresh session whose questions take their default answers
// (a parameter window gets a usable observe frequency and sweep width).
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "datafiles/open_file.h"
#include "platform/ui.h"
#include "session/session.h"

namespace fs = std::filesystem;

// Given by the reader's own one-line source (tests/fuzz/CMakeLists.txt).
extern const char* const Fuzz_Files;
extern const char* const Fuzz_Open;

namespace {

constexpr std::string_view kSeparator = "\n@@@@\n";

std::vector<std::string_view> Split(std::string_view text, std::string_view separator) {
  std::vector<std::string_view> parts;
  for (;;) {
    const size_t at = text.find(separator);
    parts.push_back(text.substr(0, at));
    if (at == std::string_view::npos) return parts;
    text.remove_prefix(at + separator.size());
  }
}

// A scratch folder of this process, removed at exit: "data" receives the
// files of each input, "home" is the program folder of the session.
const fs::path& Scratch() {
  static const fs::path root = [] {
    std::string name = (fs::temp_directory_path() / "tevo1d-fuzz-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) std::abort();
    std::atexit([] {
      std::error_code ec;
      fs::remove_all(Scratch(), ec);
    });
    fs::create_directories(fs::path(name) / "home");
    return fs::path(name);
  }();
  return root;
}

void Write_File(const fs::path& p, std::string_view bytes) {
  fs::create_directories(p.parent_path());
  std::ofstream out(p, std::ios::binary | std::ios::trunc);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const fs::path folder = Scratch() / "data";
  std::error_code ec;
  fs::remove_all(folder, ec);
  fs::create_directories(folder);

  const std::vector<std::string_view> names = Split(Fuzz_Files, "|");
  const std::vector<std::string_view> parts =
      Split(std::string_view(reinterpret_cast<const char*>(data), size), kSeparator);
  for (size_t i = 0; i < names.size() && i < parts.size(); ++i) Write_File(folder / names[i], parts[i]);
  const fs::path open = folder / Fuzz_Open;
  if (!fs::exists(open, ec)) Write_File(open, {});

  // TEVO_FUZZ_VERBOSE=1 shows the messages and the read status, to see
  // whether a seed reads.
  static const bool verbose = std::getenv("TEVO_FUZZ_VERBOSE") != nullptr;
  tevo::platform::Scripted_Ui ui;
  ui.quiet = !verbose;
  // The parameter window of a number list gets what the list lacks; the
  // rows are matched by name, so other windows keep their values.
  ui.parameter_answers.push_back(std::vector<tevo::platform::Param_Row>{
      {"* ObNuc", "1H"}, {"* ObFreq(MHz)", "400"}, {"* Sweep Width(Hz)", "8000"}});
  tevo::Session s;
  s.ui = &ui;
  s.Log_Mode = -1;
  s.App_Path = (Scratch() / "home").string();
  // The display copy at the points as read, not widened to the display
  // minimum: the widening costs more than most reads and is not the subject.
  s.settings.Set("DISP EXTEND MODE", 1);
  const int status = tevo::datafiles::NM1D_m11_Click(s, {open.string(), {}});
  if (verbose)
    std::fprintf(stderr, "status %d, class %s, %d points, %d rows\n", status, s.File_Class.c_str(),
                 static_cast<int>(s.Param.POINT), static_cast<int>(s.Array_Rows));
  return 0;
}
