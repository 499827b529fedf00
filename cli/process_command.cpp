// tevo1d-cli process PATH -o OUT: reads a data set through the open command
// and writes it in the format the output name asks for, through the save
// and export commands of the menu. A spectrum is written as it was read.
#include <nlohmann/json.hpp>
#include <algorithm>
#include <array>
#include <cstdlib>
#include <iostream>
#include <optional>
#include <vector>

#include "commands.h"
#include "datafiles/open_file.h"
#include "datafiles/recognition.h"
#include "display/view_commands.h"
#include "signal/fid_processing.h"

namespace tevo::cli {

namespace {

// Every option of the command, parsed in one place.
struct Process_Options {
  std::string path;
  std::string out;
  bool json = false;
  // processing of a FID
  std::string window;  // exp | sine | sine2 | gauss
  std::optional<float> lb, start, end;
  std::string trap;  // T1,T2,T3,T4
  int zerofill = 1;
  std::optional<int32_t> shift, row;
  std::string phase = "auto";  // auto | semi | P0,P1
};

void Add_Process_Options(CLI::App* cmd, Process_Options& o) {
  cmd->add_option("PATH", o.path, "data file")->required();
  cmd->add_option("-o,--output", o.out,
                  "output file: .tv1 native, .als older native, .dx compact or .jdx extended JCAMP-DX, "
                  ".txt/.dat/.asc ASCII")
      ->required();
  cmd->add_flag("--json", o.json, "print what was done as JSON");
  cmd->add_option("--window", o.window, "window function of a FID: exp, sine, sine2, gauss")
      ->check(CLI::IsMember({"exp", "sine", "sine2", "gauss"}));
  cmd->add_option("--lb", o.lb, "exponential line broadening, Hz");
  cmd->add_option("--start", o.start, "window start, percent of the FID");
  cmd->add_option("--end", o.end, "window end, percent of the FID (up to 200)");
  cmd->add_option("--trap", o.trap, "trapezoid corners T1,T2,T3,T4 in percent");
  cmd->add_option("--zerofill", o.zerofill, "zero fill factor: 1, 2, 4, ...")->check(CLI::PositiveNumber);
  cmd->add_option("--shift", o.shift, "FID shift in points (negative: right)");
  cmd->add_option("--phase", o.phase, "auto, semi or P0,P1 in degrees");
  cmd->add_option("--row", o.row, "row whose phase is found and applied to all rows");
}

// Splits "a,b,..." into exactly `count` numbers; false on anything else.
bool Parse_List(const std::string& text, std::size_t count, std::vector<float>& out) {
  out.clear();
  std::size_t pos = 0;
  while (pos <= text.size()) {
    const std::size_t comma = std::min(text.find(',', pos), text.size());
    const std::string item = text.substr(pos, comma - pos);
    char* e = nullptr;
    const float v = std::strtof(item.c_str(), &e);
    if (item.empty() || *e != '\0') return false;
    out.push_back(v);
    pos = comma + 1;
  }
  return out.size() == count;
}

// The processing request from the options; false for a malformed value.
bool Make_Request(const Process_Options& o, signal::Process_Request& req) {
  if (!o.window.empty())
    req.window_kind = static_cast<int16_t>(o.window == "exp" ? 0 : o.window == "sine" ? 1 : o.window == "sine2" ? 2 : 3);
  req.line_broadening = o.lb;
  req.window_start = o.start;
  req.window_end = o.end;
  std::vector<float> v;
  if (!o.trap.empty()) {
    if (!Parse_List(o.trap, 4, v)) return false;
    req.trapezoid = std::array<float, 4>{v[0], v[1], v[2], v[3]};
  }
  if (o.zerofill & (o.zerofill - 1)) return false;  // a power of two
  req.zero_fill = static_cast<int16_t>(std::min(o.zerofill, 1 << 14));
  req.fid_shift = o.shift;
  req.row = o.row;
  if (o.phase == "auto") {
    req.phase_mode = 0;
  } else if (o.phase == "semi") {
    req.phase_mode = 1;
  } else {
    if (!Parse_List(o.phase, 2, v)) return false;
    req.phase_mode = 2;
    req.phase0 = v[0];
    req.phase1 = v[1];
  }
  return true;
}

// The output kinds by extension and the menu command that writes each.
struct Output_Kind {
  const char* ext;  // upper case, with the dot
  int (*write)(Session&, const std::string&);
};
int Save_Native(Session& s, const std::string& out) { return datafiles::m10_Click(s, out); }
int Save_Older(Session& s, const std::string& out) { return datafiles::m13_Click(s, out); }
constexpr Output_Kind Output_Kinds[] = {
    {".TV1", Save_Native},           {".ALS", Save_Older},           {".DX", datafiles::m183_Click},
    {".JDX", datafiles::m181_Click}, {".TXT", datafiles::m18_Click}, {".DAT", datafiles::m18_Click},
    {".ASC", datafiles::m18_Click},
};

const Output_Kind* Output_Kind_Of(const std::string& out) {
  const std::string ext = datafiles::Extension_Class(out);
  for (const Output_Kind& k : Output_Kinds)
    if (ext == k.ext) return &k;
  return nullptr;
}

}  // namespace

bool Parse_Ppm_Range(const std::string& text, float& left, float& right) {
  std::vector<float> v;
  if (!Parse_List(text, 2, v)) return false;
  left = v[0], right = v[1];
  return true;
}

bool Known_Output(const std::string& out) { return Output_Kind_Of(out) != nullptr; }

int Write_Output(Session& s, const std::string& out) {
  const Output_Kind* kind = Output_Kind_Of(out);
  return kind ? kind->write(s, out) : 1;
}

bool Output_Usable(const std::string& out, const char* command) {
  if (Known_Output(out)) return true;
  std::cerr << command << ": unknown output kind: " << out << " (known: .tv1 .als .dx .jdx .txt .dat .asc)\n";
  return false;
}

int Open_Spectrum(Context& ctx, const std::string& path, const char* command) {
  if (int rc = Open_Data(ctx, path); rc != Exit_Good) return rc;
  Session& s = ctx.session;
  if (s.Spec_Points <= 0) {
    std::cerr << command << ": " << path << " holds no spectrum\n";
    return Exit_Refused;
  }
  Build_Disp_Arrays(s, 0);
  display::View_After_Load(s);
  return Exit_Good;
}

int Open_Data(Context& ctx, const std::string& path, const signal::Process_Request& req, signal::Process_Report* report,
              bool* processed, const Settle_Fn& settle) {
  if (int st = Start_Session(ctx); st != 0) return Exit_From_Status(st);
  Session& s = ctx.session;
  const int read = datafiles::NM1D_m11_Click(s, {path, {}});
  if (read != 0) return Exit_From_Status(read);
  const bool fid = s.Param.SMODE == 0 || s.Is_Fid;
  if (processed) *processed = fid;
  if (!fid) return Exit_Good;
  signal::Process_Report local;
  signal::Process_Request settled = req;
  if (settle) settle(s, settled);
  const int done = signal::Process_Fid(s, settled, report ? *report : local);
  if (done == 2) {
    std::cerr << "process: --lb must be above 0 and --trap ascending\n";
    return Exit_Usage;
  }
  return Exit_From_Status(done);
}

void Register_Process(CLI::App& app, Context& ctx) {
  auto* cmd = app.add_subcommand("process", "read a data file and write it as OUT");
  static Process_Options o;
  Add_Process_Options(cmd, o);
  cmd->callback([&ctx] {
    Session& s = ctx.session;
    signal::Process_Request req;
    if (!Make_Request(o, req)) {
      std::cerr << "process: malformed --trap, --zerofill or --phase value\n";
      ctx.exit_code = Exit_Usage;
      return;
    }
    const Output_Kind* kind = Output_Kind_Of(o.out);
    if (kind == nullptr) {
      std::cerr << "process: unknown output kind: " << o.out
                << " (known: .tv1 .als .dx .jdx .txt .dat .asc)\n";
      ctx.exit_code = Exit_Usage;
      return;
    }
    signal::Process_Report report;
    bool fid = false;
    if (int rc = Open_Data(ctx, o.path, req, &report, &fid); rc != Exit_Good) {
      ctx.exit_code = rc;
      return;
    }
    const int written = kind->write(s, o.out);
    if (o.json) {
      nlohmann::ordered_json j;
      j["read"] = o.path;
      j["file_class"] = s.File_Class;
      j["written"] = o.out;
      j["status"] = written;
      j["Spec_Points"] = s.Spec_Points;
      j["processed"] = fid;
      if (fid) {
        j["N"] = report.points;
        j["shift"] = report.fid_shift;
        j["phase"] = {{"mode", o.phase}, {"Phase0", report.phase0}, {"Phase1", report.phase1},
                      {"pivot", report.pivot}};
        j["Zero_Fill_Factor"] = report.zero_fill_factor;
        j["LP_Fill_Factor"] = report.lp_fill_factor;
      }
      std::cout << j.dump(2) << "\n";
    }
    ctx.exit_code = Exit_From_Status(written);
  });
}

}  // namespace tevo::cli
