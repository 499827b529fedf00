// Pieces shared by the three native formats: a growing little-endian file
// image for the writers, bounds-checked field access for the readers, the
// parameter block layout, the list records and the keyed page blocks.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "datafiles/decoders.h"
#include "datafiles/native.h"

namespace tevo {
struct Session;
struct Data_Param;
struct Font_Rec;
struct Inset_Rec;
struct Peak_Rec;
struct Integ_Rec;
struct Text_Rec;
struct Overlay_Slot;
}  // namespace tevo

namespace tevo::datafiles::native_io {

// The file image a writer builds before it goes to disk in one piece.
class Image_Writer {
 public:
  std::vector<uint8_t> bytes;

  size_t Size() const { return bytes.size(); }
  // Grows the image with zero bytes so that it reaches `end`.
  void Reach(size_t end) {
    if (bytes.size() < end) bytes.resize(end, 0);
  }
  void I16(size_t off, int16_t v) { Reach(off + 2), Put_LE_Int16(bytes, off, v); }
  void I32(size_t off, int32_t v) { Reach(off + 4), Put_LE_Int32(bytes, off, v); }
  void F32(size_t off, float v) { Reach(off + 4), Put_LE_Float32(bytes, off, v); }
  void F64(size_t off, double v) { Reach(off + 8), Put_LE_Float64(bytes, off, v); }
  void Raw(size_t off, const std::vector<uint8_t>& b);
  // Shift-JIS bytes of a UTF-8 text, zero-filled to `width`; a text longer
  // than the field stops at the field's last whole character.
  void Text_Field(size_t off, const std::string& utf8, size_t width);
  // Shift-JIS bytes of the text followed by 4 zero bytes; returns the bytes
  // written including the zeros.
  size_t Text_Block(size_t off, const std::string& utf8);
  // Start of the next section: (bytes so far / 16 + 1) x 16, so that a
  // section ending on a boundary is still followed by 16 zero bytes. The
  // padding up to it is written at once.
  size_t Next_Section();
};

// Field access to a file image that never reads outside it: a field that
// does not fit reads as zero and sets `short_read`.
class Image_Reader {
 public:
  explicit Image_Reader(const std::vector<uint8_t>& b) : bytes(b) {}
  const std::vector<uint8_t>& bytes;
  mutable bool short_read = false;

