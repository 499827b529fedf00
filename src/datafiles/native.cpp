// The main native format ("TV NMR Ver.3.00", .tv1): a fixed head of 3616
// bytes with a directory of (offset, size) pairs, then sections on 16-byte
// boundaries. Little-endian, IEEE numbers, Shift-JIS text.
#include "datafiles/native.h"

#include <algorithm>
#include <cmath>
#include <exception>
#include <filesystem>

#include "datafiles/native_io.h"
#include "overlay/difference.h"
#include "session/session.h"
#include "session/startup.h"

namespace tevo::datafiles {

using native_io::Image_Reader;
using native_io::Image_Writer;

namespace {

constexpr const char* Banner = "TV NMR Ver.3.00";
constexpr const char* Kind_1D = "1D NORM NORM   ";
constexpr size_t Dir = 32;  // the directory: 64 (offset, size) pairs
constexpr size_t Head_Size = 3616;
constexpr size_t Param_Offset = 1056;
constexpr const char* Too_Big = "Dataが大きすぎます(または、正しくない)";

// Directory entries: the offset inside the directory of each section's pair.
enum Entry : size_t {
  E_Data_File = 0, E_Save_Path = 8, E_Param = 16, E_Data = 24, E_Comment1 = 32,
  E_Page = 40, E_Peaks = 48, E_Integ = 56, E_Insets = 64, E_Ov_Spectra = 72,
  E_Deconv = 80, E_Lines = 88, E_Texts = 96, E_Pictures = 104, E_Structure = 112,
  E_Relax = 120, E_Array = 128, E_Ov_Integ = 136, E_Ov_Peaks = 144, E_Ov_Disp = 152,
  E_Markers = 160, E_Names = 168, E_List = 176, E_Comment2 = 184, E_History = 192,
};

// The history section: the save count, who measured, transformed and when,
// the name at measuring, then (by, date) per save.
constexpr size_t History_Field = 32, History_Name = 256,
                 History_Head = 4 + 3 * History_Field + History_Name, History_Entry = 2 * History_Field;

constexpr size_t Page_Size = 800, Deconv_Min = 1028, Relax_Size = 100, List_Size = 304,
                 Marker_Size = 320, Picture_Head = 4096;

// Comment 1 is the first line of COMNT, comment 2 the rest behind it.
void Split_Comment(const std::string& c, std::string& first, std::string& rest) {
  const size_t cut = c.find_first_of("\r\n");
  if (cut == std::string::npos) {
    first = c, rest.clear();
    return;
  }
  first = c.substr(0, cut);
  size_t from = cut + 1;
  if (c[cut] == '\r' && from < c.size() && c[from] == '\n') ++from;
  rest = c.substr(from);
}

class Writer {
 public:
  Writer(const Session& s, const std::string& path) : s_(s), path_(path) {}

