// tevo1d-cli process PATH -o OUT: reads a data set through the open command
// and writes it in the format the output name asks for. A spectrum is
// written as it was read.
#include <nlohmann/json.hpp>
#include <iostream>

#include "commands.h"
#include "datafiles/open_file.h"
#include "datafiles/recognition.h"

namespace tevo::cli {

namespace {

// Every option of the command, parsed in one place.
struct Process_Options {
  std::string path;
  std::string out;
  bool json = false;
};

void Add_Process_Options(CLI::App* cmd, Process_Options& o) {
  cmd->add_option("PATH", o.path, "data file")->required();
  cmd->add_option("-o,--output", o.out, "output file: .tv1 native, .als older native")->required();
  cmd->add_flag("--json", o.json, "print what was done as JSON");
}

// Writes the session to `out` by its extension; returns a core status word,
// or 2 for an output kind this command does not write.
int Write_Output(Session& s, const std::string& out) {
  const std::string ext = datafiles::Extension_Class(out);
  if (ext == ".TV1") return datafiles::m10_Click(s, out);
  if (ext == ".ALS") return datafiles::Write_Older_Native(s, out);
  return 2;
}

}  // namespace

void Register_Process(CLI::App& app, Context& ctx) {
  auto* cmd = app.add_subcommand("process", "read a data file and write it as OUT");
  static Process_Options o;
  Add_Process_Options(cmd, o);
  cmd->callback([&ctx] {
    if (int st = Start_Session(ctx); st != 0) {
      ctx.exit_code = Exit_From_Status(st);
      return;
    }
    Session& s = ctx.session;
    const int read = datafiles::NM1D_m11_Click(s, {o.path, {}});
    if (read != 0) {
      ctx.exit_code = Exit_From_Status(read);
      return;
    }
    if (s.Param.SMODE == 0) {
      std::cerr << "process: " << o.path << " holds a FID; its processing options are not available yet\n";
      ctx.exit_code = Exit_Refused;
      return;
    }
    const int written = Write_Output(s, o.out);
    if (written == 2) {
      std::cerr << "process: unknown output kind: " << o.out << "\n";
      ctx.exit_code = Exit_Usage;
      return;
    }
    if (o.json) {
      nlohmann::ordered_json j;
      j["read"] = o.path;
      j["file_class"] = s.File_Class;
      j["written"] = o.out;
      j["status"] = written;
      j["Spec_Points"] = s.Spec_Points;
      std::cout << j.dump(2) << "\n";
    }
    ctx.exit_code = Exit_From_Status(written);
  });
}

}  // namespace tevo::cli