  size_t Size() const { return bytes.size(); }
  bool Has(size_t off, size_t n) const { return off <= bytes.size() && n <= bytes.size() - off; }
  int16_t I16(size_t off) const;
  int32_t I32(size_t off) const;
  float F32(size_t off) const;
  double F64(size_t off) const;
  std::string Text(size_t off, size_t width) const;  // UTF-8, trimmed
  std::vector<uint8_t> Raw(size_t off, size_t n) const;  // clipped to the image
};

// ---- data block ----
// The points every native format stores alike: all rows of Spec_Re, then
// all rows of Spec_Im, real32 little-endian, the point running fastest;
// 8 x points x rows bytes from `at`. An empty array writes zeros.
void Write_Data_Block(Image_Writer& w, size_t at, const Session& s, int32_t points, int32_t rows);
// Reads such a block into Spec_* and Ft_* (sized by the caller) and marks
// the session as holding a spectrum.
void Read_Data_Block(const Image_Reader& r, size_t at, Session& s, int32_t points, int32_t rows);
// Whether the point arrays may be sized for `points` x `rows` before any of
// it is allocated: a block at `offset` must start inside the file and hold
// 8 x points x rows bytes behind it; with no block (offset 0) nothing fills
// a second row, so only one is allowed. A negative offset is damage.
bool Data_Block_Fits(const Image_Reader& r, int64_t offset, int32_t points, int32_t rows);
// The refusal of a file whose data block does not fit: "Dataが壊れています".
int Refuse_Damaged(Session& s);

// ---- parameter block ----
// The position of each field of the main format's parameter section; the
// version-4 format stores the same fields shifted, which `shift` gives.
struct Param_Layout {
  size_t base = 0;  // file offset of the section
  size_t text_shift = 0;  // added to offsets below 256
  size_t field_shift = 0;  // added to offsets 256 .. 1279
  size_t list_shift = 0;  // added to offsets from 1280
  size_t At(size_t off) const {
    return base + off + (off < 256 ? text_shift : off < 1280 ? field_shift : list_shift);
  }
};
inline constexpr size_t Param_Section_Size = 2560;

// Field visitors over a layout, for the tables of fields that one template
// lists for both the writer and the reader.
struct Param_Writer {
  Image_Writer& w;
  const Param_Layout& at;
  void Text(size_t off, size_t width, const std::string& t) { w.Text_Field(at.At(off), t, width); }
  void F32(size_t off, float v) { w.F32(at.At(off), v); }
  void F64(size_t off, double v) { w.F64(at.At(off), v); }
  void I32(size_t off, int32_t v) { w.I32(at.At(off), v); }
  void I16(size_t off, int16_t v) { w.I16(at.At(off), v); }
};
struct Param_Reader {
  const Image_Reader& r;
  const Param_Layout& at;
  void Text(size_t off, size_t width, std::string& t) { t = r.Text(at.At(off), width); }
  void F32(size_t off, float& v) { v = r.F32(at.At(off)); }
  void F64(size_t off, double& v) { v = r.F64(at.At(off)); }
  void I32(size_t off, int32_t& v) { v = r.I32(at.At(off)); }
  void I16(size_t off, int16_t& v) { v = r.I16(at.At(off)); }
};

void Write_Param_Section(Image_Writer& w, const Session& s, const Param_Layout& at);
// Reads the fields into the session; POINT was checked by the caller.
void Read_Param_Section(const Image_Reader& r, Session& s, const Param_Layout& at);
// RESOL, the repetition time, the scale clamp and the ppm axis after a read.
void Finish_Param_Read(Session& s);

// ---- list records shared by the main format and the overlay tables ----
// Integral head (24 bytes) and 20-byte records; returns the bytes written.
size_t Write_Integrals(Image_Writer& w, size_t off, const std::vector<Integ_Rec>& list,
                       int32_t cur, float ref, float y_mag, float scale, int16_t disp_mode);
struct Integ_Head {
  int32_t cur = -1;
  float ref = 1, y_mag = 0.95f, scale = 1;
  int16_t disp_mode = 0;
};
std::vector<Integ_Rec> Read_Integrals(const Image_Reader& r, size_t off, size_t size,
                                      Integ_Head& head);

// One integral record: End_Point, Start_Point (int32), B0, B1, Curve_Y.
Integ_Rec Read_Integ_Record(const Image_Reader& r, size_t at);
// The point of a peak stored by frequency: frequency / resol, clamped to
// 0 .. points - 1; 0 without a resolution.
int32_t Point_Of_Frequency(float hz, float resol, int32_t points);

struct Peak_Levels {
  float peak = 0.2f, base = 0, noise = 0.05f, max_abs = 0.1f;
};
// Peak head (24 bytes) and layout-2 records of 20 bytes; returns bytes written.
size_t Write_Peaks(Image_Writer& w, size_t off, const std::vector<Peak_Rec>& list,
                   const Peak_Levels& levels);
// Reads any of the three layouts; points come from the frequencies with
// `resol` Hz per point, or frequencies from the points, clamped to `points`.
std::vector<Peak_Rec> Read_Peaks(const Image_Reader& r, size_t off, size_t size,
                                 Peak_Levels& levels, float resol, float frequ, int32_t points);

// One 512-byte inset record at `off`.
void Write_Inset(Image_Writer& w, size_t off, const Inset_Rec& in);
Inset_Rec Read_Inset(const Image_Reader& r, size_t off);

// A 48-byte font record (size, bold, italic, four zero int16, name at 16;
// the inset records keep the name further behind). An empty name reads as
// "ＭＳ ゴシック".
void Write_Font_Record(Image_Writer& w, size_t off, const Font_Rec& f, size_t name_at = 16);
Font_Rec Read_Font_Record(const Image_Reader& r, size_t off, size_t name_at = 16);

// The inset list: count, five zero int32, one 512-byte record per inset
// from 24; returns the bytes written. The reader keeps the records that fit
// in `size`.
size_t Write_Insets(Image_Writer& w, size_t at, const std::vector<Inset_Rec>& insets);
std::vector<Inset_Rec> Read_Insets(const Image_Reader& r, size_t at, size_t size);

// ---- overlay tables ----
// An index of 20 int32 (the overlay shift, then at 4 + 4n the file offset
// of slot n's record, 0 for an empty slot) and one record per slot with more
// than one point, each on a 16-byte boundary and followed by 16 zero bytes.
// `record` lays one slot's record down and returns its size; the table's
// bytes from `at` are returned.
size_t Write_Overlay_Table(Image_Writer& w, size_t at, const Session& s,
                           const std::function<size_t(size_t, const Overlay_Slot&)>& record);
// File offset of slot n's record in the table at `at`, 0 for none.
size_t Overlay_Slot_Record(const Image_Reader& r, size_t at, int n);
// The spectra table's record: start ppm and scale at 0 and 4, point count
// at 8, ppm step (real64) at 12, position, colour and display mode at 20,
// 24, 28, file name at 64, comment at 320, the points as real32 from 576.
// Returns the record's size.
size_t Write_Slot_Spectrum(Image_Writer& w, size_t at, const Overlay_Slot& o);
// Fills the spectrum fields of `o`; false for a record whose point count is
// out of range or whose points run past the file. An empty file name reads
// as "No File Name".
bool Read_Slot_Spectrum(const Image_Reader& r, size_t rec, Overlay_Slot& o);

// The note list: count, one file offset per note, each note on a 16-byte
// boundary behind it; returns the bytes written from `at`.
size_t Write_Texts(Image_Writer& w, size_t at, const std::vector<Text_Rec>& texts);

// ---- notes, lines, pictures and the structure picture, from `off` ----
// Counts outside their limits give empty lists; a note font without a name
// reads as "ＭＳ ゴシック" and a size below 3 as 3.
void Read_Texts(const Image_Reader& r, size_t off, Session& s);
void Read_Lines(const Image_Reader& r, size_t off, Session& s);
void Read_Pictures(const Image_Reader& r, size_t off, Session& s);
void Read_Structure(const Image_Reader& r, size_t off, Session& s);

// ---- keyed page blocks ----
// One field of a page block that stands for a settings key.
struct Keyed_Field {
  uint16_t off;
  uint8_t width;  // 2: int16 followed by 2 zero bytes; 4: the key's own type
  const char* key;
};
enum class Page_Block { Page, Deconv, Relax, List };
// Lays the carried block (or zeros of `size`) down at `off` and writes the
// keyed fields from the settings over it.
void Write_Page_Block(Image_Writer& w, size_t off, const Session& s, Page_Block which,
                      const std::vector<uint8_t>& carried, size_t size);
// True for a settings key that the page settings block carries.
bool Is_Page_Key(const std::string& key);
// Keeps the block's bytes and takes its keyed fields into the settings.
std::vector<uint8_t> Read_Page_Block(const Image_Reader& r, size_t off, size_t size,
                                     Session& s, Page_Block which);

// Messages of the readers.
int Refuse(Session& s, const std::string& text, const std::string& caption);
int Run_Time_Failure(Session& s, const std::string& location);

std::vector<uint8_t> Load_File(const std::string& path, bool& ok);
// The frame of a whole-file reader: loads the file, runs `read` on its
// bytes and turns an unreadable file, an exception or a status -1 into the
// standard message with `location`. Returns the reader's status.
int Read_Whole_File(Session& s, const std::string& path, const char* location,
                    const std::function<int(const std::vector<uint8_t>&)>& read);
bool Save_File(const std::string& path, const std::vector<uint8_t>& bytes);

}  // namespace tevo::datafiles::native_io
