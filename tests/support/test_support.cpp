#include "support/test_support.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <random>
#include <sstream>
#include <sys/wait.h>

namespace tevo::test {

Temp_Dir::Temp_Dir() {
  std::random_device rd;
  auto base = std::filesystem::temp_directory_path();
  for (;;) {
    path_ = base / ("tevo1d_test_" + std::to_string(rd()));
    if (std::filesystem::create_directory(path_)) break;
  }
}

Temp_Dir::~Temp_Dir() {
  std::error_code ec;
  std::filesystem::remove_all(path_, ec);
}

std::filesystem::path Cli_Program() {
  if (const char* dir = std::getenv("TEVO_BINARY_DIR"); dir && *dir)
    return std::filesystem::path(dir) / "cli" / "tevo1d-cli";
  return std::filesystem::read_symlink("/proc/self/exe").parent_path().parent_path() / "cli" / "tevo1d-cli";
}

int Run_Command(const std::string& command) {
  const int status = std::system(command.c_str());
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::string Quoted(const std::filesystem::path& p) { return "'" + p.string() + "'"; }

std::filesystem::path Test_Data_Dir() {
  if (const char* env = std::getenv("TEVO_TESTDATA_DIR"); env && *env) return env;
  return TEVO_TESTDATA_DIR;
}

std::filesystem::path Test_Data_File(const std::string& relative) {
  auto p = Test_Data_Dir() / relative;
  if (!std::filesystem::exists(p)) {
    ADD_FAILURE() << "test data file missing: " << p
                  << " (run scripts/fetch-testdata; it fetches the npm data packages)";
  }
  return p;
}

Cli_Result Run_Cli(const std::vector<std::string>& args) {
  Cli_Result result;
  const std::string program = Cli_Program().string();
  std::vector<char*> argv{const_cast<char*>(program.c_str())};
  for (const std::string& a : args) argv.push_back(const_cast<char*>(a.c_str()));
  argv.push_back(nullptr);
  int out[2];
  if (::pipe(out) != 0) return result;
  const pid_t pid = ::fork();
  if (pid == 0) {
    ::dup2(out[1], 1);
    const int null = ::open("/dev/null", O_WRONLY);
    ::dup2(null, 2);
    ::close(out[0]);
    ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
    ::execv(program.c_str(), argv.data());
    ::_exit(127);
  }
  ::close(out[1]);
  char buf[4096];
  for (ssize_t n; (n = ::read(out[0], buf, sizeof buf)) > 0;) result.out.append(buf, static_cast<std::size_t>(n));
  ::close(out[0]);
  int status = 0;
  rusage usage{};
  if (pid > 0 && ::wait4(pid, &status, 0, &usage) == pid) {
    result.max_rss_kb = usage.ru_maxrss;
    if (WIFEXITED(status)) result.exit_code = WEXITSTATUS(status);
    if (WIFSIGNALED(status)) result.signal = WTERMSIG(status);
  }
  return result;
}

std::vector<uint8_t> Read_Bytes(const std::filesystem::path& p) {
  std::ifstream in(p, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

void Write_Bytes(const std::filesystem::path& p, const std::vector<uint8_t>& bytes) {
  std::ofstream out(p, std::ios::binary | std::ios::trunc);
  out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

void Write_Text(const std::filesystem::path& p, const std::string& text) {
  std::ofstream out(p, std::ios::binary | std::ios::trunc);
  out << text;
}

std::string Read_Text(const std::filesystem::path& p) {
  std::ifstream in(p, std::ios::binary);
  std::ostringstream ss;
  ss << in.rdbuf();
  return ss.str();
}

}  // namespace tevo::test
