// Helpers shared by the tests: a fresh scratch folder, the real-data cache,
// byte building.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace tevo::test {

// A new empty folder under the system temp folder, removed when the object
// goes out of scope.
class Temp_Dir {
 public:
  Temp_Dir();
  ~Temp_Dir();
  Temp_Dir(const Temp_Dir&) = delete;
  Temp_Dir& operator=(const Temp_Dir&) = delete;
  const std::filesystem::path& path() const { return path_; }
  std::filesystem::path operator/(const std::string& name) const { return path_ / name; }

 private:
  std::filesystem::path path_;
};

// Folder of the fetched npm data packages. A test that needs a file from it
// calls Test_Data_File, which fails the test with a clear message when the
// file is missing (never a silent pass).
std::filesystem::path Test_Data_Dir();
std::filesystem::path Test_Data_File(const std::string& relative);

// The command-line program of this build (TEVO_BINARY_DIR when the test
// runs under CTest, else beside the test program's folder), a command run
// through the shell with its exit code (-1 when it did not exit), and a
// path quoted for the shell.
std::filesystem::path Cli_Program();
int Run_Command(const std::string& command);
std::string Quoted(const std::filesystem::path& p);

// One run of the command-line program with `args`, without a window:
// its exit code (-1 when a signal ended it), its standard output and the
// peak resident memory of the process in kB.
struct Cli_Result {
  int exit_code = -1;
  int signal = 0;
  std::string out;
  long max_rss_kb = 0;
};
Cli_Result Run_Cli(const std::vector<std::string>& args);

std::vector<uint8_t> Read_Bytes(const std::filesystem::path& p);
void Write_Bytes(const std::filesystem::path& p, const std::vector<uint8_t>& bytes);
void Write_Text(const std::filesystem::path& p, const std::string& text);
std::string Read_Text(const std::filesystem::path& p);

}  // namespace tevo::test
