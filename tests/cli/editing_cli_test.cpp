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

// diff: the FID minus itself read through a slot is zero but for its last
// point (the slot's axis ends there); the same file shifted by half a ppm
// is not; a file that cannot be read stops it before anything is written.
TEST(EditingCli, DiffOfTheAspirinFidWithItself) {
  test::Temp_Dir dir;
  const std::string fid = test::Test_Data_File("bruker-data-test@1.0.0/data/unzipped/aspirin-1h/1/fid").string();
  const std::string home = (dir / "home").string();
  const auto largest = [&](const std::vector<std::string>& args) {
    EXPECT_EQ(test::Run_Cli(args).exit_code, 0);
    test::Quiet_Session back;
    EXPECT_EQ(datafiles::Read_Native(back.s, (dir / "d.tv1").string()), 0);
    // The file keeps the slot taken away: the scale of the comparison.
    float most = 0, full = 0;
    for (float y : back.s.Overlay[1].Slot_Y) full = std::max(full, std::fabs(y));
    for (int32_t i = 1; i + 1 < back.s.Spec_Points; ++i)
      most = std::max(most, std::fabs(back.s.Spec_Re(static_cast<std::size_t>(i))));
    return full > 0 ? most / full : 1.0f;
  };
  EXPECT_LT(largest({"--home", home, "diff", fid, "--minus", fid, "-o", (dir / "d.tv1").string()}), 1e-4);
  EXPECT_GT(largest({"--home", home, "diff", fid, "--minus", fid, "--shift", "0.5", "-o", (dir / "d.tv1").string()}),
            0.5);
  EXPECT_NE(test::Run_Cli({"--home", home, "diff", fid, "--minus", (dir / "none.dx").string(), "-o",
                           (dir / "e.tv1").string()})
                .exit_code,
            0);
  EXPECT_FALSE(fs::exists(dir / "e.tv1"));
}

}  // namespace
}  // namespace tevo
