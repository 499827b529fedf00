// tevo1d-cli peaks, integrate and baseline run as programs on the Bruker
// aspirin FID: the JSON, the list files they write, the corrected spectrum
// and their usage errors.
#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>

#include "datafiles/native.h"
#include "datafiles/quiet_session.h"
#include "support/test_support.h"

namespace tevo {
namespace {

namespace fs = std::filesystem;

TEST(EditingCli, PeaksIntegrateAndBaselineOnTheAspirinFid) {
  ASSERT_TRUE(fs::exists(test::Cli_Program())) << "build the tevo1d-cli target first";
  test::Temp_Dir dir;
  const std::string fid = test::Test_Data_File("bruker-data-test@1.0.0/data/unzipped/aspirin-1h/1/fid").string();
  const std::string home = (dir / "home").string();

  // The strongest line is the CH3, 100 %; the list file holds the same count.
  auto peaks = test::Run_Cli({"--home", home, "peaks", fid, "--json", "-o", (dir / "a.red").string()});
  ASSERT_EQ(peaks.exit_code, 0);
  const auto pj = nlohmann::json::parse(peaks.out);
  ASSERT_GE(pj["count"].get<int>(), 10);
  double best = 0;
  for (const auto& p : pj["peaks"]) best = std::max(best, p["relative"].get<double>());
  EXPECT_DOUBLE_EQ(best, 100.0);
  EXPECT_NE(test::Read_Text(dir / "a.red").find("Data No.= " + std::to_string(pj["count"].get<int>()) + "\r\n"),
            std::string::npos);
  // A range keeps the search inside it: the CH3 near 2.29 ppm.
  peaks = test::Run_Cli({"--home", home, "peaks", fid, "--range", "2.5,2.0", "--json"});
  ASSERT_EQ(peaks.exit_code, 0);
  const auto in_range = nlohmann::json::parse(peaks.out)["peaks"];
  ASSERT_FALSE(in_range.empty());
  for (const auto& p : in_range) {
    EXPECT_LE(p["ppm"].get<double>(), 2.5);
    EXPECT_GE(p["ppm"].get<double>(), 2.0);
  }

  // Two aromatic protons and the CH3, the first worth 1.
  auto integ = test::Run_Cli({"--home", home, "integrate", fid, "--region", "7.598,7.468", "--region", "7.345,7.227",
                              "--region", "2.341,2.211", "--reference", "1=1", "--baseline", "auto", "--json", "-o",
                              (dir / "a.Ilist").string()});
  ASSERT_EQ(integ.exit_code, 0);
  const auto ij = nlohmann::json::parse(integ.out);
  ASSERT_EQ(ij["regions"].size(), 3u);
  EXPECT_DOUBLE_EQ(ij["regions"][0]["value"].get<double>(), 1.0);
  EXPECT_NEAR(ij["regions"][1]["value"].get<double>(), 1.0, 0.1);
  EXPECT_NEAR(ij["regions"][2]["value"].get<double>(), 3.0, 0.3);
  EXPECT_NE(test::Read_Text(dir / "a.Ilist").find("List of Integral Intensity\r\n"), std::string::npos);

  auto base = test::Run_Cli({"--home", home, "baseline", fid, "--auto", "--average", "8", "-o", (dir / "b.tv1").string()});
  ASSERT_EQ(base.exit_code, 0);
  test::Quiet_Session back;
  ASSERT_EQ(datafiles::Read_Native(back.s, (dir / "b.tv1").string()), 0);
  EXPECT_EQ(back.s.Spec_Points, 8192);

  // Usage errors: a malformed range or reference, an unknown output kind.
  EXPECT_EQ(test::Run_Cli({"--home", home, "peaks", fid, "--range", "7"}).exit_code, 2);
  EXPECT_EQ(test::Run_Cli({"--home", home, "integrate", fid, "--region", "1,0", "--reference", "2=1"}).exit_code, 2);
  EXPECT_EQ(test::Run_Cli({"--home", home, "baseline", fid, "--auto", "-o", (dir / "b.xyz").string()}).exit_code, 2);
}

}  // namespace
}  // namespace tevo
