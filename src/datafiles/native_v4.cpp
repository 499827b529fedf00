// The version-4 native format ("TV NMR Ver.4.00" / "4.01", .tvo), read
// only. A head with one (offset, size) pair per data set (the main spectrum
// and up to nine overlays) and one per page section; every section starts
// with a 16-byte head of its own, its fields from offset 16.
#include <algorithm>

#include "datafiles/native.h"
#include "datafiles/native_io.h"
#include "session/messages.h"
#include "session/session.h"
#include "session/settings.h"

namespace tevo::datafiles {

using native_io::Image_Reader;

namespace {

constexpr const char* Banner_400 = "TV NMR Ver.4.00";
constexpr const char* Banner_401 = "TV NMR Ver.4.01";
constexpr const char* Error_Caption = "Dataエラー(RDR V4 in DRW　1D)";
constexpr const char* Broken = "Dataが壊れています";
constexpr size_t Set_Pairs = 520;  // 20 (offset, size) pairs, one per data set
constexpr int Set_Count = 10;  // the main set and nine overlays are read
constexpr size_t Sub_Head = 16;  // every section and subsection opens with 16 bytes
constexpr int32_t Kind_2D = 257;

// Section pairs of the head.
constexpr size_t S_Page = 688, S_Lines = 768, S_Texts = 776, S_Pictures = 784,
                 S_Structure = 792, S_List = 800, S_Row_Labels = 808;

// Subsections of a data set, by pair index in its own directory (offset 32).
enum Sub : size_t { Sub_Param = 0, Sub_Data = 1, Sub_Comment = 2, Sub_Integ = 3, Sub_Peaks = 4, Sub_Insets = 5 };

// The parameter subsection keeps the main layout with its text fields from
// 16, the binary fields 128 further on (RGAIN at 656 as int32) and the lists
// from 1552.
native_io::Param_Layout V4_Param_Layout(size_t at) { return {at, 16, 128, 272}; }

struct Span {
  size_t off = 0, size = 0;
  bool present = false;
};

class V4_Reader {
 public:
  V4_Reader(Session& s, const std::vector<uint8_t>& bytes) : s_(s), r_(bytes) {}

  int Run() {
    const std::string banner = r_.Text(0, 16);
    if (banner != Banner_400 && banner != Banner_401) return native_io::Refuse(s_, "Dataが違います", "Dataエラー");
    v401_ = banner == Banner_401;
    if (r_.I32(516) >= Kind_2D) return native_io::Refuse(s_, "Dataが違います(2D)", Error_Caption);

    Span sets[Set_Count];
    for (int n = 0; n < Set_Count; ++n) sets[n] = Set_Pair(n);
    bool file_has_overlays = false;
    for (int n = 1; n < Set_Count; ++n) file_has_overlays = file_has_overlays || sets[n].present;
    // The overlay mode that keeps the slots skips the stored overlays.
    bool read_overlays = file_has_overlays && s_.Overlay_Read_Mode != 3;
    if (read_overlays && Session_Has_Overlays()) {
      read_overlays = Show_Message(s_, "重ね書きデータに上書きしますか。", Style_Yes_No + Icon_Question,
                                   "重ね書き,上書き確認") == Msg_Yes;
    }

    if (!sets[0].present || Read_Main(sets[0].off) != 0)
      return native_io::Refuse(s_, Broken, Error_Caption);
    if (read_overlays)
      for (int n = 1; n < Set_Count; ++n)
        if (sets[n].present && Read_Slot(sets[n].off, s_.Overlay[static_cast<size_t>(n)]) != 0)
          native_io::Refuse(s_, Broken, Error_Caption);
    Sections();
    return 0;
  }

 private:
  Session& s_;
  Image_Reader r_;
  bool v401_ = true;

  bool Session_Has_Overlays() const {
    for (int n = 1; n <= Overlay_Max; ++n)
      if (s_.Overlay[static_cast<size_t>(n)].Slot_Points > 1) return true;
    return false;
  }

