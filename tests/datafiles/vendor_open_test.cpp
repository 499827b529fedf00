// Real instrument files through the open command: each finds its row of the
// routing table and its reader, FIDs reach the processing window, 2D files
// are refused, and truncated or damaged copies leave the former data set.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <tuple>
#include <vector>

#include "datafiles/open_file.h"
#include "datafiles/open_routes.h"
#include "datafiles/recognition.h"
#include "platform/ui.h"
#include "session/session.h"
#include "support/test_support.h"

namespace tevo::datafiles {
namespace {

namespace fs = std::filesystem;

std::string Data(const std::string& rel) { return test::Test_Data_File(rel).string(); }
std::string Bruker(const std::string& rel) {
  return Data("bruker-data-test@1.0.0/data/unzipped/" + rel);
}
std::string Jcamp(const std::string& name) { return Data("jcamp-data-test@0.2.1/data/" + name); }
std::string Jeol(const std::string& name) { return Data("jeol-data-test@0.5.2/data/" + name); }

struct Vendor_Open : ::testing::Test {
  test::Temp_Dir dir;
  platform::Scripted_Ui ui;
  Session s;
  int fid_window_calls = 0;
  Vendor_Open() {
    ui.quiet = true;
    s.ui = &ui;
    s.App_Path = dir.path().string();
    s.Log_Mode = -1;
  }
  // The open as the main window runs it, with a processing window that
  // accepts the FID as it is.
  int Open(const std::string& path) {
    Open_Request req{path, [this](Session&) {
                       ++fid_window_calls;
                       return std::string("OKX");
                     }};
    return NM1D_m11_Click(s, req);
  }
  std::string Route_Tag(const std::string& path) {
    Session probe;
    probe.ui = &ui;
    const Open_Route* route = Find_Route(Classify_File(probe, path));
    return route == nullptr ? "" : route->tag_1d;
  }
};

TEST_F(Vendor_Open, EachFormatFindsItsRouteAndReader) {
  struct Expected {
    std::string path, tag;
    bool fid;
    int32_t points;
    std::string nucleus;
    int index;
    float value;  // the point `index` of Fid_Re or Spec_Re, as the reader tests fix it
  };
  const std::vector<Expected> files = {
      // 16384 words of ##$TD: 8192 complex points; point 80 decoded from the
      // big-endian words less the mean of the tail.
      {Bruker("aspirin-1h/1/fid"), "BRUKER1", true, 8192, "1H", 80, 625967.4847f},
      {Bruker("aspirin-1h-processed/1/pdata/1/1r"), "BRUKER1R", false, 0, "1H", -1, 0},
      {Jcamp("aspirin-1h.dx"), "JCAMP1", false, 32768, "1H", 32767, -118793.f},
      {Jcamp("aspirin-1h.fid.dx"), "JCAMP1", true, 8192, "1H", -1, 0},
      {Jeol("EC_10m200u_400_298K_bzhou_qH-1-1.jdf"), "ECP1", true, 32768, "1H", -1, 0},
      {Jeol("phosphorus.jdf"), "ECP1", true, 32768, "31P", -1, 0},
  };
  for (const Expected& e : files) {
    SCOPED_TRACE(e.path);
    EXPECT_EQ(Route_Tag(e.path), e.tag);
    const int calls = fid_window_calls;
    ASSERT_EQ(Open(e.path), 0) << (ui.shown.empty() ? "" : ui.shown.back().text);
    EXPECT_EQ(fid_window_calls, calls + (e.fid ? 1 : 0));
    EXPECT_EQ(s.Is_Fid, e.fid ? 1 : 0);
    EXPECT_EQ(s.Is_Spectrum, e.fid ? 0 : 1);
    if (e.points > 0) EXPECT_EQ(e.fid ? s.Fid_Points : s.Spec_Points, e.points);
    EXPECT_GT(s.Spec_Points, 0);
    EXPECT_EQ(s.Param.OBNUC, e.nucleus);
    if (e.index >= 0) {
      const float v = e.fid ? s.Fid_Re(e.index) : s.Spec_Re(e.index);
      EXPECT_NEAR(v, e.value, std::max(1.0f, std::abs(e.value) * 1e-5f));
    }
    EXPECT_EQ(s.Open_Name, e.path);
    ASSERT_FALSE(s.settings.Recent_Files.empty());
    EXPECT_EQ(s.settings.Recent_Files[0], e.path);
  }
  EXPECT_TRUE(ui.shown.empty()) << ui.shown.front().text;
}

TEST_F(Vendor_Open, TwoDimensionalFilesAreRefusedAndTheFormerDataStay) {
  const std::string former = Bruker("aspirin-1h/1/fid");
  ASSERT_EQ(Open(former), 0);
  const float kept = s.Fid_Re(80);
  for (const std::string& path : {Jcamp("Rutin_3080ug200uL_DMSOd6_COSY_400MHz_JDX.jdx"),
                                  Jcamp("Rutin_3080ug200uL_DMSOd6_HSQC_400MHz_JDX.jdx"),
                                  Jeol("Rutin_3080ug200uL_DMSOd6_COSY_400MHz_Jeol.jdf"),
                                  Jeol("EC=8EC_2m200u_MeOD_bzhou21_20190328_HSQC-1-1.jdf")}) {
    SCOPED_TRACE(path);
    const std::size_t shown = ui.shown.size();
    EXPECT_EQ(Open(path), 1);
    ASSERT_EQ(ui.shown.size(), shown + 1);
    EXPECT_EQ(ui.shown.back().text, "2D Data !");
    EXPECT_EQ(ui.shown.back().title, "Dataエラー");
    EXPECT_EQ(s.Open_Name, former);
    EXPECT_EQ(s.Fid_Points, 8192);
    EXPECT_EQ(s.Fid_Re(80), kept);
  }
  // The processing window given up: the former data set comes back from
  // its work copy under its own name.
  Open_Request give_up{Jeol("phosphorus.jdf"), [](Session&) { return std::string(); }};
  EXPECT_EQ(NM1D_m11_Click(s, give_up), 1);
  EXPECT_EQ(s.Open_Name, former);
  EXPECT_EQ(s.Param.OBNUC, "1H");
  EXPECT_EQ(s.Spec_Points, 8192);
  EXPECT_NEAR(s.Observe_Frequency, 300.132250975, 1e-6);
}


TEST_F(Vendor_Open, BrukerFoldersMarkersAndTwoDimensionalSets) {
  // An experiment folder opens its fid, or pdata/1/1r when it has none.
  ASSERT_EQ(Open(Bruker("aspirin-1h/1")), 0);
  EXPECT_EQ(s.Is_Fid, 1);
  EXPECT_EQ(fs::path(s.Open_Name).filename(), "fid");
  ASSERT_EQ(Open(Bruker("aspirin-1h-processed/1")), 0);
  EXPECT_EQ(s.Is_Spectrum, 1);
  EXPECT_EQ(fs::path(s.Open_Name), fs::path(Bruker("aspirin-1h-processed/1/pdata/1/1r")));

  // A pulse program starting with "V" is no 2D mark in a Bruker folder.
  const fs::path v = dir / "v" / "1";
  fs::create_directories(v);
  for (const char* f : {"acqu", "acqus", "fid"}) fs::copy_file(Bruker(std::string("aspirin-1h/1/") + f), v / f);
  std::string acqus = test::Read_Text(v / "acqus");
  acqus.replace(acqus.find("##$PULPROG= <zg30>"), 18, "##$PULPROG= <Vzg30>");
  test::Write_Text(v / "acqus", acqus);
  ASSERT_EQ(Open((v / "fid").string()), 0);
  EXPECT_EQ(s.Param.EXMOD, "Vzg30");

  // A marker file beside "ser" or "2rr" names a 2D data set.
  const fs::path two = dir / "2d" / "1", two_proc = two / "pdata" / "1";
  fs::create_directories(two_proc);
  fs::copy_file(Bruker("aspirin-1h/1/acqus"), two / "acqus");
  fs::copy_file(Bruker("aspirin-1h-processed/1/pdata/1/procs"), two_proc / "procs");
  test::Write_Bytes(two / "ser", std::vector<uint8_t>(4096, 0));
  test::Write_Bytes(two_proc / "2rr", std::vector<uint8_t>(4096, 0));
  test::Write_Text(two / "Spec.BRUF", "BRUKER\r\n");
  test::Write_Text(two_proc / "Spec.BRUD", "BRUKER\r\n");
  for (const auto& [marker, tag, status] : {std::tuple{two / "Spec.BRUF", "BRU2F", 2},
                                             std::tuple{two_proc / "Spec.BRUD", "BRU2D", 6}}) {
    SCOPED_TRACE(marker);
    std::string path = marker.string();
    const Resolved_File r = Resolve_Data_File(s, path);
    EXPECT_EQ(r.tag, tag);
    EXPECT_EQ(r.status, status);
    EXPECT_EQ(Open(marker.string()), 1);
    EXPECT_EQ(ui.shown.back().text, "2D Data !");
    EXPECT_EQ(s.Param.EXMOD, "Vzg30");  // the former data stay
  }
}

// One vendor data set copied into the scratch folder so that its data file
// or its parameter file can be cut or damaged.
struct Vendor_Copy {
  std::string label;
  fs::path open;                    // what the open command is given
  fs::path data;                    // the file the cuts shorten
  std::vector<std::string> damage;  // header edits: "find=>replace" on `header`
  fs::path header;
  std::size_t data_end;  // the cut one byte short of the last data byte
};

TEST_F(Vendor_Open, TruncatedAndDamagedCopiesFailAndTheFormerDataStay) {
  const std::string former = Jcamp("aspirin-1h.dx");
  ASSERT_EQ(Open(former), 0);
  const int32_t kept_points = s.Spec_Points;
  const float kept_value = s.Spec_Re(1000);
  auto former_stays = [&] {
    EXPECT_EQ(s.Open_Name, former);
    EXPECT_EQ(s.Spec_Points, kept_points);
    EXPECT_EQ(s.Spec_Re(1000), kept_value);
  };
  // The open must fail with a message and leave the former data set; a
  // copy that opened after all is reported and the former one read again.
  auto refused = [&](const fs::path& path) {
    const std::size_t shown = ui.shown.size();
    if (Open(path.string()) == 0) {
      ADD_FAILURE() << "opened";
      ASSERT_EQ(Open(former), 0);
      return;
    }
    EXPECT_GT(ui.shown.size(), shown);
    former_stays();
  };

  const std::string cyclo = "cyclosporin_1h/cyclosporin_1h/1";
  const fs::path bru = dir / "bru" / "1", proc = bru / "pdata" / "1";
  fs::create_directories(proc);
  for (const char* f : {"acqus", "fid"}) fs::copy_file(Bruker(cyclo + "/" + f), bru / f);
  for (const char* f : {"procs", "1r", "1i"}) fs::copy_file(Bruker(cyclo + "/pdata/1/" + f), proc / f);
  fs::copy_file(Jcamp("aspirin-1h.dx"), dir / "cut.dx");
  fs::copy_file(Jeol("fluorine.jdf"), dir / "cut.jdf");
  const std::vector<Vendor_Copy> copies = {
      {"bruker fid", bru / "fid", bru / "fid",
       {"##$TD= 65536=>##$TD= 99999999", "##$TD= 65536=>##$TD= 0", "##$TD= 65536=>##$TD= -8",
        "##ORIGIN=>##ORIGXN"},
       bru / "acqus", 262144 - 1},
      {"bruker 1r", proc / "1r", proc / "1r",
       {"##$SI= 32768=>##$SI= 99999999", "##$SI= 32768=>##$SI= 0", "##$SF= 500.13=>##$SF= 0",
        "##ORIGIN=>##ORIGXN"},
       proc / "procs", 131072 - 1},
      {"jcamp", dir / "cut.dx", dir / "cut.dx",
       {"##DATA TABLE= (X++(R..R))=>##DATA TABLX= (X++(R..R))", "NMR SPECTRUM=>IR SPECTRUMX",
        "51b15668J327K79=>51b15668J3#7K79"},
       dir / "cut.dx", 324526 - 40},  // inside the last data line
      // The data block of 524288 bytes starts at 16384.
      {"jeol", dir / "cut.jdf", dir / "cut.jdf", {}, {}, 16384 + 524288 - 1},
  };

  for (const Vendor_Copy& c : copies) {
    SCOPED_TRACE(c.label);
    const auto whole = test::Read_Bytes(c.data);
    for (std::size_t cut : {std::size_t{0}, std::size_t{1}, std::size_t{7}, std::size_t{64},
                            std::size_t{1300}, whole.size() / 3, whole.size() / 2, c.data_end}) {
      SCOPED_TRACE(cut);
      test::Write_Bytes(c.data, {whole.begin(), whole.begin() + static_cast<long>(cut)});
      refused(c.open);
    }
    test::Write_Bytes(c.data, whole);
    if (c.header.empty()) continue;
    const std::string header = test::Read_Text(c.header);
    for (const std::string& edit : c.damage) {
      SCOPED_TRACE(edit);
      const std::size_t arrow = edit.find("=>");
      const std::string from = edit.substr(0, arrow), to = edit.substr(arrow + 2);
      std::string bad = header;
      const std::size_t at = bad.find(from);
      ASSERT_NE(at, std::string::npos);
      bad.replace(at, from.size(), to);
      test::Write_Text(c.header, bad);
      refused(c.open);
    }
    test::Write_Text(c.header, header);
  }

  // Bytes of the JEOL head overwritten one word at a time: whatever the
  // reader makes of it, it ends with a status, and a failure keeps the
  // former data set.
  const auto jeol = test::Read_Bytes(dir / "cut.jdf");
  for (std::size_t at = 0; at < 1400; at += 23) {
    SCOPED_TRACE(at);
    auto bad = jeol;
    for (std::size_t k = 0; k < 4; ++k) bad[at + k] = k == 3 ? 0x7f : 0xff;
    test::Write_Bytes(dir / "cut.jdf", bad);
    if (Open((dir / "cut.jdf").string()) == 0) {
      ASSERT_EQ(Open(former), 0);
    } else {
      former_stays();
    }
  }
}

}  // namespace
}  // namespace tevo::datafiles
