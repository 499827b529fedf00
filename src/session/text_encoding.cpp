#include "session/text_encoding.h"

#include <iconv.h>

#include <cerrno>
#include <mutex>

namespace tevo {

namespace {

// Converts with iconv; on an invalid sequence writes `bad` and skips one byte.
std::string Convert(const char* to, const char* from, std::string_view in, std::string_view bad) {
  iconv_t cd = iconv_open(to, from);
  if (cd == reinterpret_cast<iconv_t>(-1)) return std::string(in);
  std::string out;
  out.reserve(in.size() * 3 / 2 + 8);
  char* src = const_cast<char*>(in.data());
  size_t src_left = in.size();
  char buf[4096];
  while (src_left > 0) {
    char* dst = buf;
    size_t dst_left = sizeof buf;
    size_t rc = iconv(cd, &src, &src_left, &dst, &dst_left);
    out.append(buf, static_cast<size_t>(dst - buf));
    if (rc == static_cast<size_t>(-1)) {
      if (errno == E2BIG) continue;
      // EILSEQ or EINVAL: replace one input byte (a whole UTF-8 sequence when
      // converting from UTF-8) and go on.
      size_t skip = 1;
      if (std::string_view(from) == "UTF-8") {
        unsigned char c = static_cast<unsigned char>(*src);
        skip = c >= 0xF0 ? 4 : c >= 0xE0 ? 3 : c >= 0xC0 ? 2 : 1;
        if (skip > src_left) skip = src_left;
      }
      out.append(bad);
      src += skip;
      src_left -= skip;
    }
  }
  iconv_close(cd);
  return out;
}

}  // namespace

std::string Sjis_To_Utf8(std::string_view sjis) {
  // Plain ASCII needs no conversion (the common case for numbers and keys).
  bool ascii = true;
  for (unsigned char c : sjis)
    if (c >= 0x80) {
      ascii = false;
      break;
    }
  if (ascii) return std::string(sjis);
  return Convert("UTF-8", "CP932", sjis, "\xEF\xBF\xBD");
}

std::string Utf8_To_Sjis(std::string_view utf8) {
  bool ascii = true;
  for (unsigned char c : utf8)
    if (c >= 0x80) {
      ascii = false;
      break;
    }
  if (ascii) return std::string(utf8);
  return Convert("CP932", "UTF-8", utf8, "?");
}

std::size_t Sjis_Length(std::string_view utf8) { return Utf8_To_Sjis(utf8).size(); }

}  // namespace tevo
