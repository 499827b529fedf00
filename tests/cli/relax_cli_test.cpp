// tevo1d-cli relax on the Bruker inversion-recovery series: the fit of each
// strong line against a least-squares optimum found independently, by a
// scan of k with A0 and B solved linearly at each step.
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <vector>

#include "datafiles/native.h"
#include "datafiles/native_sample.h"
#include "support/test_support.h"

namespace tevo {
namespace {

namespace fs = std::filesystem;

// The smallest sum of squares of A0 exp(-k t) + B over k from 0.001 to 10
// in steps of 0.0005, and the k that gives it.
std::pair<double, double> Scanned_Optimum(const std::vector<double>& t, const std::vector<double>& y) {
  std::pair<double, double> best{1e300, 0};
  const auto n = static_cast<double>(t.size());
  for (double k = 0.001; k < 10; k += 0.0005) {
    double se = 0, see = 0, sy = 0, sey = 0;
    for (std::size_t j = 0; j < t.size(); ++j) {
      const double e = std::exp(-k * t[j]);
      se += e, see += e * e, sy += y[j], sey += e * y[j];
    }
    const double det = see * n - se * se, a = (sey * n - se * sy) / det, b = (see * sy - se * sey) / det;
    double c = 0;
    for (std::size_t j = 0; j < t.size(); ++j) c += std::pow(a * std::exp(-k * t[j]) + b - y[j], 2);
    if (c < best.first) best = {c, k};
  }
  return best;
}

TEST(RelaxCli, InversionRecoveryLinesFitToTheLeastSquaresOptimum) {
  ASSERT_TRUE(fs::exists(test::Cli_Program())) << "build the tevo1d-cli target first";
  test::Temp_Dir dir;
  const std::string series =
      test::Test_Data_File("bruker-data-test@1.0.0/data/unzipped/inversionRecovery2D/inversionRecovery2D/1").string();
  const std::string home = (dir / "home").string();
  for (const char* ppm : {"0.857", "0.844", "0.729", "0.718"}) {
    SCOPED_TRACE(ppm);
    const auto run = test::Run_Cli({"--home", home, "relax", series, "--peak", ppm, "--json"});
    ASSERT_EQ(run.exit_code, 0);
    const auto j = nlohmann::json::parse(run.out);
    std::vector<double> t, y;
    for (const auto& p : j["series"]) t.push_back(p["t"].get<double>()), y.push_back(p["y"].get<double>());
    ASSERT_EQ(t.size(), 10u);
    EXPECT_TRUE(j["converged"].get<bool>());
    EXPECT_LT(y.front(), 0);  // the shortest delay, still inverted
    const auto [criterion, k] = Scanned_Optimum(t, y);
    EXPECT_NEAR(j["k"].get<double>(), k, 0.002 * k + 0.0005);
    EXPECT_LE(j["criterion"].get<double>(), criterion * 1.001 + 1e-7);
  }
  // A held k stays; a file that is no series and a missing choice are refused.
  auto fixed = test::Run_Cli({"--home", home, "relax", series, "--peak", "0.857", "--fix", "k=2", "--json"});
  ASSERT_EQ(fixed.exit_code, 0);
  EXPECT_DOUBLE_EQ(nlohmann::json::parse(fixed.out)["k"].get<double>(), 2.0);
  const std::string fid = test::Test_Data_File("bruker-data-test@1.0.0/data/unzipped/aspirin-1h/1/fid").string();
  EXPECT_EQ(test::Run_Cli({"--home", home, "relax", fid, "--peak", "2.3"}).exit_code, 1);
  EXPECT_EQ(test::Run_Cli({"--home", home, "relax", series}).exit_code, 2);
  EXPECT_EQ(test::Run_Cli({"--home", home, "relax", series, "--peak", "1", "--fix", "T=3"}).exit_code, 2);
}

// Array native files built here: twelve rows of one Lorentzian line whose
// height follows a known law in the delay. The region sum over the whole
// spectrum is proportional to the height, so the fit must return T.
TEST(RelaxCli, ArrayFilesOfKnownRelaxationGiveTBack) {
  test::Temp_Dir dir;
  struct Law {
    const char* kind;
    double a0, b, T;
  };
  for (const Law& law : {Law{"inversion recovery", -2, 1, 1.3}, Law{"saturation recovery", -1, 1, 0.45},
                         Law{"T2 decay", 1, 0, 2.2}}) {
    SCOPED_TRACE(law.kind);
    platform::Scripted_Ui ui;
    Session s;
    test::Quiet_Session(s, ui);
    test::Fill_Sample_Session(s);
    s.Array_Rows = 12;
    s.Array_Sources.clear();
    s.Array_Row_Names.clear();
    s.Peaks.clear();
    s.Integrals.clear();
    Alloc_Point_Arrays(s, s.Param.POINT);
    s.Delay_List.clear();
    s.Delay_Raw.clear();
    for (int32_t r = 0; r < s.Array_Rows; ++r) {
      const double t = 0.02 * std::pow(1.6, r);
      s.Delay_List.push_back(static_cast<float>(t));
      s.Delay_Raw.push_back(static_cast<float>(t));
      const double h = 1000 * (law.a0 * std::exp(-t / law.T) + law.b);
      for (int32_t i = 0; i < s.Param.POINT; ++i) s.Spec_Re(i, r) = static_cast<float>(h / (1 + std::pow((i - 500) / 4.0, 2)));
    }
    const std::string path = (dir / "series.tv1").string();
    ASSERT_EQ(datafiles::Write_Native(s, path), 0);
    const auto run = test::Run_Cli({"--home", (dir / "home").string(), "relax", path, "--region", "-1000,1000", "--json"});
    ASSERT_EQ(run.exit_code, 0);
    const auto j = nlohmann::json::parse(run.out);
    EXPECT_TRUE(j["converged"].get<bool>());
    EXPECT_NEAR(1.0 / j["k"].get<double>(), law.T, 0.01 * law.T);
  }
}

}  // namespace
}  // namespace tevo
