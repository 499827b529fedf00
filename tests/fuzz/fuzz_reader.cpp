// One reader under libFuzzer. The input is cut at each "\n@@@@\n" into the
// files of the reader's data set (TEVO_FUZZ_FILES, "|"-separated names
// relative to a scratch folder; a missing piece leaves its file out), and
// the file TEVO_FUZZ_OPEN is opened through the open command, as the program
// does, on a fresh session whose questions take their default answers.
#include <unistd.h>

#include <cstdint>
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

  const std::vector<std::string_view> names = Split(TEVO_FUZZ_FILES, "|");
  const std::vector<std::string_view> parts =
      Split(std::string_view(reinterpret_cast<const char*>(data), size), kSeparator);
  for (size_t i = 0; i < names.size() && i < parts.size(); ++i) Write_File(folder / names[i], parts[i]);
  const fs::path open = folder / TEVO_FUZZ_OPEN;
  if (!fs::exists(open, ec)) Write_File(open, {});

  tevo::platform::Scripted_Ui ui;
  ui.quiet = true;
  tevo::Session s;
  s.ui = &ui;
  s.Log_Mode = -1;
  s.App_Path = (Scratch() / "home").string();
  tevo::datafiles::NM1D_m11_Click(s, {open.string(), {}});
  return 0;
}
