// tevo1d-cli peaks PATH [--level L] [--noise N] [--base B] [--range LEFT,RIGHT]
// [--json] [-o LIST]: the peak search of the peak mode on a data file (a FID
// processed with the defaults first), over the whole spectrum or a ppm range.
// Prints number, ppm, Hz, height and relative height; -o writes the peak
// list file.
#include <nlohmann/json.hpp>
#include <cstdio>
#include <iostream>
#include <optional>

#include "commands.h"
#include "datafiles/list_files.h"
#include "display/view_commands.h"
#include "editing/peaks.h"

namespace tevo::cli {

void Register_Peaks(CLI::App& app, Context& ctx) {
  auto* cmd = app.add_subcommand("peaks", "find the peaks of a data file");
  static std::string path, range, out;
  static std::optional<float> level, noise, base;
  static bool json = false;
  cmd->add_option("PATH", path, "data file")->required();
  cmd->add_option("--level", level, "detection level, units of the largest magnitude (default 0.01)");
  cmd->add_option("--noise", noise, "noise level, same units (default 0.005)");
  cmd->add_option("--base", base, "base level, same units (default 0)");
  cmd->add_option("--range", range, "LEFT,RIGHT in ppm (default: the whole spectrum)");
  cmd->add_option("-o,--output", out, "peak list file to write");
  cmd->add_flag("--json", json, "print the peaks as JSON");
  cmd->callback([&ctx] {
    float left = 0, right = 0;
    if (!range.empty() && !Parse_Ppm_Range(range, left, right)) {
      std::cerr << "peaks: --range wants LEFT,RIGHT in ppm\n";
      ctx.exit_code = Exit_Usage;
      return;
    }
    if (int rc = Open_Spectrum(ctx, path, "peaks"); rc != Exit_Good) {
      ctx.exit_code = rc;
      return;
    }
    Session& s = ctx.session;
    if (level) s.Peak_Level = *level;
    if (noise) s.Noise_Level = *noise;
    if (base) s.Base_Level = *base;
    if (range.empty()) {
      editing::Peak_Search_All(s);
    } else {
      s.X_Left = std::max(left, right);  // the search runs from X_Right up to X_Left
      s.X_Right = std::min(left, right);
      editing::Peak_Search_Shown(s);
    }
    const auto rows = editing::Peak_List_Rows(s, false);
    if (json) {
      nlohmann::ordered_json j;
      j["file"] = path;
      j["Max_Abs"] = s.Max_Abs;
      j["count"] = rows.size();
      j["peaks"] = nlohmann::json::array();
      for (const auto& r : rows)
        j["peaks"].push_back({{"number", r.number}, {"ppm", r.ppm}, {"hz", r.freq}, {"height", r.height},
                              {"relative", r.strength}});
      std::cout << j.dump(2) << "\n";
    } else {
      std::printf("%5s %11s %13s %14s %9s\n", "No", "ppm", "Hz", "height", "rel(%)");
      for (const auto& r : rows)
        std::printf("%5d %11.5f %13.3f %14.6g %9.2f\n", r.number, r.ppm, r.freq, r.height, r.strength);
    }
    int st = 0;
    if (!out.empty()) st = datafiles::Write_Peak_List(s, out, datafiles::Peak_List_Layout::Comma);
    ctx.exit_code = Exit_From_Status(st < 0 ? st : 0);
  });
}

}  // namespace tevo::cli