  std::vector<uint8_t> Build() {
    w_.Reach(Head_Size + 1);
    w_.Text_Field(0, Banner, 16);
    w_.Text_Field(16, Kind_1D, 16);
    w_.Text_Field(544, s_.Param.Data_File, 255);
    w_.Text_Field(800, path_, 255);
    Pair(E_Data_File, 544, 256);
    Pair(E_Save_Path, 800, 256);
    native_io::Write_Param_Section(w_, s_, {Param_Offset, 0, 0, 0});
    Pair(E_Param, Param_Offset, 2560);
    Data();
    std::string c1, c2;
    Split_Comment(s_.Param.COMNT, c1, c2);
    Comment(E_Comment1, c1);
    Comment(E_Comment2, c2);
    Section(E_Integ, [&](size_t at) {
      return native_io::Write_Integrals(w_, at, s_.Integrals, s_.Integ_Cur, s_.Integ_Ref, s_.Y_Mag,
                                        s_.Integ_Scale, s_.Integ_Disp_Mode);
    });
    Overlay_Table(E_Ov_Integ, [&](size_t at, const Overlay_Slot& o) {
      return native_io::Write_Integrals(w_, at, o.Slot_Integrals, o.Slot_Integrals.empty() ? -1 : 0,
                                        o.Slot_Integ_Ref, o.Slot_Y_Mag, o.Slot_Integ_Scale, 0);
    });
    Section(E_Peaks, [&](size_t at) {
      return native_io::Write_Peaks(w_, at, s_.Peaks,
                                    {s_.Peak_Level, s_.Base_Level, s_.Noise_Level, s_.Max_Abs});
    });
    Overlay_Table(E_Ov_Peaks, [&](size_t at, const Overlay_Slot& o) {
      return native_io::Write_Peaks(w_, at, o.Slot_Peaks,
                                    {o.Slot_Peak_Level, o.Slot_Base_Level, o.Slot_Noise_Level, o.Slot_Max_Abs});
    });
    Section(E_Insets, [&](size_t at) { return native_io::Write_Insets(w_, at, s_.Insets); });
    if (!s_.Texts.empty()) Section(E_Texts, [&](size_t at) { return native_io::Write_Texts(w_, at, s_.Texts); });
    Overlay_Table(E_Ov_Disp, [&](size_t at, const Overlay_Slot& o) { return Slot_Display(at, o); });
    Overlay_Table(E_Ov_Spectra,
                  [&](size_t at, const Overlay_Slot& o) { return native_io::Write_Slot_Spectrum(w_, at, o); });
    Section(E_Page, [&](size_t at) { return Page(at); });
    Section(E_Deconv, [&](size_t at) {
      const size_t n = std::max(s_.Native.Deconv_Page.size(), Deconv_Min);
      native_io::Write_Page_Block(w_, at, s_, native_io::Page_Block::Deconv, s_.Native.Deconv_Page, n);
      return n;
    });
    if (!s_.Lines.empty()) Section(E_Lines, [&](size_t at) { return Lines(at); });
    if (!s_.Images.empty()) Section(E_Pictures, [&](size_t at) { return Pictures(at); });
    if (!s_.Structure.Body.empty() || s_.Structure.Show != 0)
      Section(E_Structure, [&](size_t at) { return Structure(at); });
    Section(E_Relax, [&](size_t at) {
      native_io::Write_Page_Block(w_, at, s_, native_io::Page_Block::Relax, s_.Native.Relax_Page, Relax_Size);
      return Relax_Size;
    });
    if (s_.Array_Rows >= 2) Section(E_Array, [&](size_t at) { return Array_Values(at); });
    Section(E_Markers, [&](size_t at) {
      std::vector<uint8_t> m = s_.Native.Markers;
      m.resize(Marker_Size, 0);
      w_.Raw(at, m);
      return Marker_Size;
    });
    w_.I32(Dir + E_Markers + 4, 160);  // the size field has always said 160
    Section(E_List, [&](size_t at) {
      native_io::Write_Page_Block(w_, at, s_, native_io::Page_Block::List, s_.Native.List_Page, List_Size);
      return List_Size;
    });
    if (!s_.Array_Sources.empty()) Section(E_Names, [&](size_t at) { return Names(at); });
    // The history's place in the file is this program's own choice: a free directory entry.
    Section(E_History, [&](size_t at) { return History(at); });
    return std::move(w_.bytes);
  }

 private:
  const Session& s_;
  std::string path_;
  Image_Writer w_;

  void Pair(size_t entry, size_t off, size_t size) {
    w_.I32(Dir + entry, static_cast<int32_t>(off));
    w_.I32(Dir + entry + 4, static_cast<int32_t>(size));
  }

  // Lays one section down at the next boundary and enters it.
  template <class F>
  void Section(size_t entry, F&& body) {
    const size_t at = w_.Next_Section();
    const size_t size = body(at);
    w_.Reach(at + size);
    Pair(entry, at, size);
  }

  void Data() {
    const int32_t n = s_.Spec_Points, rows = std::max(s_.Array_Rows, 1);
    if (n <= 0 || s_.Spec_Re.Empty()) return;
    const size_t count = static_cast<size_t>(n) * static_cast<size_t>(rows);
    native_io::Write_Data_Block(w_, Head_Size, s_, n, rows);
    Pair(E_Data, Head_Size, count * 8);
  }

  void Comment(size_t entry, const std::string& text) {
    const size_t at = w_.Next_Section();
    const size_t n = w_.Text_Block(at, text);
    Pair(entry, at, text.empty() ? 0 : n);
  }

  template <class F>
  void Overlay_Table(size_t entry, F&& record) {
    Section(entry, [&](size_t at) { return native_io::Write_Overlay_Table(w_, at, s_, record); });
  }

