// tevo1d-cli process, run as a program on a real FID: the native file, the
// ASCII export and both JCAMP-DX exports hold the same spectrum, and an
// output name of no known kind is a usage error that lists the kinds.
#include <gtest/gtest.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <filesystem>
#include <sstream>
#include <string>

#include "datafiles/jcamp.h"
#include "datafiles/native.h"
#include "datafiles/quiet_session.h"
#include "support/test_support.h"

namespace tevo {
namespace {

namespace fs = std::filesystem;

float Parse_Float(const std::string& text) {
  float v = NAN;
  std::from_chars(text.data(), text.data() + text.size(), v);
  return v;
}

TEST(Process, TextAndJcampOutputsHoldTheSpectrumOfTheNativeFile) {
  const fs::path cli = test::Cli_Program();
  ASSERT_TRUE(fs::exists(cli)) << "build the tevo1d-cli target first: " << cli;
  test::Temp_Dir dir;
  const fs::path fid = test::Test_Data_File("bruker-data-test@1.0.0/data/unzipped/aspirin-1h/1/fid");
  auto process = [&](const std::string& out) {
    return test::Run_Command(test::Quoted(cli) + " --home " + test::Quoted(dir / "home") + " process " +
                             test::Quoted(fid) + " -o " + test::Quoted(dir / out) + " 2>" +
                             test::Quoted(dir / "stderr.txt"));
  };
  for (const char* out : {"x.tv1", "x.txt", "x.dx", "x.jdx"}) ASSERT_EQ(process(out), 0) << out;
  EXPECT_EQ(process("x.xyz"), 2);
  EXPECT_NE(test::Read_Text(dir / "stderr.txt").find(".tv1 .als .dx .jdx .txt .dat .asc"), std::string::npos);
  EXPECT_FALSE(fs::exists(dir / "x.xyz"));

  test::Quiet_Session native;
  ASSERT_EQ(datafiles::Read_Native(native.s, (dir / "x.tv1").string()), 0);
  const Session& s = native.s;
  const int32_t n = s.Spec_Points;
  ASSERT_GE(n, 8192);

  // The text: "ppm, real,imaginary" from the highest ppm down, each number
  // printed to read back to the same real32.
  std::istringstream text(test::Read_Text(dir / "x.txt"));
  std::string line;
  int32_t lines = 0, apart = 0;
  while (std::getline(text, line)) {
    ASSERT_FALSE(line.empty());
    ASSERT_EQ(line.back(), '\r');
    const std::size_t a = line.find(", "), b = line.find(',', a + 2);
    ASSERT_NE(b, std::string::npos) << line;
    const auto i = static_cast<std::size_t>(n - 1 - lines);
    apart += Parse_Float(line.substr(0, a)) != s.Spec_Axis[i] ||
             Parse_Float(line.substr(a + 2, b - a - 2)) != s.Spec_Re(i) ||
             Parse_Float(line.substr(b + 1, line.size() - b - 2)) != s.Spec_Im(i);
    ++lines;
  }
  EXPECT_EQ(lines, n);
  EXPECT_EQ(apart, 0);

  // JCAMP-DX: integers of 4194304 to the largest value, DIF-packed (compact)
  // or with the imaginary page (extended), read by the program's reader.
  float m = 0;
  for (int32_t i = 0; i < n; ++i) m = std::max(m, std::fabs(s.Spec_Re(i)));
  const double half_step = 0.5 * m / 4194304.0;
  for (const char* out : {"x.dx", "x.jdx"}) {
    SCOPED_TRACE(out);
    const bool extended = std::string(out) == "x.jdx";
    test::Quiet_Session back;
    ASSERT_EQ(datafiles::RDJ(back.s, (dir / out).string()), 0);
    ASSERT_EQ(back.s.Spec_Points, n);
    double worst = 0, worst_im = 0, worst_axis = 0;
    for (int32_t i = 0; i < n; ++i) {
      const double tol = half_step + std::fabs(s.Spec_Re(i)) * 1e-7;
      worst = std::max(worst, std::fabs(back.s.Spec_Re(i) - s.Spec_Re(i)) / tol);
      if (extended) worst_im = std::max(worst_im, std::fabs(back.s.Spec_Im(i) - s.Spec_Im(i)) / (half_step + std::fabs(s.Spec_Im(i)) * 1e-7));
      worst_axis = std::max(worst_axis, std::fabs(double(back.s.Spec_Axis[i]) - s.Spec_Axis[i]));
    }
    EXPECT_LE(worst, 1.0);
    EXPECT_LE(worst_im, 1.0);
    EXPECT_LT(worst_axis, 1e-4);
  }
}

}  // namespace
}  // namespace tevo