  // A pair that leaves the file counts as absent.
  Span Checked(int64_t off, int64_t size) const {
    Span a;
    if (off <= 0 || size <= 0) return a;
    if (static_cast<uint64_t>(off) + static_cast<uint64_t>(size) > r_.Size()) return a;
    a.off = static_cast<size_t>(off);
    a.size = static_cast<size_t>(size);
    a.present = true;
    return a;
  }
  Span Pair_At(size_t at) const { return Checked(r_.I32(at), r_.I32(at + 4)); }

  // Data-set pair n; its size is the distance to the next set less the
  // 16-byte head, when that distance says more than 256 bytes.
  Span Set_Pair(int n) const {
    const int32_t off = r_.I32(Set_Pairs + 8 * static_cast<size_t>(n));
    int64_t size = r_.I32(Set_Pairs + 8 * static_cast<size_t>(n) + 4);
    for (int k = n + 1; k < 20; ++k) {
      const int32_t next = r_.I32(Set_Pairs + 8 * static_cast<size_t>(k));
      if (next <= 0) continue;
      const int64_t by_distance = static_cast<int64_t>(next) - off - 16;
      if (by_distance > 256) size = by_distance;
      break;
    }
    return Checked(off, size);
  }

  Span Sub_Pair(size_t set, Sub sub) const { return Pair_At(set + 32 + 8 * static_cast<size_t>(sub)); }

  // The part of a data set that main spectrum and overlays share; returns 1
  // for a set that is not what it claims.
  int Read_Set(size_t set, Session& into) {
    if (r_.Text(set, 16) != "1D NORM NORM") return 1;
    const Span par = Sub_Pair(set, Sub_Param);
    if (!par.present) return 1;
    const native_io::Param_Layout layout = V4_Param_Layout(par.off);
    const int32_t point = r_.I32(layout.At(916));
    if (point < 1 || point > Fft_Table_Size_Max) return 1;
    native_io::Read_Param_Section(r_, into, layout);
    into.Array_Rows = std::max(into.Array_Rows, 1);
    const Span data = Sub_Pair(set, Sub_Data);
    const size_t count = static_cast<size_t>(point) * static_cast<size_t>(into.Array_Rows);
    if (data.present && data.size < Sub_Head + 8 * count) return 1;
    if (!native_io::Data_Block_Fits(r_, data.present ? static_cast<int64_t>(data.off + Sub_Head) : 0, point,
                                    into.Array_Rows))
      return 1;
    Alloc_Point_Arrays(into, point);
    into.Spec_Points = point;
    if (data.present) native_io::Read_Data_Block(r_, data.off + Sub_Head, into, point, into.Array_Rows);
    native_io::Finish_Param_Read(into);
    into.Param.SMODE = 1;
    if (const Span c = Sub_Pair(set, Sub_Comment); c.present && c.size > Sub_Head)
      into.Param.COMNT = r_.Text(c.off + Sub_Head, c.size - Sub_Head);
    if (const Span g = Sub_Pair(set, Sub_Integ); g.present) {
      const int32_t n = std::clamp(r_.I32(g.off + 16), 0, Integ_Max);
      into.Integ_Cur = r_.I32(g.off + 20);
      into.Integ_Ref = r_.F32(g.off + 28);
      into.Integ_Scale = r_.F32(g.off + 36);
      into.Integrals.clear();
      for (int32_t k = 0; k < n && 40 + 24 * static_cast<size_t>(k + 1) <= g.size; ++k) {
        into.Integrals.push_back(native_io::Read_Integ_Record(r_, g.off + 40 + 24 * static_cast<size_t>(k)));
      }
    }
    if (const Span p = Sub_Pair(set, Sub_Peaks); p.present) {
      const int32_t n = std::clamp(r_.I32(p.off + 16), 0, Peak_Max);
      into.Peak_Level = r_.F32(p.off + 24);
      into.Base_Level = r_.F32(p.off + 28);
      into.Noise_Level = r_.F32(p.off + 32);
      into.Peaks.clear();
      const float resol = into.Param.RESOL;
      for (int32_t k = 0; k < n && 40 + 24 * static_cast<size_t>(k + 1) <= p.size; ++k) {
        const size_t at = p.off + 40 + 24 * static_cast<size_t>(k);
        Peak_Rec rec;
        rec.Freq_Hz = r_.F32(at);
        rec.Label_Dx = r_.F32(at + 4);
        rec.Label_Dy = r_.F32(at + 8);
        rec.Height = r_.I16(at + 12);
        rec.Point = native_io::Point_Of_Frequency(rec.Freq_Hz, resol, point);
        into.Peaks.push_back(rec);
      }
    }
    return 0;
  }

