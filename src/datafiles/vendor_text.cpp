#include "datafiles/vendor_text.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <new>
#include <stdexcept>

#include "datafiles/text_lines.h"
#include "platform/ui.h"
#include "session/messages.h"
#include "session/session.h"
#include "session/settings_files.h"
#include "session/startup.h"

namespace tevo::datafiles {

std::optional<std::string> Read_Whole_File(const std::string& path, int* error) {
  errno = 0;
  std::ifstream in(path, std::ios::binary);
  if (!in) {
    if (error) *error = errno ? Error_Number_From_Errno(errno) : 53;
    return std::nullopt;
  }
  std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  if (in.bad()) {
    if (error) *error = 57;
    return std::nullopt;
  }
  if (error) *error = 0;
  return bytes;
}

std::vector<std::string> Split_Lines(std::string_view bytes) {
  std::vector<std::string> lines;
  std::size_t pos = 0;
  std::string line;
  const Byte_View view = As_Bytes(bytes);
  while (pos < view.size() && Read_Line_Any(view, pos, line)) lines.push_back(line);
  return lines;
}

std::string Trim(std::string_view text) {
  std::size_t a = 0, b = text.size();
  while (a < b && static_cast<unsigned char>(text[a]) <= ' ') ++a;
  while (b > a && static_cast<unsigned char>(text[b - 1]) <= ' ') --b;
  return std::string(text.substr(a, b - a));
}

std::string Upper(std::string_view text) {
  std::string out(text);
  for (char& c : out)
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  return out;
}

bool Starts_With_Ci(std::string_view text, std::string_view head) {
  if (text.size() < head.size()) return false;
  for (std::size_t i = 0; i < head.size(); ++i)
    if (std::toupper(static_cast<unsigned char>(text[i])) !=
        std::toupper(static_cast<unsigned char>(head[i])))
      return false;
  return true;
}

std::optional<double> Leading_Number(std::string_view text) {
  std::string t = Trim(text);
  if (t.empty()) return std::nullopt;
  const char* begin = t.c_str();
  char* end = nullptr;
  errno = 0;
  const double v = std::strtod(begin, &end);
  if (end == begin) return std::nullopt;
  // strtod also takes "inf", "nan" and hex; the files never mean those.
  const char c0 = t[0] == '+' || t[0] == '-' ? (t.size() > 1 ? t[1] : ' ') : t[0];
  if (!(std::isdigit(static_cast<unsigned char>(c0)) || c0 == '.')) return std::nullopt;
  return v;
}

double Val(std::string_view text) { return Leading_Number(text).value_or(0.0); }

int32_t Next_Power_Of_Two(int32_t n) {
  int32_t p = 1;
  while (p < n && p < (1 << 30)) p <<= 1;
  return p;
}

std::string Observe_Text_Of(double mhz) {
  char buf[64];
  std::snprintf(buf, sizeof buf, "%.2f", std::floor(mhz * 20 + 0.5) / 20);
  return buf;
}

int Guarded_Read(Session& s, const std::string& location, const std::function<int()>& body) {
  try {
    s.ui->Wait_Cursor(true);
    const int status = body();
    s.ui->Wait_Cursor(false);
    return status;
  } catch (const std::out_of_range&) {
    return Reader_Fail(s, 62, location);
  } catch (const std::bad_alloc&) {
    return Reader_Fail(s, 7, location);
  } catch (const std::exception&) {
    return Reader_Fail(s, 57, location);
  }
}

std::string NMR1D_Form102(Session& s) {
  const int c = s.ui->Choose("FID/Spectrum選択(Fourie変換？)", "",
                             {"Spectrum：変換済みデータ", "FID：未変換データ"}, 0);
  return c == 0 ? "1" : c == 1 ? "0" : "";
}

float To_Real32(double v) {
  if (std::isnan(v)) return 0.0f;
  return static_cast<float>(std::clamp(v, -3.4028234663852886e38, 3.4028234663852886e38));
}

int32_t To_Int32(double v) {
  if (std::isnan(v)) return 0;
  return static_cast<int32_t>(std::clamp(v, -2147483648.0, 2147483647.0));
}

int16_t To_Int16(double v) {
  if (std::isnan(v)) return 0;
  return static_cast<int16_t>(std::clamp(v, -32768.0, 32767.0));
}

int Reader_Refuse(Session& s, const std::string& text) {
  s.ui->Wait_Cursor(false);
  s.ui->Beep();
  Show_Message(s, text, Style_OK | Icon_Exclamation, "Dataエラー");
  return 1;
}

int Write_Export_Lines(Session& s, const std::string& path, const std::vector<std::string>& lines) {
  errno = 0;
  if (!session::Write_Text_Lines(path, lines)) {
    Disk_Error_Text(s, errno != 0 ? Error_Number_From_Errno(errno) : 57, "");
    return -1;
  }
  session::Write_Log(s, "Write", path);
  return 0;
}

int Reader_Fail(Session& s, int error_number, const std::string& location) {
  s.ui->Wait_Cursor(false);
  Disk_Error_Text(s, error_number, location);
  return -1;
}

}  // namespace tevo::datafiles
