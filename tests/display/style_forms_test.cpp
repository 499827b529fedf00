// The settings-group windows without a window: their tables, the limits a
// typed value is held to, キャンセル, and OK surviving a restart.
#include <gtest/gtest.h>

#include <cmath>
#include <set>
#include <string>

#include "display/style_forms.h"
#include "session/session.h"
#include "session/settings_files.h"
#include "support/test_support.h"

using namespace tevo;
using namespace tevo::display;

namespace {

const Style_Row& Row_Of(const Style_Form& form, std::string_view key) {
  for (const Style_Row& row : form.rows)
    for (std::string_view k : Row_Keys(row))
      if (k == key) return row;
  throw std::out_of_range(std::string(key));
}

}  // namespace

TEST(StyleForms, EveryRowNamesKeysTheSessionKnows) {
  const Session s;
  const std::set<std::string_view> common = {"USER MODE", "LOG MODE", "LOG DIR"};
  for (const char* name : {"NMR1D_Form7_0", "NMR1D_Form7_1", "NMR1D_Form3", "SpecSim_Form3_0", "SpecSim_Form3_1",
                           "T1Cal_Form3_0", "T1Cal_Form3_1", "NMR1D_Form84", "NMR1D_Form82", "NMR1D_Form88"}) {
    const Style_Form* form = Find_Style_Form(name);
    ASSERT_NE(form, nullptr) << name;
    for (const Style_Row& row : form->rows) {
      const auto keys = Row_Keys(row);
      const std::size_t wanted = row.kind == Style_Kind::Page ? 0u : row.kind == Style_Kind::Font ? 4u : 1u;
      EXPECT_EQ(keys.size(), wanted) << row.caption;
      for (std::string_view k : keys) {
        EXPECT_TRUE(common.count(k) || session::Setting_Index(k) >= 0) << name << ": " << k;
      }
      if (row.kind == Style_Kind::Choice) {
        EXPECT_GE(Row_Choices(row).size(), 2u) << row.caption;
      }
    }
  }
  EXPECT_EQ(Find_Style_Form("NMR1D_Form99"), nullptr);
}

TEST(StyleForms, LimitsCancelAndOkAcrossARestart) {
  test::Temp_Dir dir;
  Session s;
  s.App_Path = dir.path().string();
  const Style_Form& view = *Find_Style_Form("NMR1D_Form7_0");
  const Style_Saved opened = Style_Open(s, view);

  // Each kind holds its value within its limits; no number is refused.
  const Style_Row& width = Row_Of(view, "DISP SPEC WIDTH");
  EXPECT_TRUE(Style_Set_Number(s, width, "DISP SPEC WIDTH", 99));
  EXPECT_EQ(s.settings.Real("DISP SPEC WIDTH"), 10);
  EXPECT_FALSE(Style_Set_Number(s, width, "DISP SPEC WIDTH", std::nan("")));
  EXPECT_EQ(s.settings.Real("DISP SPEC WIDTH"), 10);
  const Style_Row& colour = Row_Of(view, "MAIN SPECT COL");
  Style_Set_Number(s, colour, "MAIN SPECT COL", 0x2000000);
  EXPECT_EQ(s.settings.Int("MAIN SPECT COL"), 0xFFFFFF);
  const Style_Row& unit = Row_Of(view, "DISP UNIT POS");
  Style_Set_Number(s, unit, "DISP UNIT POS", 7);
  EXPECT_EQ(s.settings.Int("DISP UNIT POS"), 3);
  const Style_Row& font = Row_Of(view, "DISP AXFONT NAME");
  Style_Set_Number(s, font, "DISP AXFONT SIZE", 0.2);
  Style_Set_Number(s, font, "DISP AXFONT BOLD", 5);
  EXPECT_EQ(s.settings.Real("DISP AXFONT SIZE"), 1);
  EXPECT_EQ(s.settings.Int("DISP AXFONT BOLD"), 1);
  EXPECT_FALSE(Style_Set_Text(s, font, "DISP AXFONT NAME", ""));
  EXPECT_TRUE(Style_Set_Text(s, font, "DISP AXFONT NAME", "ＭＳ 明朝"));

  // キャンセル: everything back as the window opened, the face included.
  Style_Cancel(s, opened);
  EXPECT_EQ(s.settings.Real("DISP SPEC WIDTH"), 1);
  EXPECT_EQ(s.settings.Int("MAIN SPECT COL"), 0);
  EXPECT_EQ(s.settings.Int("DISP UNIT POS"), 3);
  EXPECT_EQ(s.settings.Real("DISP AXFONT SIZE"), 9);
  EXPECT_EQ(s.settings.Int("DISP AXFONT BOLD"), 0);
  EXPECT_EQ(s.settings.Text("DISP AXFONT NAME"), "ＭＳ ゴシック");

  // OK writes the settings file, and the environment's keys of the common
  // file go to that file: a fresh session reading both has them.
  Style_Set_Number(s, width, "DISP SPEC WIDTH", 3);
  Style_Set_Number(s, colour, "MAIN SPECT COL", 0x00C000);
  Style_Set_Text(s, font, "DISP AXFONT NAME", "ＭＳ 明朝");
  Style_OK(s, view);
  const Style_Form& env = *Find_Style_Form("NMR1D_Form3");
  Style_Set_Number(s, Row_Of(env, "LOG MODE"), "LOG MODE", -5);
  Style_Set_Number(s, Row_Of(env, "USER MODE"), "USER MODE", 1);
  Style_Set_Number(s, Row_Of(env, "DISPLAY MIN"), "DISPLAY MIN", 1000);
  Style_OK(s, env);
  Session fresh;
  fresh.App_Path = s.App_Path;
  session::Read_Common(fresh);
  session::Read_Settings(fresh);
  EXPECT_EQ(fresh.settings.Real("DISP SPEC WIDTH"), 3);
  EXPECT_EQ(fresh.settings.Int("MAIN SPECT COL"), 0x00C000);
  EXPECT_EQ(fresh.settings.Text("DISP AXFONT NAME"), "ＭＳ 明朝");
  EXPECT_EQ(fresh.settings.Int("DISPLAY MIN"), 65536);
  EXPECT_EQ(fresh.Log_Mode, -1);
  EXPECT_EQ(fresh.User_Mode, 1);
}
