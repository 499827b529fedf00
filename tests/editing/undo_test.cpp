// The undo stack: 20 steps deep, every kind of the editing modes puts its
// list back exactly, the captions, and no undo across a mode boundary.
#include <gtest/gtest.h>

#include "editing/baseline.h"
#include "editing/integrals.h"
#include "editing/peaks.h"
#include "editing/undo.h"
#include "spectrum_rows.h"

namespace tevo {
namespace {

using test::Lorentz;
using test::Spectrum_Session;

std::complex<double> Two_Lines(int32_t k) { return Lorentz(1, 300, 2, k) + Lorentz(0.5, 700, 2, k); }

// The lists an undo must restore, compared whole.
struct Lists {
  std::vector<Peak_Rec> peaks;
  std::vector<Integ_Rec> integrals;
  std::vector<int32_t> base_point;
  std::vector<float> base_re, base_im, spec_re;
  float scale, ref;
  int32_t ref_index;
  bool operator==(const Lists&) const = default;
};
Lists Take(const Session& s) {
  std::vector<float> re(s.Spec_Re.Row(0).begin(), s.Spec_Re.Row(0).begin() + s.Spec_Points);
  return {s.Peaks, s.Integrals, s.Base_Point, s.Base_Re, s.Base_Im, re, s.Integ_Scale, s.Integ_Ref, s.Integ_Ref_Index};
}

TEST(Undo, TwentyStepsDeepAndTheTwentyFirstEditDropsTheOldest) {
  Spectrum_Session d(1024, Two_Lines);
  Session& s = d.s;
  std::vector<Lists> states{Take(s)};
  for (int32_t k = 1; k <= 21; ++k) {
    ASSERT_TRUE(editing::Peak_Add_At(s, 10 * k));
    states.push_back(Take(s));
  }
  // 20 undos walk back to the state after the first edit; the 21st finds nothing.
  for (int k = 20; k >= 1; --k) {
    ASSERT_TRUE(editing::Undo_Step(s)) << k;
    EXPECT_TRUE(Take(s) == states[static_cast<std::size_t>(k)]) << k;
  }
  EXPECT_FALSE(editing::Undo_Step(s));
  EXPECT_EQ(editing::Undo_Caption(s).caption, "取り消し");
  EXPECT_FALSE(editing::Undo_Caption(s).enabled);
}

TEST(Undo, EveryKindOfTheEditingModesRestoresItsListExactly) {
  Spectrum_Session d(1024, Two_Lines);
  Session& s = d.s;
  s.Base_Preview = 1;
  auto pixel = [&](double ppm) { return (ppm - s.Spec_Axis[0]) * 1000; };
  using Edit = std::function<bool()>;
  const std::pair<const char*, Edit> edits[] = {
      {"取り消し(ピーク位置の自動追加)", [&] { return editing::Peak_Search_All(s) > 0; }},
      {"取り消し(ピーク位置の追加)", [&] { return editing::Peak_Add_At(s, 500); }},
      {"取り消し(ピーク位置の削除)", [&] { return editing::Peak_Delete_At(s, pixel(s.Disp_X[500]), pixel); }},
      {"取り消し(ピークの全削除)", [&] { return editing::PeakCommand3_Click(s); }},
      {"取り消し(補正点の追加)", [&] { return editing::Base_Add_Point(s, 100); }},
      {"取り消し(補正点の追加)", [&] { return editing::Base_Add_Point(s, 900); }},
      {"取り消し(補正点の削除)", [&] { return editing::Base_Delete_Point(s, 0); }},
      {"取り消し(補正点の自動追加)", [&] { return editing::Base_Auto_Points(s) >= 0; }},
      {"取り消し(積分の追加)", [&] { return editing::Integ_Add(s, 350, 250) >= 0; }},
      {"取り消し(積分の追加)", [&] { return editing::Integ_Add(s, 750, 650) >= 0; }},
      {"取り消し(積分の分割)", [&] { return editing::Integ_Split(s, 0, 300); }},
      {"取り消し(積分の移動)", [&] { return editing::Integ_Move(s, 1, 5); }},
      {"取り消し(積分の拡大)", [&] { return editing::Integ_Widen(s, 1, 760); }},
      {"取り消し(積分のReference)", [&] { return editing::Integ_Set_Reference(s, 2, 3.0f); }},
      {"取り消し(積分のｱｼﾞｬｽﾄ)", [&] { editing::Integ_Rescale(s); return true; }},
      {"取り消し(B0,B1の変更)", [&] { editing::Integ_Trim_Begin(s); editing::Integ_Trim_Step(s, editing::Trim_Button::B1_Up); return true; }},
      {"取り消し(積分の削除)", [&] { return editing::Integ_Delete(s, 2); }},
      {"取り消し(積分の全削除)", [&] { return editing::IntegralCommand2_Click(s); }},
  };
  std::vector<Lists> states;
  for (const auto& [caption, edit] : edits) {
    states.push_back(Take(s));
    ASSERT_TRUE(edit()) << caption;
    EXPECT_EQ(editing::Undo_Caption(s).caption, caption);
    EXPECT_TRUE(editing::Undo_Caption(s).enabled);
  }
  for (std::size_t k = states.size(); k-- > 0;) {
    ASSERT_TRUE(editing::Undo_Step(s)) << edits[k].first;
    EXPECT_TRUE(Take(s) == states[k]) << edits[k].first;
  }
  // Kinds of other modes keep their captions; unknown ones show "?".
  s.Undo_Stack[0].Kind = 81;
  EXPECT_EQ(editing::Undo_Caption(s).caption, "取り消し(重ね書きの移動)");
  s.Undo_Stack[0].Kind = 99;
  EXPECT_EQ(editing::Undo_Caption(s).caption, "取り消し(?)");
}

TEST(Undo, NoUndoAcrossAModeBoundary) {
  Spectrum_Session d(1024, Two_Lines);
  Session& s = d.s;
  ASSERT_TRUE(editing::m24_Click(s));
  ASSERT_TRUE(editing::Peak_Add_At(s, 300));
  EXPECT_TRUE(editing::Undo_Caption(s).enabled);
  s.Data_Saved = 1;
  editing::PeakCommand1_Click(s);  // leaving keeps the list
  EXPECT_EQ(s.Peaks.size(), 1u);
  EXPECT_EQ(s.Data_Saved, 0);
  EXPECT_FALSE(editing::Undo_Caption(s).enabled);
  EXPECT_FALSE(editing::Undo_Step(s));
  ASSERT_TRUE(editing::m25_Click(s));
  ASSERT_GE(editing::Integ_Add(s, 350, 250), 0);
  ASSERT_TRUE(editing::m24_Click(s));  // entering another mode closes this one
  EXPECT_FALSE(editing::Undo_Caption(s).enabled);
  EXPECT_EQ(s.Integrals.size(), 1u);
}

}  // namespace
}  // namespace tevo