  int Read_Main(size_t set) {
    if (Read_Set(set, s_) != 0) return 1;
    if (const Span in = Sub_Pair(set, Sub_Insets); in.present) {
      const int32_t n = std::clamp(r_.I32(in.off + 16), 0, Inset_Max);
      s_.Insets.clear();
      for (int32_t k = 0; k < n && 32 + 512 * static_cast<size_t>(k + 1) <= in.size; ++k)
        s_.Insets.push_back(native_io::Read_Inset(r_, in.off + 32 + 512 * static_cast<size_t>(k)));
    }
    return 0;
  }

  int Read_Slot(size_t set, Overlay_Slot& o) {
    Session one;
    one.settings = s_.settings;
    if (Read_Set(set, one) != 0) return 1;
    Overlay_Slot slot;
    const int32_t n = one.Spec_Points;
    slot.Slot_Points = n;
    slot.Slot_Param = one.Param;
    slot.Slot_Observe_Frequency = one.Observe_Frequency;
    slot.Slot_Spectrum_Frequency = one.Spectrum_Frequency;
    slot.Slot_Max_Abs = one.Max_Abs;
    slot.Slot_Y_Full = one.Max_Abs / slot.Slot_Y_Mag;
    slot.Slot_Show = 1;
    slot.Slot_Comment = one.Param.COMNT;
    slot.Slot_Peaks = one.Peaks;
    slot.Slot_Integrals = one.Integrals;
    slot.Slot_X.assign(one.Spec_Axis.begin(), one.Spec_Axis.begin() + n);
    slot.Slot_Y.assign(one.Spec_Re.Row(0).begin(), one.Spec_Re.Row(0).begin() + n);
    o = std::move(slot);
    return 0;
  }

  void Sections() {
    using native_io::Page_Block;
    if (const Span a = Pair_At(S_Page); a.present && a.size > Sub_Head) {
      s_.Native.Page = native_io::Read_Page_Block(r_, a.off + Sub_Head, a.size - Sub_Head, s_, Page_Block::Page);
      s_.X_Left = r_.F32(a.off + Sub_Head);
      s_.X_Right = r_.F32(a.off + Sub_Head + 4);
      Page_Fallbacks();
    }
    // Version 4.00 kept the deconvolution page one pair later.
    const size_t deconv_at = v401_ ? 704 : 712, relax_at = v401_ ? 712 : 720;
    if (const Span a = Pair_At(deconv_at); a.present && a.size > Sub_Head)
      s_.Native.Deconv_Page =
          native_io::Read_Page_Block(r_, a.off + Sub_Head, a.size - Sub_Head, s_, Page_Block::Deconv);
    if (const Span a = Pair_At(relax_at); a.present && a.size > Sub_Head) {
      s_.Native.Relax_Page =
          native_io::Read_Page_Block(r_, a.off + Sub_Head, a.size - Sub_Head, s_, Page_Block::Relax);
      Relax_Fallbacks();
    }
    if (const Span a = Pair_At(S_List); a.present && a.size > Sub_Head)
      s_.Native.List_Page = native_io::Read_Page_Block(r_, a.off + Sub_Head, a.size - Sub_Head, s_, Page_Block::List);
    if (const Span a = Pair_At(S_Lines); a.present) native_io::Read_Lines(r_, a.off + Sub_Head, s_);
    if (const Span a = Pair_At(S_Texts); a.present) native_io::Read_Texts(r_, a.off + Sub_Head, s_);
    if (const Span a = Pair_At(S_Pictures); a.present) native_io::Read_Pictures(r_, a.off + Sub_Head, s_);
    if (const Span a = Pair_At(S_Structure); a.present) native_io::Read_Structure(r_, a.off + Sub_Head, s_);
    if (const Span a = Pair_At(S_Row_Labels); a.present && a.size > Sub_Head)
      s_.Array_Row_Names = r_.Text(a.off + Sub_Head, a.size - Sub_Head);
  }

