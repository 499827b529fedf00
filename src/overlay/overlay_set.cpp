#include "overlay/overlay_set.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <utility>

#include "datafiles/open_file.h"
#include "display/style.h"
#include "session/messages.h"
#include "session/number_text.h"
#include "session/session.h"

namespace tevo::overlay {

namespace {

constexpr const char* Row_Format = "####0.0###";
constexpr const char* Main_Locked = "ｽﾍﾟｸﾄﾙ1 のﾃﾞｰﾀを変更する操作はできません。";
constexpr float New_Slot_Mag = 0.95f;
constexpr double Mag_Step = 1.1, Mag_Min = 1.0 / 10000, Mag_Max = 10000;
constexpr double Offset_Step = 0.01, Shift_Step = 0.01;

bool Data_Slot(int slot) { return slot >= 1 && slot < Overlay_Rows; }

Overlay_Slot& Slot(Session& s, int slot) { return s.Overlay[static_cast<std::size_t>(slot)]; }
const Overlay_Slot& Slot(const Session& s, int slot) { return s.Overlay[static_cast<std::size_t>(slot)]; }

// The name a slot's data goes by in the questions: its file name, else its
// comment.
std::string Data_Name(const Overlay_Slot& o) {
  const std::string name = std::filesystem::path(o.Slot_File).filename().string();
  return name.empty() ? o.Slot_Comment : name;
}

// An empty slot that keeps the row's offset and colour.
Overlay_Slot Emptied(const Overlay_Slot& o) {
  Overlay_Slot e;
  e.Slot_Y_Offset = o.Slot_Y_Offset;
  e.Slot_Colour = o.Slot_Colour;
  e.Slot_Y_Mag = New_Slot_Mag;
  return e;
}

// The spectrum of `from` in a row of its own: offset and colour are the
// row's.
void Put_In_Row(Overlay_Slot& row, Overlay_Slot from) {
  from.Slot_Y_Offset = row.Slot_Y_Offset;
  from.Slot_Colour = row.Slot_Colour;
  row = std::move(from);
}

void Set_Mag(Session& s, int slot, double mag) {
  if (slot == 0) {
    s.Y_Mag = static_cast<float>(mag);
    display::Renew_Full_Scale(s);
    return;
  }
  Overlay_Slot& o = Slot(s, slot);
  o.Slot_Y_Mag = static_cast<float>(mag);
  o.Slot_Y_Full = static_cast<float>(o.Slot_Max_Abs / mag);
}

void Set_Offset(Session& s, int slot, double v) {
  Slot(s, slot).Slot_Y_Offset = static_cast<float>(v);
  if (slot == 0) {
    s.Y_Offset = static_cast<float>(v);
    display::Renew_Full_Scale(s);
  }
}

bool Set_Flag(Session& s, int slot, int16_t Overlay_Slot::*flag, bool on) {
  if (!Data_Slot(slot) || !Slot_In_Use(s, slot)) return false;
  Slot(s, slot).*flag = on ? 1 : 0;
  return true;
}

}  // namespace

std::string Slot_Number_Text(int slot) { return slot == 0 ? "1　  (基本)" : std::to_string(slot + 1); }

bool Slot_In_Use(const Session& s, int slot) {
  if (slot == 0) return s.Spec_Points > 0;
  return slot > 0 && slot <= Overlay_Max && Slot(s, slot).Slot_Points > 0;
}

int Load_Slot(Session& s, int slot, const std::string& path) {
  if (slot == 0) {
    Show_Message(s, Main_Locked, Icon_Exclamation, "");
    return 1;
  }
  if (!Data_Slot(slot)) return 1;
  if (Slot_In_Use(s, slot) &&
      Show_Message(s, "ここには" + Data_Name(Slot(s, slot)) + "があります\n上書きしますか？",
                   Style_Yes_No + Icon_Question, "スペクトルの上書き") != Msg_Yes)
    return 1;
  // NMR1D_Form12: "CHEM", "CENT", or closed.
  const int align = s.ui->Choose("重ね書き指定", "", {"ｹﾐｶﾙｼﾌﾄで合わせる", "中心周波数で合わせる"}, 0);
  if (align < 0) return 1;
  const std::string file = path.empty() ? datafiles::Ask_Open_Path(s) : path;
  if (file.empty()) return 1;
  return Read_Overlay_Slot(s, slot, file, align == 1 ? Slot_Align::Cent : Slot_Align::Chem);
}

bool Delete_Slot(Session& s, int slot) {
  if (slot == 0) {
    Show_Message(s, Main_Locked, Icon_Exclamation, "");
    return false;
  }
  if (!Data_Slot(slot) || !Slot_In_Use(s, slot)) return false;
  Overlay_Slot& o = Slot(s, slot);
  if (Show_Message(s, Slot_Number_Text(slot) + ": " + o.Slot_Comment + "を削除します", Style_Yes_No + Icon_Question,
                   "スペクトルの削除") != Msg_Yes)
    return false;
  // The former undo record, and the arrays it still held, go now.
  Overlay_Slot empty = Emptied(o);
  s.Overlay_Undo = {1, static_cast<int16_t>(slot), 0, std::move(o)};
  o = std::move(empty);
  return true;
}

bool Undo_Slot_Change(Session& s) {
  Session::Overlay_Undo_Rec& u = s.Overlay_Undo;
  if (u.Kind == 1) {
    Put_In_Row(Slot(s, u.Slot_A), std::move(u.Kept));
  } else if (u.Kind == 2) {
    Overlay_Slot& a = Slot(s, u.Slot_A);
    Overlay_Slot& b = Slot(s, u.Slot_B);
    std::swap(a, b);
    std::swap(a.Slot_Y_Offset, b.Slot_Y_Offset);
    std::swap(a.Slot_Colour, b.Slot_Colour);
  } else {
    return false;
  }
  u = {};
  return true;
}

bool Copy_Slot(Session& s, int source, int target) {
  if (target == 0) {
    Show_Message(s, Main_Locked, Icon_Exclamation, "");
    return false;
  }
  if (!Data_Slot(target) || source < 0 || source >= Overlay_Rows || source == target) return false;
  if (!Slot_In_Use(s, source)) {
    Show_Message(s, "コピー元にはデータがありません", Icon_Exclamation, "コピー確認");
    return false;
  }
  if (Slot_In_Use(s, target) &&
      Show_Message(s, "コピー先には既にデータがあります\n上書きしますか", Style_Yes_No + Icon_Question, "上書き確認") !=
          Msg_Yes)
    return false;
  Overlay_Slot& row = Slot(s, target);
  if (source == 0)
    row = Slot_From_Session(s, s.Open_Name, row);
  else
    Put_In_Row(row, Slot(s, source));
  return true;
}

bool Exchange_Slots(Session& s, int a, int b) {
  if (a == 0 || b == 0) {
    Show_Message(s, "ｽﾍﾟｸﾄﾙ1　は選択できません。", Icon_Exclamation, "");
    return false;
  }
  if (!Data_Slot(a) || !Data_Slot(b) || a == b) return false;
  if (!Slot_In_Use(s, a) && !Slot_In_Use(s, b)) {
    Show_Message(s, "両方ににデータがありません", Icon_Exclamation, "データ確認");
    return false;
  }
  Overlay_Slot& x = Slot(s, a);
  Overlay_Slot& y = Slot(s, b);
  std::swap(x, y);
  std::swap(x.Slot_Y_Offset, y.Slot_Y_Offset);
  std::swap(x.Slot_Colour, y.Slot_Colour);
  s.Overlay_Undo = {2, static_cast<int16_t>(a), static_cast<int16_t>(b), {}};
  return true;
}

double Slot_Mag(const Session& s, int slot) { return slot == 0 ? s.Y_Mag : Slot(s, slot).Slot_Y_Mag; }

double Slot_Offset(const Session& s, int slot) { return slot == 0 ? s.Y_Offset : Slot(s, slot).Slot_Y_Offset; }

display::Typed_Result Type_Slot_Mag(Session& s, int slot, const std::string& text) {
  display::Typed_Result r;
  double v = 0;
  if (slot >= 0 && slot < Overlay_Rows && display::Parse_Number(text, v) && v > 0) {
    Set_Mag(s, slot, v);
    r.taken = true;
  }
  r.text = Format_Number(Slot_Mag(s, std::clamp(slot, 0, Overlay_Rows - 1)), Row_Format);
  return r;
}

display::Typed_Result Type_Slot_Offset(Session& s, int slot, const std::string& text) {
  display::Typed_Result r;
  double v = 0;
  if (slot >= 0 && slot < Overlay_Rows && display::Parse_Number(text, v) && v > -1 && v < 1) {
    Set_Offset(s, slot, v);
    r.taken = true;
  }
  r.text = Format_Number(Slot_Offset(s, std::clamp(slot, 0, Overlay_Rows - 1)), Row_Format);
  return r;
}

display::Typed_Result Type_Overlay_Shift(Session& s, const std::string& text) {
  display::Typed_Result r;
  double v = 0;
  if (display::Parse_Number(text, v)) {
    s.Overlay_Shift = static_cast<float>(std::clamp(v, -1.0, 1.0));
    display::Store_Setting(s, "MULTI SPEC SHIFT", s.Overlay_Shift);
    r.taken = true;
  }
  r.text = Format_Number(s.Overlay_Shift, Row_Format);
  return r;
}

bool Slot_Mag_Step(Session& s, int slot, bool up) {
  if (slot < 0 || slot >= Overlay_Rows) return false;
  const double v = up ? Slot_Mag(s, slot) * Mag_Step : Slot_Mag(s, slot) / Mag_Step;
  if (v > Mag_Max || v < Mag_Min) return false;
  Set_Mag(s, slot, v);
  return true;
}

bool Slot_Offset_Step(Session& s, int slot, bool up) {
  if (slot < 0 || slot >= Overlay_Rows) return false;
  const double v = Slot_Offset(s, slot) + (up ? Offset_Step : -Offset_Step);
  if (v <= -1 || v >= 1) return false;
  Set_Offset(s, slot, v);
  return true;
}

bool Overlay_Shift_Step(Session& s, bool right) {
  const double v = s.Overlay_Shift + (right ? Shift_Step : -Shift_Step);
  // The last step lands on the limit itself.
  if ((right && s.Overlay_Shift >= 1) || (!right && s.Overlay_Shift <= -1)) return false;
  s.Overlay_Shift = static_cast<float>(std::clamp(v, -1.0, 1.0));
  display::Store_Setting(s, "MULTI SPEC SHIFT", s.Overlay_Shift);
  return true;
}

bool Set_Slot_Show(Session& s, int slot, bool on) { return Set_Flag(s, slot, &Overlay_Slot::Slot_Show, on); }
bool Set_Slot_Show_Peaks(Session& s, int slot, bool on) {
  return Set_Flag(s, slot, &Overlay_Slot::Slot_Show_Peaks, on);
}
bool Set_Slot_Show_Integrals(Session& s, int slot, bool on) {
  return Set_Flag(s, slot, &Overlay_Slot::Slot_Show_Integrals, on);
}

int32_t Slot_Colour(const Session& s, int slot) {
  return display::Setting_Colour(s, "COLOR-" + std::to_string(std::clamp(slot, 1, 9)), 0x808080);
}

void Set_Slot_Colour(Session& s, int slot, int32_t colour) {
  if (!Data_Slot(slot)) return;
  display::Store_Setting(s, "COLOR-" + std::to_string(slot), colour & 0xFFFFFF);
  Slot(s, slot).Slot_Colour = colour & 0xFFFFFF;
}

double Slot_Draw_Full(const Session& s, int slot) {
  return s.Overlay_Compare != 0 ? s.Y_Full_Scale : Slot(s, slot).Slot_Y_Full;
}

void Slot_Draw_Limits(const Session& s, int slot, double& left, double& right) {
  const double move = (static_cast<double>(s.X_Right) - s.X_Left) * Slot(s, slot).Slot_Y_Offset * s.Overlay_Shift;
  left = s.X_Left - move;
  right = s.X_Right - move;
}

std::vector<Stack_Entry> Stack_Order(const Session& s, bool no_cross) {
  std::vector<Stack_Entry> order;
  for (int k = 0; k < Overlay_Rows; ++k)
    if (Slot_In_Use(s, k)) order.push_back({k, 1});
  // Insertion sort by offset: equal offsets keep the slot order.
  for (std::size_t i = 1; i < order.size(); ++i)
    for (std::size_t j = i; j > 0 && Slot_Offset(s, order[j].slot) < Slot_Offset(s, order[j - 1].slot); --j)
      std::swap(order[j], order[j - 1]);
  if (no_cross)
    for (std::size_t i = 0; i + 1 < order.size(); ++i) order[i].clip = Slot_Offset(s, order[i + 1].slot) - 0.01;
  return order;
}

}  // namespace tevo::overlay
