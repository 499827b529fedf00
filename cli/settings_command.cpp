// tevo1d-cli settings [--write] [--json]: the effective settings after the
// start-up reading; --write writes them back as the program does at exit.
#include <filesystem>
#include <iostream>
#include <nlohmann/json.hpp>

#include "commands.h"
#include "session/settings_files.h"
#include "session/startup.h"

namespace tevo::cli {

namespace {

// The entries of a repeated key, as the settings file lists them.
std::vector<std::string> Repeated_Entries(const session::Settings& set, std::string_view key) {
  std::vector<std::string> out;
  auto rows = [&out](const std::array<std::string, 100>& t) {
    for (std::size_t r = 0; r < t.size(); ++r)
      if (!t[r].empty()) out.push_back((r < 10 ? "00" : r < 100 ? "0" : "") + std::to_string(r) + t[r]);
  };
  if (key == "INSTRUMENT ID") out = set.Instrument_Ids;
  if (key == "INSTRUMENT") rows(set.Instrument);
  if (key == "FID SHIFT VAL") rows(set.Fid_Shift_Val);
  if (key == "REF CENTER FRQ") rows(set.Ref_Center_Frq);
  if (key == "REF CENTER EX") rows(set.Ref_Center_Ex);
  if (key == "RECENT FILE") out = set.Recent_Files;
  if (key == "OPERATOR INDEX") out = set.Operators;
  if (key == "PARA TABLE") {
    std::size_t from = 0;
    const std::string& t = set.Para_Table;
    while (!t.empty() && from <= t.size()) {
      const auto end = std::min(t.find("\r\n", from), t.size());
      out.push_back(t.substr(from, end - from));
      from = end + 2;
    }
  }
  return out;
}

}  // namespace

void Register_Settings(CLI::App& app, Context& ctx) {
  auto* cmd = app.add_subcommand("settings", "print the effective settings");
  static bool write = false, json = false;
  cmd->add_flag("--write", write, "write the settings file and 1DCommon.ini");
  cmd->add_flag("--json", json, "print as JSON");
  cmd->callback([&ctx] {
    int st = Start_Session(ctx);
    if (st != 0) {
      ctx.exit_code = Exit_From_Status(st);
      return;
    }
    Session& s = ctx.session;
    const auto& set = s.settings;
    if (json) {
      nlohmann::ordered_json j;
      j["App_Path"] = s.App_Path;
      j["User_Name"] = s.User_Name;
      j["Settings_Read_Name"] = s.Settings_Read_Name;
      j["Settings_Write_Name"] = s.Settings_Write_Name;
      j["Access_Count"] = s.Access_Count;
      nlohmann::ordered_json keys;
      for (const auto& def : session::Setting_Keys()) {
        switch (def.type) {
          case session::Setting_Type::Text: keys[def.key] = set.Text(def.key); break;
          case session::Setting_Type::List: keys[def.key] = Repeated_Entries(set, def.key); break;
          case session::Setting_Type::Int16:
          case session::Setting_Type::Int32: keys[def.key] = set.Int(def.key); break;
          default: keys[def.key] = set.Real(def.key); break;
        }
      }
      j["settings"] = keys;
      std::cout << j.dump(2) << "\n";
    } else {
      for (const auto& def : session::Setting_Keys()) {
        if (def.type == session::Setting_Type::List) {
          for (const auto& e : Repeated_Entries(set, def.key)) std::cout << def.key << " = " << e << "\n";
        } else {
          std::cout << def.key << " = " << set.Value_Text(def.key) << "\n";
        }
      }
    }
    if (write) {
      session::Finish_Session(s);
      ctx.started = false;
    }
  });
}

int Start_Session(Context& ctx) {
  session::Start_Options o;
  o.home = ctx.home;
  std::error_code ec;
  o.exe_path = std::filesystem::read_symlink("/proc/self/exe", ec).string();
  o.interactive = false;  // no user window: the latest user or the common settings
  const auto r = session::Start_Up(ctx.session, o);
  if (!r.go_on) return 1;
  ctx.started = true;
  return 0;
}

void End_Session(Context& ctx) {
  if (ctx.started) session::Shutdown_Cleanup(ctx.session);
  ctx.started = false;
}

}  // namespace tevo::cli
