// tevo1d-cli sample -o DIR: writes the program's own small synthetic data
// set, a 1H FID of 8192 complex points at 400 MHz, as a Bruker-style
// experiment folder (DIR/acqus and DIR/fid), and prints the path of the fid.
// Any reader test or demonstration can open it without real data.
#include <cmath>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <vector>

#include "commands.h"
#include "datafiles/decoders.h"

namespace tevo::cli {

namespace {

struct Sample_Line {
  double ppm;
  double height;
};

// Ethyl acetate-like lines in CDCl3 with TMS: a quartet, a singlet, a
// triplet, the solvent line and the reference, J = 7.1 Hz.
std::vector<Sample_Line> Sample_Lines() {
  const double j = 7.1 / 400.13;  // ppm
  std::vector<Sample_Line> lines = {{7.26, 0.3}, {2.04, 3.0}, {0.0, 0.5}};
  const double quartet[] = {1, 3, 3, 1}, triplet[] = {1, 2, 1};
  for (int k = 0; k < 4; ++k) lines.push_back({4.12 + (k - 1.5) * j, 0.5 * quartet[k]});
  for (int k = 0; k < 3; ++k) lines.push_back({1.26 + (k - 1) * j, 1.0 * triplet[k]});
  return lines;
}

int Write_Sample(const std::filesystem::path& dir) {
  // The carrier sits on the reference (0 ppm): a raw FID's axis is centred
  // on its carrier until the operator references it, so the lines then
  // show at their shifts straight away.
  constexpr double bf1 = 400.13, carrier_ppm = 0.0, sweep_hz = 8012.82, t2 = 0.3;
  constexpr int points = 8192;  // complex
  const double sfo1 = bf1 * (1 + carrier_ppm * 1e-6);
  std::error_code ec;
  std::filesystem::create_directories(dir, ec);
  std::ofstream acqus(dir / "acqus", std::ios::binary | std::ios::trunc);
  char sfo[64];
  std::snprintf(sfo, sizeof sfo, "%.9f", sfo1);
  acqus << "##TITLE= Parameter file, tevo1d sample\n"
           "##JCAMPDX= 5.0\n"
           "##DATATYPE= Parameter Values\n"
           "##ORIGIN= Bruker style parameters written by tevo1d\n"
           "##OWNER= tevo1d\n"
           "##$AQ_mod= 1\n##$BF1= 400.13\n##$BYTORDA= 0\n##$DATE= 1700000000\n"
           "##$DS= 0\n##$INSTRUM= <tevo1d>\n##$NS= 16\n##$NUC1= <1H>\n##$NUCLEUS= <off>\n"
           "##$PULPROG= <zg30>\n##$RG= 32\n##$SFO1= "
        << sfo << "\n##$SOLVENT= <CDCl3>\n##$SW_h= " << sweep_hz << "\n##$TD= " << 2 * points
        << "\n##$TE= 298\n##END=\n";
  if (!acqus) return -1;

  // Raw quadrature data as the instrument stores it: cos and sin of each
  // line's offset from the carrier, decaying with T2.
  const auto lines = Sample_Lines();
  std::vector<uint8_t> bytes;
  bytes.reserve(points * 8);
  for (int k = 0; k < points; ++k) {
    const double t = k / sweep_hz;
    double re = 0, im = 0;
    for (const Sample_Line& l : lines) {
      const double w = 2 * M_PI * (l.ppm - carrier_ppm) * bf1 * t;
      re += l.height * std::cos(w);
      im += l.height * std::sin(w);
    }
    const double decay = 1e6 * std::exp(-t / t2);
    datafiles::Append_LE_Int32(bytes, static_cast<int32_t>(std::lround(re * decay)));
    datafiles::Append_LE_Int32(bytes, static_cast<int32_t>(std::lround(im * decay)));
  }
  std::ofstream fid(dir / "fid", std::ios::binary | std::ios::trunc);
  fid.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  return fid ? 0 : -1;
}

}  // namespace

void Register_Sample(CLI::App& app, Context& ctx) {
  auto* cmd = app.add_subcommand("sample", "write the bundled synthetic 1H FID as a data folder");
  static std::string out;
  cmd->add_option("-o", out, "folder to write (acqus and fid)")->required();
  cmd->callback([&ctx] {
    const std::filesystem::path dir(out);
    if (Write_Sample(dir) != 0) {
      std::cerr << "sample: could not write " << out << "\n";
      ctx.exit_code = Exit_Failure;
      return;
    }
    std::cout << (dir / "fid").string() << "\n";
    ctx.exit_code = Exit_Good;
  });
}

}  // namespace tevo::cli
