#include "editing/undo.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "editing/baseline.h"
#include "session/session.h"

namespace tevo::editing {

namespace {

struct Caption_Row {
  int16_t kind;
  const char* caption;
};
constexpr Caption_Row Captions[] = {
    {1, "取り消し(ピーク位置の削除)"},   {2, "取り消し(ピーク位置の追加)"},
    {3, "取り消し(ピーク位置の自動追加)"}, {4, "取り消し(ピークの全削除)"},
    {11, "取り消し(Arrayデータ表示プロパティ)"}, {21, "取り消し(補正点の削除)"},
    {22, "取り消し(補正点の追加)"},       {23, "取り消し(補正点の自動追加)"},
    {51, "取り消し(積分の削除)"},         {52, "取り消し(積分の分割)"},
    {53, "取り消し(積分の移動)"},         {54, "取り消し(積分の拡大)"},
    {55, "取り消し(積分の追加)"},         {56, "取り消し(積分の全削除)"},
    {57, "取り消し(積分のｱｼﾞｬｽﾄ)"},       {58, "取り消し(積分のReference)"},
    {59, "取り消し(B0,B1の変更)"},        {61, "取り消し(拡大図の削除)"},
    {62, "取り消し(拡大図の移動)"},       {63, "取り消し(拡大図の整列)"},
    {64, "取り消し(拡大図の追加)"},       {65, "取り消し(拡大図のプロパティ)"},
    {66, "取り消し(拡大図の横移動)"},     {67, "取り消し(拡大図の横拡大)"},
    {68, "取り消し(拡大図の縦拡大)"},     {69, "取り消し(拡大図の縦オフセット)"},
    {71, "取り消し(拡大図の大きさ変更)"}, {81, "取り消し(重ね書きの移動)"},
};

// Record 0 after a push, emptied and given its kind.
Undo_Rec& Fresh_Record(Session& s, int16_t kind) {
  Undo_Push(s);
  Undo_Rec& r = s.Undo_Stack[0];
  r = Undo_Rec{};
  r.Kind = kind;
  return r;
}

int32_t Restore_Index(float v) { return static_cast<int32_t>(std::nearbyint(v)); }

}  // namespace

void Undo_Push(Session& s) {
  for (int i = Undo_Depth - 1; i >= 0; --i) s.Undo_Stack[static_cast<std::size_t>(i) + 1] = s.Undo_Stack[static_cast<std::size_t>(i)];
}

Undo_Menu Undo_Caption(const Session& s) {
  const int16_t kind = s.Undo_Stack[0].Kind;
  if (kind <= 0) return {"取り消し", false};
  for (const Caption_Row& row : Captions)
    if (row.kind == kind) return {row.caption, true};
  return {"取り消し(?)", true};
}

void Undo_Take_Peaks(Session& s, int16_t kind) {
  Undo_Rec& r = Fresh_Record(s, kind);
  for (const Peak_Rec& p : s.Peaks) {
    r.List_A.push_back(static_cast<float>(p.Point));
    r.List_B.push_back(p.Freq_Hz);
    r.List_C.push_back(p.Label_Dx);
    r.List_D.push_back(p.Label_Dy);
    r.Sub_A.push_back(p.Height);  // the label height kept with the placement
  }
  r.Count = static_cast<int32_t>(s.Peaks.size());
}

void Undo_Take_Baseline(Session& s, int16_t kind) {
  Undo_Rec& r = Fresh_Record(s, kind);
  for (std::size_t i = 0; i < s.Base_Point.size(); ++i) {
    r.List_A.push_back(static_cast<float>(s.Base_Point[i]));
    r.List_B.push_back(s.Base_Re[i]);
    r.List_C.push_back(s.Base_Im[i]);
  }
  r.Count = static_cast<int32_t>(s.Base_Point.size());
}

void Undo_Take_Integrals(Session& s, int16_t kind) {
  Undo_Rec& r = Fresh_Record(s, kind);
  for (const Integ_Rec& g : s.Integrals) {
    r.List_A.push_back(g.B0);
    r.List_B.push_back(g.B1);
    r.Sub_A.push_back(static_cast<float>(g.End_Point));
    r.Sub_B.push_back(static_cast<float>(g.Start_Point));
    r.Sub_C.push_back(g.Curve_Y);
    r.Sub_D.push_back(g.Value);
  }
  r.Count = static_cast<int32_t>(s.Integrals.size());
  r.Val[0] = s.Integ_Scale;
  r.Val[1] = s.Integ_Ref;
  r.Val[2] = static_cast<float>(s.Integ_Ref_Index);
  r.Cur = s.Integ_Cur;
}

void Undo_Take_Insets(Session& s, int16_t kind) {
  Undo_Rec& r = Fresh_Record(s, kind);
  r.Insets = s.Insets;
  r.Count = static_cast<int32_t>(s.Insets.size());
  r.Cur = s.Inset_Cur;
}

bool Undo_Step(Session& s) {
  const Undo_Rec& r = s.Undo_Stack[0];
  const auto n = static_cast<std::size_t>(std::max(r.Count, 0));
  if (r.Kind >= 1 && r.Kind <= 4) {
    s.Peaks.assign(n, {});
    for (std::size_t i = 0; i < n; ++i) {
      Peak_Rec& p = s.Peaks[i];
      p.Point = Restore_Index(r.List_A[i]);
      p.Freq_Hz = r.List_B[i];
      p.Label_Dx = r.List_C[i];
      p.Label_Dy = r.List_D[i];
      p.Height = static_cast<int16_t>(r.Sub_A[i]);
    }
  } else if (r.Kind >= 21 && r.Kind <= 23) {
    s.Base_Point.resize(n);
    s.Base_Re.assign(r.List_B.begin(), r.List_B.begin() + static_cast<std::ptrdiff_t>(n));
    s.Base_Im.assign(r.List_C.begin(), r.List_C.begin() + static_cast<std::ptrdiff_t>(n));
    for (std::size_t i = 0; i < n; ++i) s.Base_Point[i] = Restore_Index(r.List_A[i]);
    Apply_Baseline(s);
  } else if (r.Kind >= 51 && r.Kind <= 59) {
    s.Integrals.assign(n, {});
    for (std::size_t i = 0; i < n; ++i) {
      Integ_Rec& g = s.Integrals[i];
      g.B0 = r.List_A[i];
      g.B1 = r.List_B[i];
      g.End_Point = Restore_Index(r.Sub_A[i]);
      g.Start_Point = Restore_Index(r.Sub_B[i]);
      g.Curve_Y = r.Sub_C[i];
      g.Value = r.Sub_D[i];
    }
    s.Integ_Scale = r.Val[0];
    s.Integ_Ref = r.Val[1];
    s.Integ_Ref_Index = Restore_Index(r.Val[2]);
    s.Integ_Cur = r.Cur;
  } else if (r.Kind >= 61 && r.Kind <= 71) {
    s.Insets = r.Insets;
    s.Inset_Cur = r.Cur;
  } else {
    return false;
  }
  for (int i = 0; i < Undo_Depth; ++i) s.Undo_Stack[static_cast<std::size_t>(i)] = std::move(s.Undo_Stack[static_cast<std::size_t>(i) + 1]);
  // Record 20 is the spare a push fills; it is never reached by undo, so the
  // 21st edit in a row has dropped the oldest.
  s.Undo_Stack[Undo_Depth - 1] = Undo_Rec{};
  s.Undo_Stack[Undo_Depth] = Undo_Rec{};
  return true;
}

void Undo_Clear(Session& s) { s.Undo_Stack[0].Kind = Undo_None; }

}  // namespace tevo::editing
