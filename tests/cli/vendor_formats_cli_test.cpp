// The command-line tool on the vendor families read from built files and
// the CSV import:
// `info` and `process` on a file built for each family, and `info` on every
// damaged copy, which must end with a refusal or failure while the tool's
// peak memory stays under 100 MB.
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "support/test_support.h"
#include "support/vendor_files.h"

namespace tevo::test {
namespace {

namespace fs = std::filesystem;

// The tool with "--home HOME" in front of `args`.
Cli_Result Run_Home(const fs::path& home, std::vector<std::string> args) {
  args.insert(args.begin(), {"--home", home.string()});
  return Run_Cli(args);
}

struct Family {
  std::string name;
  std::function<Built_File(const fs::path&)> build;
  std::string file_class;
  int smode;
  int32_t fid_points;
  int32_t rows;
  std::string nucleus;
};

Vendor_Spec Spectrum() {
  Vendor_Spec s;
  s.spectrum = true;
  return s;
}
Vendor_Spec Rows(int32_t rows) {
  Vendor_Spec s;
  s.rows = rows;
  return s;
}

std::vector<Family> Families() {
  return {
      {"aspect", [](const fs::path& f) { return Build_Msl(f, {}); }, ".MSL", 0, 1024, 1, "1H"},
      {"ge_omega", [](const fs::path& f) { return Build_Ge(f, Rows(2)); }, ".FID", 0, 1024, 2, "1H"},
      {"chemagnetics", [](const fs::path& f) { return Build_Cmx(f, Rows(3)); }, ".CMX", 0, 1024, 3, "1H"},
      {"nuts_type1", [](const fs::path& f) { return Build_Nuts(f, {}, 1); }, ".NUT", 0, 1024, 1, "1H"},
      {"nuts_type2", [](const fs::path& f) { return Build_Nuts(f, Spectrum(), 2); }, ".NUT", 1, 1024, 1, "1H"},
      {"nuts_type3", [](const fs::path& f) { return Build_Nuts(f, {}, 3); }, ".NUT", 0, 1024, 1, "1H"},
      {"mac", [](const fs::path& f) { return Build_Mac(f, Spectrum()); }, ".IMPORT", 1, 1024, 1, "1H"},
      {"csv", [](const fs::path& f) { return Build_Csv(f, {}); }, ".CSV", 0, 1024, 1, "1H"},
      {"varian_fid", [](const fs::path& f) { return Build_Varian(f, Rows(3)); }, "", 0, 1024, 3, "1H"},
      {"varian_data", [](const fs::path& f) { return Build_Varian(f, Spectrum()); }, "", 1, 1024, 1, "1H"},
      {"jeol_ex_keyed", [](const fs::path& f) { return Build_Ex(f, Rows(2), false); }, ".GXD", 0, 1024, 2, "1H"},
      {"jeol_ex_long", [](const fs::path& f) { return Build_Ex(f, Spectrum(), true); }, ".GXD", 1, 1024, 1, "1H"},
      {"jeol_alpha", [](const fs::path& f) { return Build_Alpha(f, {}, false); }, ".ALP", 0, 1024, 1, "1H"},
      {"jeol_alpha_long", [](const fs::path& f) { return Build_Alpha(f, Spectrum(), true); }, ".ALP", 1, 1024, 1, "1H"},
      {"jeol_lambda", [](const fs::path& f) { return Build_Lambda(f, {}); }, ".LAM", 0, 1024, 1, "1H"},
  };
}

struct Cli_Family : ::testing::TestWithParam<Family> {};

TEST_P(Cli_Family, InfoAndProcess) {
  ASSERT_TRUE(fs::exists(Cli_Program())) << "build the tevo1d-cli target first";
  const Family& f = GetParam();
  Temp_Dir dir;
  const Built_File built = f.build(dir / f.name);

  const Cli_Result info = Run_Home(dir / "home", {"info", built.Open().string(), "--json"});
  ASSERT_EQ(info.exit_code, 0) << info.out;
  const auto j = nlohmann::json::parse(info.out);
  EXPECT_EQ(j["file_class"], f.file_class);
  EXPECT_EQ(j["read_status"], 0);
  EXPECT_EQ(j["SMODE"], f.smode);
  EXPECT_EQ(j["Fid_Points"], f.fid_points);
  EXPECT_EQ(j["Array_Rows"], f.rows);
  EXPECT_EQ(j["params"]["OBNUC"], f.nucleus);
  EXPECT_FLOAT_EQ(j["params"]["FREQU"].get<float>(), 8000);

  const fs::path out = dir / (f.name + ".tv1");
  const Cli_Result process = Run_Home(dir / "home", {"process", built.Open().string(), "-o", out.string()});
  EXPECT_EQ(process.exit_code, 0);
  EXPECT_GT(fs::file_size(out), 8u * 1024);
}

INSTANTIATE_TEST_SUITE_P(Vendors, Cli_Family, ::testing::ValuesIn(Families()),
                         [](const auto& info) { return info.param.name; });

TEST(Cli_Damaged, EveryCopyEndsWithAStatusUnder100MB) {
  ASSERT_TRUE(fs::exists(Cli_Program())) << "build the tevo1d-cli target first";
  Temp_Dir dir;
  long peak = 0;
  int copies = 0;
  for (const Family& f : Families()) {
    const Built_File built = f.build(dir / f.name);
    for (const fs::path& bad : Damaged_Copies(built, dir / "damaged")) {
      SCOPED_TRACE(bad);
      const Cli_Result r = Run_Home(dir / "home", {"info", bad.string(), "--json"});
      // A cut keyed CSV may still read the points before the cut.
      if (f.name != "csv") EXPECT_NE(r.exit_code, 0) << r.out;
      EXPECT_TRUE(r.exit_code == 0 || r.exit_code == 1 || r.exit_code == 3) << r.exit_code;
      EXPECT_GT(r.max_rss_kb, 0);
      EXPECT_LT(r.max_rss_kb, 100 * 1024);
      peak = std::max(peak, r.max_rss_kb);
      ++copies;
    }
  }
  RecordProperty("damaged_copies", copies);
  RecordProperty("peak_kb", static_cast<int>(peak));
  std::printf("%d damaged copies, largest peak resident set %ld kB\n", copies, peak);
}

}  // namespace
}  // namespace tevo::test

