// The older native interchange format (.ALS): "VEX NMR VERSION 1.00" and
// "1.01". Version 1.01 moved every head offset behind the banner 176 bytes
// further on; the parameter block layout is the same in both.
#include <algorithm>
#include <exception>

#include "datafiles/native.h"
#include "datafiles/native_io.h"
#include "session/session.h"
#include "session/settings.h"
#include "session/startup.h"

namespace tevo::datafiles {

using native_io::Image_Reader;
using native_io::Image_Writer;

namespace {

constexpr const char* Banner_100 = "VEX NMR VERSION 1.00";
constexpr const char* Banner_101 = "VEX NMR VERSION 1.01";
constexpr size_t Version_Shift = 176;  // head offsets of 1.01 against 1.00
constexpr size_t Param_Block_Size = 1040;
constexpr const char* Too_Big = "Dataが大きすぎます(または、正しくない)";

// Head offsets of version 1.00; version 1.01 adds Version_Shift.
constexpr size_t H_Banner = 82, H_Directory = 146, H_Integ = 170, H_Display = 178,
                 H_Peaks = 186, H_Insets = 242, H_Notes = 250, H_Overlays = 258,
                 H_Param = 336, H_Kind = 585, H_Rows = 787;

// Fields of the parameter block, by offset inside the block. The nucleus,
// solvent, mode and reference values sit in gaps of the block that the
// older program left unused.
template <class V>
void Older_Fields(V& v, Data_Param& p, Session& s) {
  v.F32(4, p.CSPED);
  v.F32(12, p.CTEMP);
  v.Text(30, 8, p.OBNUC);
  v.Text(38, 8, p.IRNUC);
  v.Text(46, 8, p.TRNUC);
  v.Text(54, 16, p.SLVNT);
  v.Text(110, 32, p.EXMOD);
  v.Text(142, 32, p.DATIM);
  v.Text(174, 32, p.Instrument_Name);
  v.Text(206, 32, p.Probe_Name);
  v.F32(300, p.SMTMS);
  v.F64(304, s.Observe_Frequency);
  v.F64(312, s.Spectrum_Frequency);
  v.F32(320, s.Y_Mag);
  v.F32(324, s.Y_Offset);
  v.F32(328, s.Fid_Scale);
  v.I32(332, p.RGAIN);
  v.F64(336, p.Irr_Frequency);
  v.F32(522, p.OBFRQ);
  v.F32(526, p.OBSET);
  v.F32(530, p.OBFIN);
  v.I16(546, p.OBATN);
  v.F32(558, p.IRFRQ);
  v.F32(562, p.IRSET);
  v.F32(566, p.IRFIN);
  v.F32(578, p.IRPHS);
  v.I16(582, p.IRATN);
  v.I16(584, p.IRRPW);
  v.F32(598, p.TRFRQ);
  v.F32(602, p.TRSET);
  v.F32(606, p.TRFIN);
  v.I16(622, p.TRATN);
  v.I16(624, p.TRRPW);
  for (int k = 0; k < 5; ++k) {
    v.F32(628 + 4 * k, p.PW[k]);
    v.F32(648 + 4 * k, p.PI[k]);
    v.I32(668 + 4 * k, p.LOOP[k]);
    v.F32(688 + 4 * k, p.PS[k]);
  }
  v.F32(728, p.TR);
  v.F32(732, p.INIWT);
  v.F32(736, p.DEADT);
  v.F32(740, p.DELAY);
  v.F32(748, p.INTVL);
  v.F32(752, p.ACQTM);
  v.F32(756, p.PD);
  v.I32(856, p.TIMES);
  v.I32(860, p.DUMMY);
  v.F32(870, p.ADBIT);
  v.I32(874, p.POINT);
  v.I32(882, p.SCANS);
  v.F32(886, p.FREQU);
  v.F32(890, p.FILTR);
  v.F32(894, p.RESOL);
  v.F32(902, p.SMEXR);
  v.I32(910, s.Array_Rows);
  v.I32(914, p.TOSCN);
  v.F32(938, p.Pulse90);
  v.F32(942, p.Pulse90_2);
  v.F32(1020, s.Max_Abs);
}

// Array block: name at 0, unit at 80, "INDIV" (a value list) or "LINAR"
// (start and step) at 90, start at 96, step at 100, values from 104.
size_t Write_Array_Block(Image_Writer& w, size_t at, const Session& s) {
  const size_t rows = static_cast<size_t>(s.Array_Rows);
  w.Text_Field(at, s.Delay_Name, 80);
  w.Text_Field(at + 80, s.Delay_Unit, 8);
  w.Text_Field(at + 90, s.Delay_Linear ? "LINAR" : "INDIV", 6);
  w.F32(at + 96, s.Delay_Start);
  w.F32(at + 100, s.Delay_Step);
  for (size_t k = 0; k < rows; ++k) w.F32(at + 104 + 4 * k, k < s.Delay_List.size() ? s.Delay_List[k] : 0.0f);
  return 104 + 4 * rows;
}

void Read_Array_Block(const Image_Reader& r, size_t at, Session& s) {
  s.Delay_Name = r.Text(at, 80);
  s.Delay_Unit = r.Text(at + 80, 8);
  const std::string mode = r.Text(at + 90, 6);
  // Relaxation series count their rows by LOOP1.
  if ((s.Delay_Name == "T2" || s.Delay_Name == "T2COM" || s.Delay_Name == "LOOP1") && s.Param.LOOP[0] > 1)
    s.Array_Rows = std::min(s.Param.LOOP[0], s.Array_Rows);
  s.Delay_Linear = mode == "LINAR" ? 1 : 0;
  s.Delay_Start = r.F32(at + 96);
  s.Delay_Step = r.F32(at + 100);
  s.Delay_List.assign(static_cast<size_t>(s.Array_Rows), 0.0f);
  for (size_t k = 0; k < s.Delay_List.size(); ++k)
    s.Delay_List[k] = s.Delay_Linear ? s.Delay_Start + s.Delay_Step * static_cast<float>(k)
                                     : r.F32(at + 104 + 4 * k);
}

// Page fields of a file without a display section go back to their defaults.
void Default_Page_Fields(Session& s) {
  for (const session::Setting_Def& d : session::Setting_Keys())
    if (d.type != session::Setting_Type::Text) {
      const std::string key = d.key;
      if (native_io::Is_Page_Key(key)) s.settings.Set(key, d.def_num);
    }
  s.Native.Page.clear();
}

}  // namespace

int Write_Older_Native(Session& s, const std::string& path) {
  Image_Writer w;
  const size_t v = Version_Shift;
  try {
    const int32_t n = std::max(s.Spec_Points, 0), rows = std::max(s.Array_Rows, 1);
    w.Reach(H_Param + v);
    w.bytes[0] = 0;  // a 1D data set
    w.Text_Field(2, s.Param.COMNT, 80);
    w.Text_Field(H_Banner + v, Banner_101, 32);
    w.Text_Field(H_Kind + v, "1D NORM NORM", 32);
    w.I16(H_Rows + v, static_cast<int16_t>(rows));
    Session& cs = s;
    const native_io::Param_Layout block{H_Param + v};
    native_io::Param_Writer bw{w, block};
    Data_Param p = s.Param;
    Older_Fields(bw, p, cs);
    w.I32(H_Param + v + 878, p.POINT);
    w.I32(H_Param + v + 910, rows);
    w.Reach(H_Param + v + Param_Block_Size);

    const size_t dir = H_Directory + v;
    w.I32(dir, static_cast<int32_t>(H_Param + v));
    w.I32(dir + 4, static_cast<int32_t>(Param_Block_Size));
    const size_t data = w.Next_Section();
    const size_t count = static_cast<size_t>(n) * static_cast<size_t>(rows);
    native_io::Write_Data_Block(w, data, s, n, rows);
    w.I32(dir + 8, static_cast<int32_t>(data));
    w.I32(dir + 12, static_cast<int32_t>(8 * count));
    auto pair = [&](size_t head, size_t off, size_t size) {
      w.I32(head + v, static_cast<int32_t>(off));
      w.I32(head + v + 4, static_cast<int32_t>(size));
    };
    if (rows > 1) {
      const size_t arr = w.Next_Section();
      const size_t size = Write_Array_Block(w, arr, s);
      w.I32(dir + 16, static_cast<int32_t>(arr));
      w.I32(dir + 20, static_cast<int32_t>(size));
    }
    size_t off = w.Next_Section();
    pair(H_Integ, off,
         native_io::Write_Integrals(w, off, s.Integrals, s.Integ_Cur, s.Integ_Ref, s.Y_Mag,
                                    s.Integ_Scale, s.Integ_Disp_Mode));
    off = w.Next_Section();
    w.F32(off, s.X_Left);
    w.F32(off + 4, s.X_Right);
    pair(H_Display, off, 8);
    off = w.Next_Section();
    pair(H_Peaks, off,
         native_io::Write_Peaks(w, off, s.Peaks, {s.Peak_Level, s.Base_Level, s.Noise_Level, s.Max_Abs}));
    if (!s.Insets.empty()) {
      off = w.Next_Section();
      pair(H_Insets, off, native_io::Write_Insets(w, off, s.Insets));
    }
    if (!s.Texts.empty()) {
      off = w.Next_Section();
      pair(H_Notes, off, native_io::Write_Texts(w, off, s.Texts));
    }
    // The overlays: one table in the shape of the main format's spectra
    // table, found through the pair at the head's end.
    off = w.Next_Section();
    pair(H_Overlays, off, native_io::Write_Overlay_Table(w, off, s, [&](size_t at, const Overlay_Slot& o) {
           return native_io::Write_Slot_Spectrum(w, at, o);
         }));
  } catch (const std::exception&) {
    return native_io::Run_Time_Failure(s, "WRT/ALS");
  }
  if (!native_io::Save_File(path, w.bytes)) return native_io::Run_Time_Failure(s, "WRT/ALS");
  session::Write_Log(s, "Write", path);
  s.Data_Saved = 1;
  return 0;
}

namespace {

// Version shift of the file, or -1 for a file of another kind.
int Older_Version(const Image_Reader& r) {
  if (r.Text(H_Banner + Version_Shift, 32) == Banner_101) return static_cast<int>(Version_Shift);
  if (r.Text(H_Banner, 32) == Banner_100) return 0;
  return -1;
}

int Read_Older(Session& s, const std::vector<uint8_t>& bytes) {
  Image_Reader r(bytes);
  const int version = Older_Version(r);
  if (version < 0) return native_io::Refuse(s, "Dataが違います", "Dataエラー");
  const size_t v = static_cast<size_t>(version);
  const size_t dir = H_Directory + v;
  const int32_t par = r.I32(dir);
  if (par <= 0) return native_io::Refuse(s, "Dataが違います", "Dataエラー");
  const size_t base = static_cast<size_t>(par);
  const int32_t point = r.I32(base + 874);
  if (point < 1 || point > Fft_Table_Size_Max) return native_io::Refuse(s, Too_Big, "Dataエラー");

  s.Param.COMNT = r.Text(2, 80);
  const native_io::Param_Layout block{base};
  native_io::Param_Reader br{r, block};
  Older_Fields(br, s.Param, s);
  s.Array_Rows = std::max<int32_t>(r.I16(H_Rows + v), 1);
  if (r.I32(dir + 16) > 0) Read_Array_Block(r, static_cast<size_t>(r.I32(dir + 16)), s);

  const int32_t rows = s.Array_Rows;
  const int32_t data = r.I32(dir + 8);
  // Data that the file cannot hold is damage, found before the arrays grow.
  if (!native_io::Data_Block_Fits(r, data, point, rows)) return native_io::Refuse_Damaged(s);
  Alloc_Point_Arrays(s, point);
  s.Spec_Points = point;
  if (data > 0) native_io::Read_Data_Block(r, static_cast<size_t>(data), s, point, rows);
  native_io::Finish_Param_Read(s);
  s.Param.SMODE = 1;

  auto pair = [&](size_t head, size_t& off, size_t& size) {
    const int32_t o = r.I32(head + v), n = r.I32(head + v + 4);
    off = o > 0 ? static_cast<size_t>(o) : 0;
    size = n > 0 ? static_cast<size_t>(n) : 0;
    return off > 0 && size > 0 && r.Has(off, size);
  };
  size_t off = 0, size = 0;
  if (pair(H_Integ, off, size)) {
    native_io::Integ_Head h;
    s.Integrals = native_io::Read_Integrals(r, off, size, h);
    s.Integ_Cur = h.cur;
    if (!s.Integrals.empty()) s.Integ_Ref = h.ref, s.Integ_Scale = h.scale, s.Integ_Disp_Mode = h.disp_mode;
  }
  if (pair(H_Peaks, off, size)) {
    native_io::Peak_Levels lv;
    s.Peaks = native_io::Read_Peaks(r, off, size, lv, s.Param.RESOL, s.Param.FREQU, point);
    s.Peak_Level = lv.peak, s.Base_Level = lv.base, s.Noise_Level = lv.noise;
  }
  if (pair(H_Insets, off, size)) s.Insets = native_io::Read_Insets(r, off, size);
  if (pair(H_Notes, off, size)) native_io::Read_Texts(r, off, s);
  // The overlay mode that keeps the slots skips the stored overlays.
  if (s.Overlay_Read_Mode != 3 && pair(H_Overlays, off, size)) {
    s.Overlay_Shift = r.F32(off);
    for (int n = 1; n <= Overlay_Max; ++n) {
      const size_t rec = native_io::Overlay_Slot_Record(r, off, n);
      Overlay_Slot o;
      if (rec != 0 && native_io::Read_Slot_Spectrum(r, rec, o)) s.Overlay[static_cast<size_t>(n)] = std::move(o);
    }
  }
  if (version == 0) {
    Default_Page_Fields(s);  // version 1.00 has no display section
  } else if (pair(H_Display, off, size) && size >= 8) {
    s.X_Left = r.F32(off);
    s.X_Right = r.F32(off + 4);
  }
  return r.short_read ? -1 : 0;
}

}  // namespace

int Read_Older_Native(Session& s, const std::string& path) {
  return native_io::Read_Whole_File(s, path, "RDR/ALS",
                                    [&](const std::vector<uint8_t>& bytes) { return Read_Older(s, bytes); });
}

Kind_Check Check_Older_Native(const std::string& path) {
  Kind_Check k;
  bool ok = false;
  const std::vector<uint8_t> bytes = native_io::Load_File(path, ok);
  if (!ok) return k.status = -1, k;
  Image_Reader r(bytes);
  const int version = Older_Version(r);
  if (version < 0) return k;
  k.status = 0;
  // Byte 0 is 0 for a 1D data set; anything else leaves the kind empty.
  if (r.Size() > 0 && bytes[0] == 0) {
    k.kind = r.Text(H_Kind + static_cast<size_t>(version), 32);
    if (k.kind.empty()) k.kind = "1D:";
  }
  return k;
}

}  // namespace tevo::datafiles
