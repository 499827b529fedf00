// The parameter window's core: texts that read back to the same values,
// edits taken with their spelling rules, bad numbers refused as a whole.
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "editing/parameter_edit.h"
#include "session/session.h"

namespace {

using tevo::editing::Param_Edit_OK;
using tevo::editing::Param_Edit_Text;
using tevo::editing::Param_Edit_Valid;

std::map<std::string, std::string> All_Texts(const tevo::Session& s) {
  std::map<std::string, std::string> m;
  for (const auto& f : tevo::editing::Param_Edit_Fields()) m[f.tag] = Param_Edit_Text(s, f.tag);
  return m;
}

TEST(ParameterEdit, TextsReadBackUnchangedAndEditsFollowTheirRules) {
  tevo::Session s;
  s.Nuclei = {{"1H", "", 1.0}, {"13C", "", 0.2514495}};
  s.Param.COMNT = "aspirin in CDCl3";
  s.Param.OBNUC = "1H";
  s.Param.IRNUC = "13C";
  s.Param.CTEMP = 24.85f;  // not exact in binary: the text must still read back
  s.Param.PD = 1.2f;
  s.Param.ACQTM = 3.0f / 7.0f;
  s.Param.SCANS = 32;
  s.Data_Saved = 1;
  EXPECT_EQ(Param_Edit_Text(s, "SCANS"), "32");
  EXPECT_EQ(Param_Edit_Text(s, "PD"), "1.2");
  EXPECT_EQ(Param_Edit_Text(s, "nope"), "");
  const tevo::Data_Param before = s.Param;
  EXPECT_FALSE(Param_Edit_OK(s, All_Texts(s)));
  EXPECT_TRUE(s.Param == before);
  EXPECT_EQ(s.Data_Saved, 1);

  // Spelling: nuclei through the table, the ID in upper case, blanks trimmed.
  auto t = All_Texts(s);
  t["OBNUC"] = " c13 ";
  t["IRNUC"] = "";
  t["ID"] = " jnm-ecz400s ";
  t["SCANS"] = " 64 ";
  t["CTEMP"] = "-3.5e1";
  t["COMNT"] = "  second run ";
  EXPECT_TRUE(Param_Edit_OK(s, t));
  EXPECT_EQ(s.Param.OBNUC, "13C");
  EXPECT_EQ(s.Param.IRNUC, "");
  EXPECT_EQ(s.Param.Instrument_Id, "JNM-ECZ400S");
  EXPECT_EQ(s.Param.SCANS, 64);
  EXPECT_EQ(s.Param.CTEMP, -35.0f);
  EXPECT_EQ(s.Param.COMNT, "second run");
  EXPECT_FLOAT_EQ(s.Param.PD, 1.2f);  // untouched
  EXPECT_EQ(s.Data_Saved, 0);
  t = {{"OBNUC", ""}};
  EXPECT_TRUE(Param_Edit_OK(s, t));
  EXPECT_EQ(s.Param.OBNUC, "NUL");

  // A bad number refuses the whole: nothing taken, the first bad tag named.
  for (const auto& [tag, text] : std::vector<std::pair<std::string, std::string>>{
           {"SCANS", "6.5"}, {"SCANS", "99999999999"}, {"SCANS", ""}, {"CTEMP", "abc"},
           {"CTEMP", "1e40"}, {"CTEMP", "nan"}, {"PD", "1.2s"}, {"nope", "1"}})
    EXPECT_FALSE(Param_Edit_Valid(tag, text)) << tag << " " << text;
  EXPECT_TRUE(Param_Edit_Valid("COMNT", ""));
  EXPECT_TRUE(Param_Edit_Valid("SCANS", "+8"));
  const tevo::Data_Param kept = s.Param;
  std::string bad;
  EXPECT_FALSE(Param_Edit_OK(s, {{"COMNT", "changed"}, {"SCANS", "6.5"}}, &bad));
  EXPECT_EQ(bad, "SCANS");
  EXPECT_TRUE(s.Param == kept);
}

}  // namespace
