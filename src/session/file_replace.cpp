#include "session/file_replace.h"

#include <cerrno>
#include <filesystem>
#include <vector>

#include "session/messages.h"
#include "session/settings_files.h"

namespace tevo::session {

namespace fs = std::filesystem;

int Write_Keeping_Old(Session& s, const std::string& path, const std::function<int(const std::string&)>& write,
                      bool via_work_name, const std::string& location) {
  std::error_code ec;
  const std::string kept = path + ".$";
  const std::string work = via_work_name ? path + ".$$" : path;
  const bool existed = fs::exists(path, ec);
  const auto move_failed = [&] {
    Disk_Error_Text(s, Error_Number_From_Errno(ec.value()), location);
    return -1;
  };
  if (existed) {
    fs::remove(kept, ec);
    fs::rename(path, kept, ec);
    if (ec) return move_failed();
  }
  int status = write(work);
  if (status == 0 && work != path) {
    fs::rename(work, path, ec);
    if (ec) status = move_failed();
  }
  if (status == 0) {
    if (existed) fs::remove(kept, ec);
    return 0;
  }
  std::error_code ignored;
  if (work != path) fs::remove(work, ignored);
  if (existed) {
    fs::remove(path, ignored);
    fs::rename(kept, path, ignored);
  }
  return status;
}

bool Read_Text_File(const std::string& path, std::string& text) {
  std::vector<std::string> lines;
  if (!Read_Text_Lines(path, lines)) return false;
  text.clear();
  for (std::size_t i = 0; i < lines.size(); ++i) text += (i ? "\r\n" : "") + lines[i];
  return true;
}

int Save_Text_File(Session& s, const std::string& path, const std::string& text, const std::string& location) {
  std::vector<std::string> lines;
  for (std::size_t from = 0;;) {
    const std::size_t at = text.find("\r\n", from);
    lines.push_back(text.substr(from, at == std::string::npos ? std::string::npos : at - from));
    if (at == std::string::npos) break;
    from = at + 2;
  }
  const auto write = [&](const std::string& name) {
    if (Write_Text_Lines(name, lines)) return 0;
    Disk_Error_Text(s, Error_Number_From_Errno(errno), location);
    return -1;
  };
  return Write_Keeping_Old(s, path, write, false, location) == 0 ? 0 : -1;
}

}  // namespace tevo::session
