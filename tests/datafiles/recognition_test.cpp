// Recognition of files built byte by byte: the sniff of the first bytes, the
// class rules of the name before and after it, acceptance, twin pairs and
// the routing table.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "datafiles/decoders.h"
#include "datafiles/recognition.h"
#include "datafiles/user_extensions.h"
#include "platform/ui.h"
#include "session/session.h"
#include "support/test_support.h"

namespace tevo::datafiles {
namespace {

using test::Temp_Dir;
using test::Write_Bytes;
using test::Write_Text;

// `head` at offset 0 of a file of `size` bytes (zero filled).
std::vector<uint8_t> Bytes_With(const std::string& head, size_t size = 600) {
  std::vector<uint8_t> b(std::max(size, head.size()), 0);
  std::copy(head.begin(), head.end(), b.begin());
  return b;
}

void Put_Text(std::vector<uint8_t>& b, size_t at, const std::string& t) { std::copy(t.begin(), t.end(), b.begin() + at); }

struct Fixture : ::testing::Test {
  Temp_Dir dir;
  platform::Scripted_Ui ui;
  Session s;
  Fixture() {
    ui.quiet = true;
    s.ui = &ui;
    s.App_Path = dir.path().string();
  }
  std::string File(const std::string& name, const std::vector<uint8_t>& bytes) {
    const auto p = dir / name;
    std::filesystem::create_directories(p.parent_path());
    Write_Bytes(p, bytes);
    return p.string();
  }
  std::string Sniff(const std::vector<uint8_t>& bytes) { return RDMode(s, File("sniff.bin", bytes)).tag; }
  std::string Class_Of(const std::string& path) { return Classify_File(s, path).file_class; }
};

using Sniffing = Fixture;

TEST_F(Sniffing, EveryBannerOfTheTable) {
  EXPECT_EQ(Sniff(Bytes_With("JEOL.NMR")), "ECP");
  auto tv = Bytes_With(std::string("TV NMR Ver.3.00\0", 16) + "1");
  EXPECT_EQ(Sniff(tv), "TEV1");
  tv[16] = '2';
  EXPECT_EQ(Sniff(tv), "TEV2");

  // Version 4: the int32 at 516 tells 1D (below 257) from 2D.
  for (const char* banner : {"TV NMR Ver.4.00", "TV NMR Ver.4.01"}) {
    auto v4 = Bytes_With(banner);
    Put_LE_Int32(v4, 516, 256);
    EXPECT_EQ(Sniff(v4), "TEVX_1") << banner;
    Put_LE_Int32(v4, 516, 257);
    EXPECT_EQ(Sniff(v4), "TEVX_2") << banner;
  }

  auto alice0 = Bytes_With("");
  Put_Text(alice0, 82, "VEX NMR VERSION 1.00");
  EXPECT_EQ(Sniff(alice0), "ALICE");
  auto alice1 = Bytes_With("");
  Put_Text(alice1, 258, "VEX NMR VERSION 1.01");
  EXPECT_EQ(Sniff(alice1), "ALICE");
  // Each version at its own place only.
  auto misplaced = Bytes_With("");
  Put_Text(misplaced, 82, "VEX NMR VERSION 1.01");
  EXPECT_EQ(Sniff(misplaced), "");

  EXPECT_EQ(Sniff(Bytes_With("JEOLUSF001")), "LAMBDA");
  EXPECT_EQ(Sniff(Bytes_With("NFT1DT0001")), "ALPHA");
  EXPECT_EQ(Sniff(Bytes_With("\x01\x02\x03\x04")), "NUTS Type1,2");
  EXPECT_EQ(Sniff(Bytes_With("\x04\x03\x02\x01")), "");
  EXPECT_EQ(Sniff(Bytes_With("\x47\x84\xF5")), "ASPECT");
  EXPECT_EQ(Sniff(Bytes_With("$CSVSTART\r\n1,2\r\n", 400)), "CSV TYPE 1");
}

TEST_F(Sniffing, LabelScanAndNumberText) {
  auto padded = [](std::string t) {
    while (t.size() < 400) t += "1 2 3 4 5 6 7 8\r\n";
    return std::vector<uint8_t>(t.begin(), t.end());
  };
  // Plain JCAMP-DX stays untagged: the scan ends at the first data line.
  EXPECT_EQ(Sniff(padded("##TITLE=x\r\n##JCAMP-DX=5.00\r\n$$ comment\r\n##XYDATA=(X++(Y..Y))\r\n")), "");
  EXPECT_EQ(Sniff(padded("##TITLE=x\r\n$$ x\n##JCAMP-DXB=1\r\n")), "NUTS Type3");
  EXPECT_EQ(Sniff(padded("$$ first\r##jcamp-dxb=1\r\n")), "NUTS Type3");
  // The binary label after a data line is never reached.
  EXPECT_EQ(Sniff(padded("##TITLE=x\r\n1 2\r\n##JCAMP-DXB=1\r\n")), "");

  // Number-only text: the first token, after leading blanks, up to a blank
  // or a comma, shorter than 10 characters.
  EXPECT_EQ(Sniff(padded("  -3.25e2, 7\r\n")), "CSV TYPE 0");
  EXPECT_EQ(Sniff(padded("12\t7\r\n")), "CSV TYPE 0");
  EXPECT_EQ(Sniff(padded("1.23456789 7\r\n")), "");  // 10 characters
  EXPECT_EQ(Sniff(padded("\t1.0 2.0\r\n")), "");  // byte 0 below 32
  EXPECT_EQ(Sniff(padded("x1.0 2.0\r\n")), "");
}

TEST_F(Sniffing, ShortFilesAreMarkersOnly) {
  EXPECT_EQ(RDMode(s, File("empty", {})).tag, "");
  EXPECT_EQ(RDMode(s, File("empty", {})).status, 0);
  // 300 bytes: a marker file whatever follows the word; 301: not.
  EXPECT_EQ(Sniff(Bytes_With("BRUKER 1D", 300)), "BRUKER");
  EXPECT_EQ(Sniff(Bytes_With("Bruker", 300)), "BRUKER");
  EXPECT_EQ(Sniff(Bytes_With("BRUKER", 301)), "");
  EXPECT_EQ(Sniff(Bytes_With("varian 1D\r\n", 11)), "VARIAN");
  // A short file is tested for the markers and nothing else.
  EXPECT_EQ(Sniff(Bytes_With("JEOL.NMR", 300)), "");
  EXPECT_EQ(Sniff(Bytes_With("12 34\r\n", 7)), "");

  // A file that can't be read: status -1 after the file error message.
  const auto r = RDMode(s, (dir / "missing.tv1").string());
  EXPECT_EQ(r.status, -1);
  ASSERT_FALSE(ui.shown.empty());
  EXPECT_NE(ui.shown.back().text.find("RDMode/RDW"), std::string::npos);
}

using Classing = Fixture;

TEST_F(Classing, CompanionFilesDecideBrukerAndGe) {
  const auto body = Bytes_With("", 1000);
  const auto fid = File("a/x.fid", body);
  EXPECT_EQ(Class_Of(fid), ".FID");  // no twin: a GE Omega file
  File("a/x.aqs", Bytes_With("##ORIGIN= Bruker", 50));
  EXPECT_EQ(Class_Of(fid), ".BRUA");
  // An empty companion does not count for .1r and .fid.
  const auto onr = File("b/y.1r", body);
  File("b/y.fqs", {});
  EXPECT_EQ(Class_Of(onr), ".1R");
  File("b/y.fqs", Bytes_With("x", 10));
  EXPECT_EQ(Class_Of(onr), ".BRUP");
  EXPECT_EQ(Class_Of(File("c/z.2rr", body)), ".2RR");
  File("c/z.FQS", Bytes_With("x", 10));  // either case
  EXPECT_EQ(Class_Of((dir / "c/z.2rr").string()), ".BRUP2");
  File("d/w.aqs", Bytes_With("x", 10));
  EXPECT_EQ(Class_Of(File("d/w.ser", body)), ".BRUA2");
  // Contents come first: NUTS bytes beside a twin still make a NUTS file.
  EXPECT_EQ(Class_Of(File("a/n.fid", Bytes_With("\x01\x02\x03\x04"))), ".NUT");
}

TEST_F(Classing, MarkerFilesPointIntoRawFolders) {
  const auto body = Bytes_With("", 1000);
  const auto marker = Bytes_With("VARIAN 1D\r\n", 11);
  // Varian: fid, then data, then phasefile.
  File("v1/fid", body);
  File("v1/data", body);
  auto r = Classify_File(s, File("v1/Spec.VarF", marker));
  EXPECT_EQ(r.file_class, ".VARF");
  EXPECT_EQ(std::filesystem::path(r.path).filename(), "fid");
  EXPECT_EQ(s.File_Class, ".VARF");
  EXPECT_EQ(s.Data_Folder, (dir / "v1").string());
  File("v2/phasefile", body);
  r = Classify_File(s, File("v2/Spec.VarD", marker));
  EXPECT_EQ(r.file_class, ".VARD");
  EXPECT_EQ(std::filesystem::path(r.path).filename(), "phasefile");
  EXPECT_TRUE(Class_Accepted(r));
  // A processed folder with data and phasefile: data comes first.
  File("v3/data", body);
  File("v3/phasefile", body);
  r = Classify_File(s, File("v3/Spec.VarF", marker));
  EXPECT_EQ(r.file_class, ".VARD");
  EXPECT_EQ(std::filesystem::path(r.path).filename(), "data");
  EXPECT_EQ(r.base_name, "DATA");
  // A marker in a folder holding none of the names keeps its own class.
  r = Classify_File(s, File("v4/Spec.VarF", marker));
  EXPECT_EQ(r.file_class, ".VARF");
  EXPECT_EQ(std::filesystem::path(r.path).filename(), "Spec.VarF");

  // Bruker: fid, ser, 1r, 2rr in that order.
  const auto bruker = Bytes_With("BRUKER\r\n", 8);
  File("b1/ser", body);
  r = Classify_File(s, File("b1/Spec.BRUF", bruker));
  EXPECT_EQ(r.file_class, ".BRUF");
  EXPECT_EQ(std::filesystem::path(r.path).filename(), "ser");
  EXPECT_EQ(r.base_name, "SER");
  File("b2/1r", body);
  File("b2/2rr", body);
  r = Classify_File(s, File("b2/Spec.BRUD", bruker));
  EXPECT_EQ(r.file_class, ".BRUD");
  EXPECT_EQ(std::filesystem::path(r.path).filename(), "1r");
  File("b4/2rr", body);
  r = Classify_File(s, File("b4/Spec.BRUD", bruker));
  EXPECT_EQ(r.file_class, ".BRUD");
  EXPECT_EQ(std::filesystem::path(r.path).filename(), "2rr");
  // fid before ser: a raw folder of a 1D set that also kept a ser file.
  File("b5/ser", body);
  File("b5/fid", body);
  r = Classify_File(s, File("b5/Spec.BRUF", bruker));
  EXPECT_EQ(r.file_class, ".BRUF");
  EXPECT_EQ(std::filesystem::path(r.path).filename(), "fid");

  // CMX: the data file of the folder, without a test.
  r = Classify_File(s, File("c/Spec.CMX", Bytes_With("CMX\r\n", 5)));
  EXPECT_EQ(r.file_class, ".CMX");
  EXPECT_EQ(std::filesystem::path(r.path).filename(), "DATA");

  // Dummy_File writes the marker that these rules read.
  s.Data_Folder = (dir / "b3").string();
  std::filesystem::create_directories(s.Data_Folder);
  File("b3/fid", body);
  EXPECT_TRUE(Dummy_File(s, ".BRUF", true));
  EXPECT_EQ(s.Param.Instrument_Name, "Bruker");
  EXPECT_EQ(RDMode(s, (dir / "b3/Spec.BRUF").string()).tag, "BRUKER");
  EXPECT_EQ(Class_Of((dir / "b3/Spec.BRUF").string()), ".BRUF");
  s.Param.Instrument_Name.clear();
  EXPECT_FALSE(Dummy_File(s, ".VARD", false));
  EXPECT_EQ(s.Param.Instrument_Name, "Varian");
  EXPECT_FALSE(std::filesystem::exists(dir / "b3/Spec.VarD"));
  EXPECT_FALSE(Dummy_File(s, ".TV1", true));
}

TEST_F(Classing, ContentsOverrideTheName) {
  auto tv = Bytes_With(std::string("TV NMR Ver.3.00\0", 16) + "1");
  EXPECT_EQ(Class_Of(File("renamed.dat", tv)), ".TV1");
  tv[16] = '2';
  EXPECT_EQ(Class_Of(File("two.tv1", tv)), ".TV2");
  auto v4 = Bytes_With("TV NMR Ver.4.01");
  EXPECT_EQ(Class_Of(File("x.tvo", v4)), ".TVO1");
  Put_LE_Int32(v4, 516, 1024);
  EXPECT_EQ(Class_Of(File("x.tvo", v4)), ".TVO2");
  auto alice = Bytes_With("");
  Put_Text(alice, 258, "VEX NMR VERSION 1.01");
  EXPECT_EQ(Class_Of(File("x.bin", alice)), ".ALS");
  EXPECT_EQ(Class_Of(File("x.jdf", Bytes_With("JEOL.NMR"))), ".ECP");
  EXPECT_EQ(Class_Of(File("x.nmf", Bytes_With("NFT1DT"))), ".ALP");
  EXPECT_EQ(Class_Of(File("x.nmd", Bytes_With("JEOLUSF001"))), ".LAM");
  EXPECT_EQ(Class_Of(File("x.001", Bytes_With("\x47\x84\xF5"))), ".MSL");
  // NUTS magic wins over a native name, and so does the NUTS binary
  // JCAMP label.
  EXPECT_EQ(Class_Of(File("x.tv1", Bytes_With("\x01\x02\x03\x04"))), ".NUT");
  std::string nuts3 = "##TITLE=n\r\n##JCAMP-DXB=1\r\n";
  nuts3.resize(400, ' ');
  EXPECT_EQ(Class_Of(File("y.tv1", std::vector<uint8_t>(nuts3.begin(), nuts3.end()))), ".NUT");
  // A CSV banner under any name.
  EXPECT_EQ(Class_Of(File("x.tv1", Bytes_With("$CSVSTART\r\n1,2\r\n", 400))), ".CSV");
  // A version-3 banner too short to be anything but a marker file keeps
  // its name's class.
  EXPECT_EQ(Class_Of(File("short.tv1", Bytes_With(std::string("TV NMR Ver.3.00\0", 16) + "1", 300))), ".TV1");
  EXPECT_EQ(Class_Of(File("short.als", Bytes_With(std::string("TV NMR Ver.3.00\0", 16) + "1", 300))), ".ALS");
  EXPECT_EQ(Class_Of(File("long.als", Bytes_With(std::string("TV NMR Ver.3.00\0", 16) + "1", 301))), ".TV1");

  // A JCAMP-DX text named .txt is neither sniffed nor named JCAMP: CSV.
  std::string jdx = "##TITLE=x\r\n##JCAMP-DX=5.00\r\n##XYDATA=(X++(Y..Y))\r\n";
  while (jdx.size() < 400) jdx += "1 2 3 4\r\n";
  const std::vector<uint8_t> jb(jdx.begin(), jdx.end());
  EXPECT_EQ(Class_Of(File("x.txt", jb)), ".CSV");
  EXPECT_EQ(Class_Of(File("x.jdx", jb)), ".JDX");
  EXPECT_EQ(Class_Of(File("x.asc", Bytes_With("text", 400))), ".CSV");
  EXPECT_EQ(Class_Of(File("x.DAT", Bytes_With("text", 400))), ".CSV");
  EXPECT_EQ(Class_Of(File("x.datx", Bytes_With("text", 400))), ".CSV");  // the first 4 characters count
  EXPECT_EQ(Class_Of(File("x.abc", Bytes_With("text", 400))), ".ABC");
  // Number-only text is CSV under any name.
  std::string nums;
  while (nums.size() < 400) nums += "1.5, 2.5\r\n";
  EXPECT_EQ(Class_Of(File("list.xyz", std::vector<uint8_t>(nums.begin(), nums.end()))), ".CSV");
}

TEST_F(Classing, AcceptanceOfNamesAndClasses) {
  const auto body = Bytes_With("", 1000);
  EXPECT_TRUE(Class_Accepted(Classify_File(s, File("raw/fid", body))));
  EXPECT_TRUE(Class_Accepted(Classify_File(s, File("raw/PhaseFile", body))));
  EXPECT_TRUE(Class_Accepted(Classify_File(s, File("x.gxd", body))));
  EXPECT_TRUE(Class_Accepted(Classify_File(s, File("x.import", body))));
  EXPECT_FALSE(Class_Accepted(Classify_File(s, File("x.abc", body))));
  // An extension the operator bound to JCAMP (type 12) opens as JCAMP-DX;
  // contents still come first.
  s.settings.Set("USER EXTENSION 1", std::string("abc"));
  s.settings.Set("USER EXT NUM 1", 12.0);
  auto bound = Classify_File(s, File("y.abc", body));
  EXPECT_EQ(bound.file_class, ".JDX");
  EXPECT_TRUE(Class_Accepted(bound));
  EXPECT_EQ(Class_Of(File("z.abc", Bytes_With("JEOL.NMR"))), ".ECP");
  auto tv2 = Bytes_With(std::string("TV NMR Ver.3.00\0", 16) + "2");
  EXPECT_FALSE(Class_Accepted(Classify_File(s, File("x.tv1", tv2))));

  EXPECT_TRUE(Class_Is(".TV1X", ".TV1"));
  EXPECT_TRUE(Class_Is(".GXD2", ".GXD"));
  EXPECT_FALSE(Class_Is(".BRUA2", ".BRUA"));
  EXPECT_TRUE(Class_Is(".IMPORT1", ".IMPORT"));
  EXPECT_FALSE(Class_Is(".DXF", ".DX"));
}

TEST(Twins, PairsFindTheDataMember) {
  Temp_Dir dir;
  Write_Bytes(dir / "s.gxd", {1});
  Write_Bytes(dir / "s.gxp", {1});
  Write_Bytes(dir / "G.FID", {1});
  Write_Bytes(dir / "G.HED", {1});
  auto t = Pair_Twin_Files((dir / "s.gxp").string(), ".GXP");
  EXPECT_EQ(t.data, (dir / "s.gxd").string());
  EXPECT_EQ(t.param, (dir / "s.gxp").string());
  t = Pair_Twin_Files((dir / "s.gxd").string(), ".GXD");
  EXPECT_EQ(t.param, (dir / "s.gxp").string());
  t = Pair_Twin_Files((dir / "G.HED").string(), ".HED");
  EXPECT_EQ(t.data, (dir / "G.FID").string());
  EXPECT_EQ(t.param, (dir / "G.HED").string());
  t = Pair_Twin_Files((dir / "one.tv1").string(), ".TV1");
  EXPECT_EQ(t.data, t.param);
}

TEST(User_Extensions, RowsAsTypedAndTheClassTheyBind) {
  EXPECT_EQ(Normalize_User_Extension("  brx "), ".BRX");
  EXPECT_EQ(Normalize_User_Extension(".fid2"), ".FID2");
  EXPECT_EQ(Normalize_User_Extension("   "), "");
  const auto rows = Read_User_Extensions({{"abc", 12}, {"  ", 3}, {"raw", 1}, {".v", 4}, {"late", 0}});
  ASSERT_EQ(rows.size(), 3u);
  EXPECT_EQ(rows[0].ext, ".ABC");
  EXPECT_EQ(rows[1].ext, ".RAW");
  EXPECT_EQ(rows[2].ext, ".V");
  EXPECT_EQ(User_Extension_Class(rows, ".ABC"), ".JDX");
  EXPECT_EQ(User_Extension_Class(rows, ".RAW"), ".BRUF");
  EXPECT_EQ(User_Extension_Class(rows, ".V"), ".VARF");
  EXPECT_EQ(User_Extension_Class(rows, ".LATE"), "");
  // The default rows bind each marker extension to its own class.
  const std::vector<User_Extension> defaults = {{".BRUD", 0}, {".BRUF", 1}, {".VARD", 3}, {".VARF", 4}, {".CMX", 10}};
  for (const auto& d : defaults) EXPECT_EQ(User_Extension_Class(defaults, d.ext), d.ext);
  EXPECT_EQ(User_Data_Types().size(), 14u);
  EXPECT_EQ(User_Type_Class(14), "");
  const auto choices = User_Pattern_Choices("*.abc");
  ASSERT_EQ(choices.size(), 18u);
  EXPECT_EQ(choices[0], "*.abc");
  EXPECT_EQ(choices[17], "*.import*");
}

}  // namespace
}  // namespace tevo::datafiles