namespace tevo::test {
namespace {

TEST(Cli_Render, StackDrawsAnArrayAndRefusesASingleRow) {
  ASSERT_TRUE(fs::exists(Cli_Program())) << "build the tevo1d-cli target first";
  Temp_Dir dir;
  const fs::path keep = fs::read_symlink("/proc/self/exe").parent_path() / "screenshots";
  fs::create_directories(keep);
  const fs::path png = keep / "cli_varian_stack.png";
  fs::remove(png);
  const Built_File rows = Build_Varian(dir / "rows", Rows(3));
  const Cli_Result r = Run_Home(dir / "home", {"render", rows.Open().string(), "--stack", "--ratio", "0.2,0.4",
                                               "--size", "800x500", "-o", png.string()});
  EXPECT_EQ(r.exit_code, 0) << r.out;
  EXPECT_GT(fs::file_size(png), 2000u);
  const Built_File one = Build_Varian(dir / "one", Spectrum());
  EXPECT_EQ(Run_Home(dir / "home", {"render", one.Open().string(), "--stack", "-o", (dir / "x.png").string()}).exit_code, 1);
  EXPECT_EQ(Run_Home(dir / "home", {"render", rows.Open().string(), "--stack", "--ratio", "1.5,0", "-o",
                                    (dir / "y.png").string()}).exit_code, 2);
}

}  // namespace
}  // namespace tevo::test