  size_t Slot_Display(size_t at, const Overlay_Slot& o) {
    w_.F32(at, o.Slot_Y_Full);
    w_.I16(at + 4, o.Slot_Show_Peaks);
    w_.I16(at + 8, o.Slot_Show_Integrals);
    Session slot;  // the slot's parameters in the layout of the main set
    slot.Param = o.Slot_Param;
    slot.Observe_Frequency = o.Slot_Observe_Frequency;
    slot.Spectrum_Frequency = o.Slot_Spectrum_Frequency;
    slot.Max_Abs = o.Slot_Max_Abs;
    slot.Y_Mag = o.Slot_Y_Mag;
    slot.Y_Offset = o.Slot_Y_Offset;
    slot.settings = s_.settings;
    native_io::Write_Param_Section(w_, slot, {at + 16, 0, 0, 0});
    return 16 + native_io::Param_Section_Size;
  }

  size_t Lines(size_t at) {
    const size_t n = std::min(s_.Lines.size(), static_cast<size_t>(Line_Max));
    w_.I32(at, static_cast<int32_t>(n));
    w_.Reach(at + 4 + 32 * n);
    for (size_t k = 0; k < n; ++k) {
      const Line_Rec& l = s_.Lines[k];
      const size_t rec = at + 4 + 32 * k;
      w_.F32(rec, l.X1);
      w_.F32(rec + 4, l.Y1);
      w_.F32(rec + 8, l.X2);
      w_.F32(rec + 12, l.Y2);
      w_.I32(rec + 16, l.Colour);
      w_.I16(rec + 20, l.Width);
      w_.I16(rec + 22, l.Arrow_Width);
      w_.I16(rec + 24, l.Kind);
      w_.I16(rec + 26, l.Style);
    }
    return 4 + 32 * n;
  }

  size_t Pictures(size_t at) {
    const size_t n = std::min(s_.Images.size(), size_t{20});
    w_.Reach(at + Picture_Head);
    w_.I32(at, static_cast<int32_t>(n));
    for (size_t k = 0; k < n; ++k) {
      const Image_Rec& p = s_.Images[k];
      const size_t h = at + 4 + 32 * k;
      w_.F32(h, p.Left);
      w_.F32(h + 4, p.Top);
      w_.F32(h + 8, p.Width);
      w_.F32(h + 12, p.Height);
      w_.I32(h + 16, static_cast<int32_t>(p.Body.size()));
      w_.I32(h + 20, p.Extra);
      const size_t body = k == 0 ? at + Picture_Head : w_.Next_Section();
      w_.Raw(body, p.Body);
    }
    return w_.Size() - at;
  }

  size_t Structure(size_t at) {
    const Structure_Rec& st = s_.Structure;
    w_.Reach(at + 32);
    w_.I16(at, st.Show);
    w_.F32(at + 4, st.Value_A);
    w_.F32(at + 8, st.Value_B);
    w_.I32(at + 12, static_cast<int32_t>(st.Body.size()));
    w_.Raw(at + 32, st.Body);
    return 32 + st.Body.size();
  }

  size_t Page(size_t at) {
    native_io::Write_Page_Block(w_, at, s_, native_io::Page_Block::Page, s_.Native.Page, Page_Size);
    w_.F32(at, s_.X_Left);
    w_.F32(at + 4, s_.X_Right);
    return std::max(s_.Native.Page.size(), Page_Size);
  }

  size_t Array_Values(size_t at) {
    const size_t rows = static_cast<size_t>(s_.Array_Rows);
    w_.I32(at + 4, s_.Array_Rows);
    w_.F32(at + 8, s_.Delay_Start);
    w_.F32(at + 12, s_.Delay_Step);
    for (size_t k = 0; k < rows; ++k) {
      w_.F32(at + 16 + 4 * k, k < s_.Delay_List.size() ? s_.Delay_List[k] : 0.0f);
      w_.F32(at + 16 + 4 * (rows + k), k < s_.Delay_Raw.size() ? s_.Delay_Raw[k] : 0.0f);
    }
    const size_t names = w_.Next_Section();
    w_.I32(at, static_cast<int32_t>(names));
    w_.Text_Block(names, s_.Array_Row_Names);
    return w_.Size() - at;
  }

  size_t History(size_t at) {
    const size_t n = std::min(s_.Save_By.size(), s_.Save_Date.size());
    w_.I32(at, static_cast<int32_t>(n));
    w_.Text_Field(at + 4, s_.Measured_By, History_Field);
    w_.Text_Field(at + 4 + History_Field, s_.Transformed_By, History_Field);
    w_.Text_Field(at + 4 + 2 * History_Field, s_.Transformed_Date, History_Field);
    w_.Text_Field(at + 4 + 3 * History_Field, s_.Measured_Name, History_Name);
    for (size_t k = 0; k < n; ++k) {
      const size_t e = at + History_Head + History_Entry * k;
      w_.Text_Field(e, s_.Save_By[k], History_Field);
      w_.Text_Field(e + History_Field, s_.Save_Date[k], History_Field);
    }
    w_.Reach(at + History_Head + History_Entry * n);
    return History_Head + History_Entry * n;
  }

