// A relaxation series as a user runs it from the command line: 32 rows of
// 65536-point FIDs in a Bruker series folder, `tevo1d-cli relax` reading,
// transforming every row, taking the line's height per row and fitting the
// exponential. Timed end to end, process start included.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

constexpr int kRows = 32, kPoints = 65536;  // complex points per row
constexpr double kSfo1 = 600.2, kSw = 6000, kT1 = 1.3, kOffset = 900;  // MHz, Hz, s, Hz

void Write(const fs::path& p, const std::string& text) { std::ofstream(p, std::ios::binary) << text; }

// The series folder, written once: acquisition parameters, the row count,
// a pulse program that steps its delay list, the list, and the FIDs of one
// line at kOffset Hz recovering with kT1 from inversion.
fs::path Series() {
  static const fs::path dir = [] {
    const fs::path d = fs::temp_directory_path() / "tevo1d-relax-bench";
    fs::create_directories(d);
    std::ostringstream acqus;
    acqus << "##TITLE= Parameter file\n##JCAMPDX= 5.0\n##ORIGIN= Bruker BioSpin GmbH\n"
          << "##$BF1= " << kSfo1 << "\n##$SFO1= " << kSfo1 << "\n##$O1= 0\n##$SW_h= " << kSw
          << "\n##$SW= " << kSw / kSfo1 << "\n##$TD= " << 2 * kPoints
          << "\n##$BYTORDA= 0\n##$DTYPA= 0\n##$AQ_mod= 3\n##$NUC1= <1H>\n##$NS= 1\n##$VDLIST= <bench>\n##END=\n";
    Write(d / "acqus", acqus.str());
    Write(d / "acqu2s", "##TITLE= Parameter file\n##ORIGIN= Bruker BioSpin GmbH\n##$TD= " + std::to_string(kRows) +
                            "\n##END=\n");
    Write(d / "pulseprogram", "1 ze\n2 d1\n  p2 ph1\n  vd\n  p1 ph2\n  go=2 ph31\n  d11 wr #0 if #0 ivd zd\n"
                              "  lo to 1 times td1\nexit\n");
    std::string list;
    std::vector<double> delays;
    for (int r = 0; r < kRows; ++r) {
      delays.push_back(0.01 * std::pow(1.25, r));
      list += std::to_string(delays.back()) + "s\n";
    }
    Write(d / "vdlist", list);
    std::vector<int32_t> words(static_cast<std::size_t>(2 * kPoints));
    std::ofstream ser(d / "ser", std::ios::binary);
    for (int r = 0; r < kRows; ++r) {
      const double a = 1 - 2 * std::exp(-delays[static_cast<std::size_t>(r)] / kT1);
      for (int k = 0; k < kPoints; ++k) {
        const double t = k / kSw, e = 1e6 * a * std::exp(-t / 0.3);
        words[2 * static_cast<std::size_t>(k)] = static_cast<int32_t>(e * std::cos(2 * M_PI * kOffset * t));
        words[2 * static_cast<std::size_t>(k) + 1] = static_cast<int32_t>(e * std::sin(2 * M_PI * kOffset * t));
      }
      ser.write(reinterpret_cast<const char*>(words.data()), static_cast<std::streamsize>(words.size() * 4));
    }
    return d;
  }();
  return dir;
}

void BM_Relax_Cli_Series(benchmark::State& state) {
  const fs::path dir = Series();
  const double ppm = kOffset / kSfo1;
  const std::string cmd = std::string(TEVO_CLI_PROGRAM) + " --home " + (dir / "home").string() + " relax " +
                          dir.string() + " --peak " + std::to_string(ppm) + " --json > " + (dir / "out.json").string();
  for (auto _ : state)
    if (std::system(cmd.c_str()) != 0) state.SkipWithError("tevo1d-cli relax failed");
  state.counters["rows"] = kRows;
}
BENCHMARK(BM_Relax_Cli_Series)->Unit(benchmark::kMillisecond)->Iterations(3);

}  // namespace
