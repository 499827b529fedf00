// tevo1d-cli info PATH [--json]: what recognition makes of a file (class,
// sniff tag, kind, status) and, where the class has a reader and the data
// are 1D, the parameters of the data set as read.
#include <nlohmann/json.hpp>
#include <iostream>

#include "commands.h"
#include "datafiles/open_file.h"

namespace tevo::cli {

namespace {

nlohmann::ordered_json Params_Json(const Data_Param& p) {
  nlohmann::ordered_json j;
  j["OBNUC"] = p.OBNUC;
  j["OBFRQ"] = p.OBFRQ;
  j["OBSET"] = p.OBSET;
  j["FREQU"] = p.FREQU;
  j["POINT"] = p.POINT;
  j["RESOL"] = p.RESOL;
  j["SCANS"] = p.SCANS;
  j["SLVNT"] = p.SLVNT;
  j["EXMOD"] = p.EXMOD;
  j["COMNT"] = p.COMNT;
  j["DATIM"] = p.DATIM;
  j["SMEXR"] = p.SMEXR;
  j["SMTMS"] = p.SMTMS;
  j["SMODE"] = p.SMODE;
  j["ACQTM"] = p.ACQTM;
  j["PD"] = p.PD;
  j["IRNUC"] = p.IRNUC;
  j["CTEMP"] = p.CTEMP;
  j["Instrument_Name"] = p.Instrument_Name;
  j["Data_File"] = p.Data_File;
  j["Observe_Text"] = p.Observe_Text;
  return j;
}

void Print_Plain(const nlohmann::ordered_json& j, const std::string& indent = "") {
  for (const auto& [key, value] : j.items()) {
    if (value.is_object()) {
      std::cout << indent << key << ":\n";
      Print_Plain(value, indent + "  ");
    } else {
      std::cout << indent << key << " = " << (value.is_string() ? value.get<std::string>() : value.dump()) << "\n";
    }
  }
}

}  // namespace

void Register_Info(CLI::App& app, Context& ctx) {
  auto* cmd = app.add_subcommand("info", "recognise a data file and print its parameters");
  static std::string path;
  static bool json = false;
  cmd->add_option("PATH", path, "data file")->required();
  cmd->add_flag("--json", json, "print as JSON");
  cmd->callback([&ctx] {
    if (int st = Start_Session(ctx); st != 0) {
      ctx.exit_code = Exit_From_Status(st);
      return;
    }
    Session& s = ctx.session;
    std::string data_path = path;
    const datafiles::Resolved_File resolved = datafiles::Resolve_Data_File(s, data_path);
    const datafiles::Recognition& r = resolved.recognition;
    const datafiles::Open_Route* route = datafiles::Find_Route(r);

    // Read a 1D data set whose class has a reader.
    int read_status = 1;
    bool read = false;
    if (route != nullptr && route->read != nullptr && (resolved.status == 0 || resolved.status == 1)) {
      read = true;
      read_status = datafiles::Read_Routed(s, r, *route);
    }

    nlohmann::ordered_json j;
    j["path"] = data_path;
    j["status"] = resolved.status;
    j["tag"] = resolved.tag;
    j["file_class"] = r.file_class;
    j["sniff"] = r.sniff.tag;
    j["kind"] = resolved.kind;
    j["accepted"] = datafiles::Class_Accepted(r);
    j["reader"] = route != nullptr && route->read != nullptr;
    if (read) j["read_status"] = read_status;
    if (read && read_status == 0) {
      j["SMODE"] = s.Param.SMODE;
      j["Array_Rows"] = s.Array_Rows;
      j["Fid_Points"] = s.Fid_Points;
      j["Spec_Points"] = s.Spec_Points;
      j["Observe_Frequency"] = s.Observe_Frequency;
      j["Spectrum_Frequency"] = s.Spectrum_Frequency;
      j["params"] = Params_Json(s.Param);
    }
    if (json)
      std::cout << j.dump(2) << "\n";
    else
      Print_Plain(j);

    if (resolved.status < 0 || (read && read_status < 0))
      ctx.exit_code = Exit_Failure;
    else if (read && read_status != 0)
      ctx.exit_code = Exit_Refused;
    else
      ctx.exit_code = Exit_Good;
  });
}

}  // namespace tevo::cli