  static bool Known(const char* key) { return session::Setting_Index(key) >= 0; }

  // A scale level that is not positive is made again from the page size.
  void Page_Fallbacks() {
    if (!Known("Y-LEVEL") || s_.settings.Real("Y-LEVEL") > 0) return;
    if (!Known("Y-LENGTH") || !Known("Y-BOTTOM MARGIN") || !Known("Y-BIAS") || !Known("AXIS FONT SIZE")) return;
    const double level = s_.settings.Real("Y-LENGTH") + s_.settings.Real("Y-BOTTOM MARGIN") +
                         s_.settings.Real("Y-BIAS") -
                         (s_.settings.Real("AXIS FONT SIZE") + 2) * 0.6 * 0.0353;
    s_.settings.Set("Y-LEVEL", level);
  }

  void Relax_Fallbacks() {
    auto fix = [&](const char* key, auto bad, double value) {
      if (Known(key) && bad(s_.settings.Real(key))) s_.settings.Set(key, value);
    };
    fix("CAL CIRCLE RADII", [](double v) { return v < 0; }, 0.0);
    fix("CAL PAPER SIZE", [](double v) { return v == 0; }, 9.0);
    fix("CAL DRAW WIDTH 1", [](double v) { return v < 1; }, 1.0);
    fix("CAL DRAW WIDTH 2", [](double v) { return v < 1; }, 1.0);
    fix("CAL PREVIEW MAG", [](double v) { return !(v > 0); }, 1.0);
  }
};

}  // namespace

int Read1D_DataTevoV4_2(Session& s, const std::string& path) {
  return native_io::Read_Whole_File(s, path, "RDR V4 in DRW",
                                    [&](const std::vector<uint8_t>& bytes) { return V4_Reader(s, bytes).Run(); });
}

Kind_Check Check_Native_V4(const std::string& path) {
  Kind_Check k;
  bool ok = false;
  const std::vector<uint8_t> bytes = native_io::Load_File(path, ok);
  if (!ok) return k.status = -1, k;
  Image_Reader r(bytes);
  const std::string banner = r.Text(0, 16);
  if (banner != Banner_400 && banner != Banner_401) return k;
  k.status = 0;
  k.kind = "1D:V4";
  if (r.I32(516) < Kind_2D) return k;
  // A 2D kind: the words of the set's title say which.
  const int32_t base = r.I32(512);
  std::string words = base >= 0 ? r.Text(static_cast<size_t>(base) + 16, 16) : std::string();
  words.resize(16, ' ');
  const std::string pair = words.substr(3, 4), mode = words.substr(8, 5);
  const bool homo = pair == "HOMO", hetero = pair == "HETE";
  if (mode == "PH RR" && (homo || hetero)) k.kind = homo ? "VPH_HOMO:" : "VPH_HETERO:";
  else if ((mode == "AB AB" || mode == "AB RR") && (homo || hetero)) k.kind = homo ? "V_HOMO:" : "V_HETERO:";
  return k;
}

}  // namespace tevo::datafiles
