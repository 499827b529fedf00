#include "datafiles/recognition.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <vector>

#include "datafiles/bruker.h"
#include "datafiles/decoders.h"
#include "datafiles/text_lines.h"
#include "datafiles/user_extensions.h"
#include "session/messages.h"
#include "session/session.h"

namespace fs = std::filesystem;

namespace tevo::datafiles {

namespace {

std::string Upper(std::string t) {
  for (char& c : t) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return t;
}

bool Starts_With(const std::string& text, const std::string& head) { return text.rfind(head, 0) == 0; }

// Text of bytes [from, from + n) up to the first NUL, with trailing blanks
// and line ends dropped (banners are padded either way, and a text banner
// such as "$CSVSTART" is followed by its line end).
std::string Field_Text(const std::vector<uint8_t>& b, size_t from, size_t n) {
  std::string t;
  for (size_t i = from; i < from + n && i < b.size() && b[i] != 0; ++i) t += static_cast<char>(b[i]);
  while (!t.empty() && static_cast<unsigned char>(t.back()) <= 32) t.pop_back();
  return t;
}

bool Reads_As_Number(const std::string& tok) {
  if (tok.empty()) return false;
  char* end = nullptr;
  errno = 0;
  std::strtod(tok.c_str(), &end);
  return end == tok.c_str() + tok.size() && errno == 0;
}

// The JCAMP-style scan of test 10: reads lines from the start while they
// are labels ("##" or "$$"); the binary NUTS variant names itself in a
// "##JCAMP-DXB" label.
std::string Scan_Labels(std::istream& in) {
  std::string line;
  while (Read_Line_Any(in, line)) {
    if (!Starts_With(line, "##") && !Starts_With(line, "$$")) return {};
    if (Starts_With(Upper(line), "##JCAMP-DXB")) return "NUTS Type3";
  }
  return {};
}

// The sniff table, first match wins, over the first 301 bytes.
std::string Sniff_Head(const std::vector<uint8_t>& head, std::istream& in, int32_t at_516) {
  const std::string b10 = Field_Text(head, 0, 10);
  const std::string b16 = Field_Text(head, 0, 16);
  const std::string b82 = Field_Text(head, 82, 21);
  const std::string b258 = Field_Text(head, 258, 21);
  if (Starts_With(b10, "JEOL.NMR")) return "ECP";
  if (b16 == "TV NMR Ver.3.00") return head[16] == '2' ? "TEV2" : "TEV1";
  if (b16 == "TV NMR Ver.4.00" || b16 == "TV NMR Ver.4.01") return at_516 < 257 ? "TEVX_1" : "TEVX_2";
  if (b82 == "VEX NMR VERSION 1.00" || b258 == "VEX NMR VERSION 1.01") return "ALICE";
  if (b10 == "JEOLUSF001") return "LAMBDA";
  if (Starts_With(b10, "NFT1DT")) return "ALPHA";
  if (Decode_LE_Int32(head, 0) == 0x04030201) return "NUTS Type1,2";
  if (Decode_Aspect_Int24(head, 0) == 0x4784F5) return "ASPECT";
  if (b10 == "$CSVSTART") return "CSV TYPE 1";
  if (Starts_With(b10, "##") || Starts_With(b10, "$$")) {
    in.clear();
    in.seekg(0);
    return Scan_Labels(in);
  }
  // First token: blanks and control bytes skipped within the first 100,
  // then up to a blank, a comma or a line end.
  size_t i = 0;
  while (i < 100 && head[i] <= 32) ++i;
  std::string tok;
  for (; i < head.size() && head[i] > 32 && head[i] != ','; ++i) tok += static_cast<char>(head[i]);
  if (tok.size() < 10 && head[0] >= 32 && Reads_As_Number(tok)) return "CSV TYPE 0";
  return {};
}

}  // namespace

Sniff_Result RDMode(Session& s, const std::string& path) {
  std::error_code ec;
  const auto length = fs::file_size(path, ec);
  if (ec || length < 1) {
    if (!ec) return {};
    Disk_Error_Text(s, Error_Number_From_Errno(ec.value()), "RDMode/RDW");
    return {"", -1};
  }
  std::ifstream in(path, std::ios::binary);
  if (!in) {
    Disk_Error_Text(s, Error_Number_From_Errno(errno), "RDMode/RDW");
    return {"", -1};
  }
  // A short file is a possible marker file of a raw vendor folder.
  if (length < 301) {
    std::vector<uint8_t> all(length);
    in.read(reinterpret_cast<char*>(all.data()), static_cast<std::streamsize>(length));
    const std::string word = Upper(Field_Text(all, 0, 6).substr(0, 6));
    if (word == "VARIAN" || word == "BRUKER") return {word, 0};
    return {};
  }
  std::vector<uint8_t> head(301);
  in.read(reinterpret_cast<char*>(head.data()), 301);
  int32_t at_516 = 0;
  if (length >= 520) {
    std::vector<uint8_t> w(4);
    in.seekg(516);
    in.read(reinterpret_cast<char*>(w.data()), 4);
    if (in) at_516 = Decode_LE_Int32(w, 0);
  }
  if (!in) {
    Disk_Error_Text(s, 62, "RDMode/RDW");
    return {"", -1};
  }
  s.ui->Wait_Cursor(true);
  std::string tag = Sniff_Head(head, in, at_516);
  s.ui->Wait_Cursor(false);
  if (in.bad()) {
    Disk_Error_Text(s, 57, "RDMode/RDW");
    return {"", -1};
  }
  return {tag, 0};
}

std::string Extension_Class(const std::string& path) { return Upper(fs::path(path).extension().string()); }

std::string Base_Name(const std::string& path) { return Upper(fs::path(path).stem().string()); }

std::string Folder_Of(const std::string& path) {
  std::string f = fs::path(path).parent_path().string();
  while (f.size() > 1 && (f.back() == '/' || f.back() == '\\')) f.pop_back();
  return f;
}

std::string Find_In_Folder(const std::string& folder, const std::string& name) {
  std::error_code ec;
  const fs::path exact = fs::path(folder) / name;
  if (fs::is_regular_file(exact, ec)) return exact.string();
  const std::string want = Upper(name);
  for (fs::directory_iterator it(folder.empty() ? "." : folder, ec), end; !ec && it != end; it.increment(ec))
    if (Upper(it->path().filename().string()) == want && it->is_regular_file(ec)) return it->path().string();
  return {};
}

namespace {

// The companion of `path` with another extension, in either case.
std::string Companion(const std::string& path, const std::string& ext) {
  fs::path p(path);
  return Find_In_Folder(p.parent_path().string(), p.stem().string() + ext);
}

bool Not_Empty(const std::string& path) {
  std::error_code ec;
  return !path.empty() && fs::file_size(path, ec) > 0 && !ec;
}

// Rules of the name that look for companion files; they may move the path
// to the real data file of a raw folder.
void Rules_Before_Sniff(Recognition& r) {
  const std::string ext4 = r.file_class.substr(0, 4);
  auto first_of = [&](std::initializer_list<std::pair<const char*, const char*>> names) {
    for (const auto& [name, cls] : names) {
      std::string found = Find_In_Folder(r.data_folder, name);
      if (!found.empty()) {
        r.file_class = cls;
        r.path = found;
        return;
      }
    }
  };
  if (ext4 == ".1R") {
    if (Not_Empty(Companion(r.path, ".FQS"))) r.file_class = ".BRUP";
  } else if (ext4 == ".FID") {
    if (Not_Empty(Companion(r.path, ".AQS"))) r.file_class = ".BRUA";
  } else if (ext4 == ".2RR") {
    if (!Companion(r.path, ".FQS").empty()) r.file_class = ".BRUP2";
  } else if (ext4 == ".SER") {
    if (!Companion(r.path, ".AQS").empty()) r.file_class = ".BRUA2";
  } else if (ext4 == ".VAR") {
    first_of({{"FID", ".VARF"}, {"DATA", ".VARD"}, {"PHASEFILE", ".VARD"}});
  } else if (ext4 == ".BRU") {
    first_of({{"FID", ".BRUF"}, {"SER", ".BRUF"}, {"1R", ".BRUD"}, {"2RR", ".BRUD"}});
  } else if (ext4 == ".CMX") {
    r.file_class = ".CMX";
    std::string data = Find_In_Folder(r.data_folder, "DATA");
    r.path = data.empty() ? (fs::path(r.data_folder) / "DATA").string() : data;
  }
}

// A path naming an experiment folder stands for its data file: the raw
// "fid", the "ser" of a relaxation series, or the first processed spectrum
// "pdata/1/1r" when there is neither. Any other path is kept.
std::string Experiment_Data_File(const std::string& path) {
  std::error_code ec;
  if (!fs::is_directory(path, ec)) return path;
  if (std::string fid = Find_In_Folder(path, "fid"); !fid.empty()) return fid;
  if (std::string ser = Find_In_Folder(path, "ser"); !ser.empty() && Find_Series_List(path)) return ser;
  if (std::string r1 = Find_In_Folder((fs::path(path) / "pdata" / "1").string(), "1r"); !r1.empty()) return r1;
  return path;
}

// The class a recognised content imposes, whatever the name says.
void Rules_After_Sniff(Recognition& r) {
  static const std::pair<const char*, const char*> by_tag[] = {
      {"ECP", ".ECP"},    {"ALICE", ".ALS"},  {"TEV1", ".TV1"},  {"TEV2", ".TV2"},   {"TEVX_1", ".TVO1"},
      {"TEVX_2", ".TVO2"}, {"ASPECT", ".MSL"}, {"ALPHA", ".ALP"}, {"LAMBDA", ".LAM"}, {"IMA", ".IMA"}};
  const std::string& tag = r.sniff.tag;
  for (const auto& [t, cls] : by_tag)
    if (tag == t) {
      r.file_class = cls;
      return;
    }
  if (Starts_With(tag, "NUTS")) {
    r.file_class = ".NUT";
  } else if (Starts_With(tag, "CSV") || Starts_With(r.file_class, ".TXT") || Starts_With(r.file_class, ".DAT") ||
             Starts_With(r.file_class, ".ASC")) {
    r.file_class = ".CSV";
  }
}

}  // namespace

Recognition Classify_File(Session& s, const std::string& path) {
  Recognition r;
  r.path = Experiment_Data_File(path);
  r.file_class = Extension_Class(r.path);
  r.data_folder = Folder_Of(r.path);
  // An extension the operator bound to a data type takes that type's class.
  if (std::string bound = User_Extension_Class(User_Extensions_Of(s), r.file_class); !bound.empty())
    r.file_class = bound;
  Rules_Before_Sniff(r);
  r.base_name = Base_Name(r.path);
  r.sniff = RDMode(s, r.path);
  Rules_After_Sniff(r);
  s.File_Class = r.file_class;
  s.Data_Folder = r.data_folder;
  s.Sniff_Tag = r.sniff.tag;
  return r;
}

bool Class_Is(const std::string& file_class, const std::string& entry) {
  static const char* short_classes[] = {".TV1", ".TV2", ".TVO1", ".TVO2", ".ALS", ".ECP", ".ALP",
                                        ".LAM", ".MSL", ".NUT",  ".CSV",  ".IMA", ".GXD", ".GXP"};
  size_t n = 0;  // 0: the whole text counts
  if (entry == ".IMPORT") n = 7;
  for (const char* c : short_classes)
    if (entry == c) n = 4;
  if (n == 0) return file_class == entry;
  return file_class.substr(0, n) == entry.substr(0, n);
}

bool Class_Accepted(const Recognition& r) {
  // "SER": a relaxation series reads as array data, a true 2D set is refused.
  static const char* bases[] = {"FID", "SER", "1R", "DATA", "PHASEFILE"};
  static const char* classes[] = {".ALS",  ".GXD",  ".GXP", ".ECP",  ".NUT",  ".JDX",  ".DX",   ".ALP",
                                  ".LAM",  ".MSL",  ".IMPORT", ".BRUD", ".BRUF", ".BRUA", ".BRUP", ".VARD",
                                  ".VARF", ".TV1",  ".CMX", ".FID",  ".HED",  ".CSV",  ".TVO1"};
  for (const char* b : bases)
    if (r.base_name == b) return true;
  for (const char* c : classes)
    if (Class_Is(r.file_class, c)) return true;
  return false;
}

Twin_Files Pair_Twin_Files(const std::string& path, const std::string& file_class) {
  fs::path p(path);
  const std::string ext = p.extension().string();
  auto with_ext = [&](const std::string& e) {
    fs::path q = p;
    q.replace_extension(e);
    std::string found = Find_In_Folder(q.parent_path().string(), q.filename().string());
    return found.empty() ? q.string() : found;
  };
  auto same_case = [&](const std::string& upper) {
    bool lower = std::any_of(ext.begin(), ext.end(), [](char c) { return std::islower(static_cast<unsigned char>(c)); });
    std::string e = upper;
    if (lower)
      for (char& c : e) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return e;
  };
  if ((Class_Is(file_class, ".GXD") || Class_Is(file_class, ".GXP")) && ext.size() >= 4) {
    std::string d = ext, q = ext;
    d[3] = same_case("D")[0];
    q[3] = same_case("P")[0];
    return {with_ext(d), with_ext(q)};
  }
  if (file_class == ".FID" || file_class == ".HED") return {with_ext(same_case(".FID")), with_ext(same_case(".HED"))};
  return {path, path};
}

bool Dummy_File(Session& s, const std::string& file_class, bool enabled) {
  struct Marker {
    const char* cls;
    const char* file;
    const char* text;
    const char* instrument;
  };
  static const Marker markers[] = {{".BRUF", "Spec.BRUF", "BRUKER", "Bruker"},
                                   {".BRUD", "Spec.BRUD", "BRUKER", "Bruker"},
                                   {".VARF", "Spec.VarF", "VARIAN 1D", "VARIAN"},
                                   {".VARD", "Spec.VarD", "VARIAN 1D", "Varian"},
                                   {".CMX", "Spec.CMX", "CMX", "CMX"}};
  for (const auto& m : markers) {
    if (file_class != m.cls) continue;
    if (s.Param.Instrument_Name.empty()) s.Param.Instrument_Name = m.instrument;
    if (!enabled) return false;
    std::ofstream out(fs::path(s.Data_Folder) / m.file, std::ios::binary | std::ios::trunc);
    out << m.text << "\r\n";
    return static_cast<bool>(out);
  }
  return false;
}

}  // namespace tevo::datafiles
