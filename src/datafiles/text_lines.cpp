#include "datafiles/text_lines.h"

#include "session/text_encoding.h"

namespace tevo::datafiles {

namespace {

// The rule of both readers over a byte source: next() gives the next byte
// or -1 at the end.
template <typename Next>
bool Read_Line_From(Next next, std::string& line) {
  line.clear();
  int c = next();
  while (c >= 0 && c < 32) c = next();
  if (c < 0) return false;
  while (c >= 0 && c != '\r' && c != '\n') {
    auto b = static_cast<unsigned char>(c);
    if (Is_Sjis_Lead(b)) {
      int trail = next();
      if (trail < 0) break;
      line += static_cast<char>(b);
      line += static_cast<char>(trail);
    } else if (b < 253) {
      line += static_cast<char>(b);
    }
    c = next();
  }
  return true;
}

}  // namespace

bool Read_Line_Any(std::istream& in, std::string& line) {
  auto next = [&in]() -> int {
    int c = in.get();
    return c == std::char_traits<char>::eof() ? -1 : c;
  };
  return Read_Line_From(next, line);
}

bool Read_Line_Any(Byte_View bytes, size_t& pos, std::string& line) {
  auto next = [&]() -> int { return pos < bytes.size() ? bytes[pos++] : -1; };
  return Read_Line_From(next, line);
}

}  // namespace tevo::datafiles