  size_t Names(size_t at) {
    const size_t n = s_.Array_Sources.size();
    const size_t first = at + 32, list = first + 64;
    w_.I32(at, static_cast<int32_t>(n));
    w_.I32(at + 4, static_cast<int32_t>(first));
    w_.I32(at + 12, static_cast<int32_t>(list));
    w_.I32(at + 16, static_cast<int32_t>(n - 1));
    for (size_t k = 0; k < n; ++k) {
      const size_t e = first + 64 * k;
      w_.Text_Field(e, s_.Array_Sources[k].Data_Name, 32);
      w_.Text_Field(e + 32, s_.Array_Sources[k].Param_Name, 32);
    }
    return 32 + 64 * n;
  }
};

// ---------------------------------------------------------------- reader ----

struct Section_At {
  size_t off = 0, size = 0;
  bool present = false;
};

class Reader {
 public:
  Reader(Session& s, const std::vector<uint8_t>& bytes) : s_(s), r_(bytes) {}

  int Run() {
    if (r_.Text(0, 16) != Banner) return native_io::Refuse(s_, "Dataが違います", "Dataエラー");
    for (size_t e = 0; e <= E_History; e += 8) dir_[e / 8] = Look_Up(e);

    const Section_At par = dir_[E_Param / 8];
    if (!par.present) return native_io::Refuse(s_, "Dataが違います", "Dataエラー");
    // POINT first, so that a damaged file stops before any field is taken.
    const int32_t point = r_.I32(par.off + 916);
    if (point < 1 || point > Fft_Table_Size_Max) return native_io::Refuse(s_, Too_Big, "Dataエラー");

    s_.Param.Data_File = r_.Text(544, 256);
    native_io::Read_Param_Section(r_, s_, {par.off, 0, 0, 0});
    s_.Param.COMNT = Comment(E_Comment1);
    const std::string c2 = Comment(E_Comment2);
    if (!c2.empty()) s_.Param.COMNT += "\r\n" + c2;

    if (!Data()) return native_io::Refuse_Damaged(s_);
    native_io::Finish_Param_Read(s_);
    s_.Param.SMODE = 1;
    Lists();
    if (s_.Overlay_Read_Mode != 3) Overlays();
    Page_Blocks();
    Pictures();
    Array_Values();
    Names();
    History();
    return r_.short_read ? -1 : 0;
  }

 private:
  Session& s_;
  Image_Reader r_;
  Section_At dir_[E_History / 8 + 1];

  // A pair with a zero offset or size is absent; one that leaves the file
  // is damage.
  Section_At Look_Up(size_t entry) {
    Section_At a;
    const int32_t off = r_.I32(Dir + entry), size = r_.I32(Dir + entry + 4);
    if (off <= 0 || size <= 0) return a;
    a.off = static_cast<size_t>(off);
    a.size = static_cast<size_t>(size);
    a.present = true;
    if (!r_.Has(a.off, entry == E_Markers ? Marker_Size : a.size)) r_.short_read = true;
    return a;
  }
  const Section_At& At(size_t entry) const { return dir_[entry / 8]; }

  std::string Comment(size_t entry) {
    const Section_At& a = At(entry);
    if (!a.present || a.size <= 4) return {};
    return r_.Text(a.off, a.size - 4);
  }

  // The data block; false, before the arrays are sized, when the file
  // cannot hold the rows and points the parameters say.
  bool Data() {
    const int32_t n = s_.Param.POINT, rows = std::max(s_.Array_Rows, 1);
    const Section_At& a = At(E_Data);
    const int32_t off = r_.I32(Dir + E_Data);  // a negative offset is damage, not absence
    if (!native_io::Data_Block_Fits(r_, a.present ? off : std::min(off, 0), n, rows)) return false;
    Alloc_Point_Arrays(s_, n);
    s_.Spec_Points = n;
    if (a.present) native_io::Read_Data_Block(r_, a.off, s_, n, rows);
    return true;
  }

