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

char32_t Next_Utf8(std::string_view s, std::size_t& i) {
  unsigned char c = static_cast<unsigned char>(s[i]);
  int n = (c >= 0xC2 && c < 0xE0) ? 1 : (c >= 0xE0 && c < 0xF0) ? 2 : (c >= 0xF0 && c < 0xF5) ? 3 : 0;
  if (n == 0 || i + n >= s.size()) {
    ++i;
    return c;
  }
  char32_t cp = c & (0x3F >> n);
  for (int k = 1; k <= n; ++k) {
    unsigned char t = static_cast<unsigned char>(s[i + k]);
    if ((t & 0xC0) != 0x80) {
      ++i;
      return c;
    }
    cp = (cp << 6) | (t & 0x3F);
  }
  i += n + 1;
  return cp;
}

void Append_Utf8(std::string& out, char32_t c) {
  if (c < 0x80) {
    out += static_cast<char>(c);
  } else if (c < 0x800) {
    out += static_cast<char>(0xC0 | (c >> 6));
    out += static_cast<char>(0x80 | (c & 0x3F));
  } else if (c < 0x10000) {
    out += static_cast<char>(0xE0 | (c >> 12));
    out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (c & 0x3F));
  } else {
    out += static_cast<char>(0xF0 | (c >> 18));
    out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
    out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (c & 0x3F));
  }
}

int Sjis_Char_Bytes(char32_t c) {
  if (c < 0x80 || (c >= 0xFF61 && c <= 0xFF9F)) return 1;
  std::string one;
  Append_Utf8(one, c);
  return Utf8_To_Sjis(one).size() == 2 ? 2 : 1;
}

}  // namespace tevo
