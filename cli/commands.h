// The sub-commands of tevo1d-cli. Each lives in its own file and registers
// itself on the application; main() only lists them.
#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <string>

#include "session/session.h"
#include "signal/fid_processing.h"

namespace tevo::cli {

// Exit codes of the tool: 0 good, 1 refused (the program's own message on
// stderr), 2 usage, 3 run-time failure.
inline constexpr int Exit_Good = 0;
inline constexpr int Exit_Refused = 1;
inline constexpr int Exit_Usage = 2;
inline constexpr int Exit_Failure = 3;

// What every command shares: the --home folder and the session.
struct Context {
  std::string home;  // sets App_Path; empty: the executable's folder rule
  Session session;
  bool started = false;  // Start_Session claimed a work marker
  int exit_code = Exit_Good;
};

// Maps a core status word (0 good, 1 refused, -1 failure) to an exit code.
inline int Exit_From_Status(int status) {
  return status == 0 ? Exit_Good : status > 0 ? Exit_Refused : Exit_Failure;
}

// Runs the start-up of the program without a window (no user question: the
// latest user or the common settings). Returns a core status word.
int Start_Session(Context& ctx);
// Removes this run's work marker and temporaries (settings are not written).
void End_Session(Context& ctx);

// Starts the session, reads PATH through the open command and processes a
// FID by `req` (the processing window's defaults when empty), which `settle`
// may change from what was read. Returns an exit code; `processed` says
// whether a FID was transformed.
using Settle_Fn = std::function<void(const Session&, signal::Process_Request&)>;
int Open_Data(Context& ctx, const std::string& path, const signal::Process_Request& req = {},
              signal::Process_Report* report = nullptr, bool* processed = nullptr, const Settle_Fn& settle = {});

// The output kinds of `process` by extension (.tv1 .als .dx .jdx .txt .dat
// .asc): whether OUT names one, and writing the session as it (a core status).
bool Known_Output(const std::string& out);
int Write_Output(Session& s, const std::string& out);
// Known_Output, or the usage message of `command` naming the known kinds.
bool Output_Usable(const std::string& out, const char* command);

// Open_Data with the defaults, and a spectrum wanted in PATH, shown whole
// (display arrays and the view after load) as the editing modes see it.
// Returns an exit code; the messages name `command`.
int Open_Spectrum(Context& ctx, const std::string& path, const char* command);

// "LEFT,RIGHT" in ppm; false for anything else.
bool Parse_Ppm_Range(const std::string& text, float& left, float& right);

void Register_Settings(CLI::App& app, Context& ctx);
void Register_Info(CLI::App& app, Context& ctx);
void Register_Process(CLI::App& app, Context& ctx);
void Register_Render(CLI::App& app, Context& ctx);
void Register_List(CLI::App& app, Context& ctx);
void Register_Sample(CLI::App& app, Context& ctx);
void Register_Peaks(CLI::App& app, Context& ctx);
void Register_Integrate(CLI::App& app, Context& ctx);
void Register_Baseline(CLI::App& app, Context& ctx);
void Register_Diff(CLI::App& app, Context& ctx);
void Register_Relax(CLI::App& app, Context& ctx);
void Register_Deconvolve(CLI::App& app, Context& ctx);

}  // namespace tevo::cli