  void Lists() {
    const float resol = s_.Param.RESOL, frequ = s_.Param.FREQU;
    const int32_t points = s_.Param.POINT;
    if (const Section_At& a = At(E_Integ); a.present) {
      native_io::Integ_Head h;
      s_.Integrals = native_io::Read_Integrals(r_, a.off, a.size, h);
      s_.Integ_Cur = h.cur;
      if (!s_.Integrals.empty()) {
        s_.Integ_Ref = h.ref;
        s_.Integ_Scale = h.scale;
        s_.Integ_Disp_Mode = h.disp_mode;
      }
    }
    if (const Section_At& a = At(E_Peaks); a.present) {
      native_io::Peak_Levels lv;
      s_.Peaks = native_io::Read_Peaks(r_, a.off, a.size, lv, resol, frequ, points);
      s_.Peak_Level = lv.peak;
      s_.Base_Level = lv.base;
      s_.Noise_Level = lv.noise;
    }
    if (const Section_At& a = At(E_Insets); a.present) s_.Insets = native_io::Read_Insets(r_, a.off, a.size);
    if (const Section_At& a = At(E_Texts); a.present) native_io::Read_Texts(r_, a.off, s_);
    if (const Section_At& a = At(E_Lines); a.present) native_io::Read_Lines(r_, a.off, s_);
  }

  // Record offset of slot n in an overlay table, 0 for none.
  size_t Slot_Record(const Section_At& a, int n) {
    return a.present ? native_io::Overlay_Slot_Record(r_, a.off, n) : 0;
  }

  void Overlays() {
    const Section_At& spectra = At(E_Ov_Spectra);
    if (!spectra.present) return;
    s_.Overlay_Shift = r_.F32(spectra.off);
    for (int n = 1; n <= Overlay_Max; ++n) {
      const size_t rec = Slot_Record(spectra, n);
      if (rec == 0) continue;
      Overlay_Slot o;
      if (!native_io::Read_Slot_Spectrum(r_, rec, o)) continue;
      if (const size_t d = Slot_Record(At(E_Ov_Disp), n); d != 0) {
        o.Slot_Y_Full = r_.F32(d);
        o.Slot_Show_Peaks = r_.I16(d + 4);
        o.Slot_Show_Integrals = r_.I16(d + 8);
        Session slot;
        native_io::Read_Param_Section(r_, slot, {d + 16, 0, 0, 0});
        o.Slot_Param = slot.Param;
        o.Slot_Observe_Frequency = slot.Observe_Frequency;
        o.Slot_Spectrum_Frequency = slot.Spectrum_Frequency;
        o.Slot_Max_Abs = slot.Max_Abs;
      }
      if (const size_t p = Slot_Record(At(E_Ov_Peaks), n); p != 0) {
        native_io::Peak_Levels lv;
        o.Slot_Peaks = native_io::Read_Peaks(r_, p, r_.Size() - p, lv, o.Slot_Param.RESOL,
                                             o.Slot_Param.FREQU, o.Slot_Param.POINT);
        o.Slot_Peak_Level = lv.peak;
        o.Slot_Base_Level = lv.base;
        o.Slot_Noise_Level = lv.noise;
      }
      if (const size_t g = Slot_Record(At(E_Ov_Integ), n); g != 0) {
        native_io::Integ_Head h;
        o.Slot_Integrals = native_io::Read_Integrals(r_, g, r_.Size() - g, h);
        o.Slot_Integ_Ref = h.ref;
        o.Slot_Integ_Scale = h.scale;
      }
      s_.Overlay[static_cast<size_t>(n)] = std::move(o);
    }
  }

  void Page_Blocks() {
    if (const Section_At& a = At(E_Page); a.present) {
      s_.Native.Page = native_io::Read_Page_Block(r_, a.off, a.size, s_, native_io::Page_Block::Page);
      s_.X_Left = r_.F32(a.off);
      s_.X_Right = r_.F32(a.off + 4);
    }
    if (const Section_At& a = At(E_Deconv); a.present)
      s_.Native.Deconv_Page = native_io::Read_Page_Block(r_, a.off, a.size, s_, native_io::Page_Block::Deconv);
    if (const Section_At& a = At(E_Relax); a.present)
      s_.Native.Relax_Page = native_io::Read_Page_Block(r_, a.off, a.size, s_, native_io::Page_Block::Relax);
    if (const Section_At& a = At(E_List); a.present)
      s_.Native.List_Page = native_io::Read_Page_Block(r_, a.off, a.size, s_, native_io::Page_Block::List);
    if (const Section_At& a = At(E_Markers); a.present) s_.Native.Markers = r_.Raw(a.off, Marker_Size);
  }

  void Pictures() {
    if (const Section_At& a = At(E_Pictures); a.present) native_io::Read_Pictures(r_, a.off, s_);
    if (const Section_At& a = At(E_Structure); a.present) native_io::Read_Structure(r_, a.off, s_);
  }

  void Array_Values() {
    const Section_At& a = At(E_Array);
    if (!a.present || s_.Array_Rows < 2) return;
    const size_t rows = static_cast<size_t>(std::clamp(r_.I32(a.off + 4), 0, s_.Array_Rows));
    s_.Delay_Start = r_.F32(a.off + 8);
    s_.Delay_Step = r_.F32(a.off + 12);
    s_.Delay_List.assign(rows, 0.0f);
    s_.Delay_Raw.assign(rows, 0.0f);
    for (size_t k = 0; k < rows; ++k) {
      s_.Delay_List[k] = r_.F32(a.off + 16 + 4 * k);
      s_.Delay_Raw[k] = r_.F32(a.off + 16 + 4 * (rows + k));
    }
    const int32_t names = r_.I32(a.off);
    if (names > 0 && static_cast<size_t>(names) < a.off + a.size)
      s_.Array_Row_Names = r_.Text(static_cast<size_t>(names), a.off + a.size - static_cast<size_t>(names));
  }

  // Files written before the history had a place have none; a count the
  // section cannot hold leaves it out too.
  void History() {
    const Section_At& a = At(E_History);
    if (!a.present || a.size < History_Head) return;
    const int32_t n = r_.I32(a.off);
    if (n < 0 || static_cast<size_t>(n) > (a.size - History_Head) / History_Entry) return;
    // The section's size may claim more than the file holds: the entries
    // must be present, or none is taken.
    if (!r_.Has(a.off, History_Head + History_Entry * static_cast<size_t>(n))) return;
    s_.Measured_By = r_.Text(a.off + 4, History_Field);
    s_.Transformed_By = r_.Text(a.off + 4 + History_Field, History_Field);
    s_.Transformed_Date = r_.Text(a.off + 4 + 2 * History_Field, History_Field);
    s_.Measured_Name = r_.Text(a.off + 4 + 3 * History_Field, History_Name);
    for (size_t k = 0; k < static_cast<size_t>(n); ++k) {
      const size_t e = a.off + History_Head + History_Entry * k;
      s_.Save_By.push_back(r_.Text(e, History_Field));
      s_.Save_Date.push_back(r_.Text(e + History_Field, History_Field));
    }
  }

  void Names() {
    const Section_At& a = At(E_Names);
    if (!a.present) return;
    const int32_t total = r_.I32(a.off);
    if (total < 1 || total > 10000) return;
    s_.Array_Sources.clear();
    auto take = [&](size_t e) {
      Source_Pair p{r_.Text(e, 32), r_.Text(e + 32, 32)};
      if (!p.Data_Name.empty()) s_.Array_Sources.push_back(p);
    };
    take(static_cast<size_t>(r_.I32(a.off + 4)));
    const size_t list = static_cast<size_t>(r_.I32(a.off + 12));
    const int32_t len = std::clamp(r_.I32(a.off + 16), 0, total);
    for (int32_t k = 0; k < len; ++k) take(list + 64 * static_cast<size_t>(k));
  }
};

}  // namespace

int Write_Native(Session& s, const std::string& path) {
  overlay::Store_DEPT_Settings(s);  // the page block takes them from the settings
  std::vector<uint8_t> bytes;
  try {
    bytes = Writer(s, path).Build();
  } catch (const std::exception&) {
    return native_io::Run_Time_Failure(s, "WRT/DRW");
  }
  if (!native_io::Save_File(path, bytes)) return native_io::Run_Time_Failure(s, "WRT/DRW");
  session::Write_Log(s, "Write", path);
  s.Data_Saved = 1;
  return 0;
}

int Read_Native(Session& s, const std::string& path) {
  return native_io::Read_Whole_File(s, path, "RDR/DRW",
                                    [&](const std::vector<uint8_t>& bytes) { return Reader(s, bytes).Run(); });
}

Kind_Check Check_Native(const std::string& path) {
  Kind_Check k;
  bool ok = false;
  const std::vector<uint8_t> bytes = native_io::Load_File(path, ok);
  if (!ok) return k.status = -1, k;
  Image_Reader r(bytes);
  if (r.Text(0, 16) != Banner) return k;
  const std::string kind = r.Text(16, 16);
  k.kind = kind;  // "1D NORM NORM", or "2D..." for a file of the 2D program
  k.status = 0;
  return k;
}

}  // namespace tevo::datafiles
