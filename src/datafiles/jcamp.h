// JCAMP-DX NMR files: the check, the reader of spectra and FIDs (XYDATA and
// NTUPLES with real and imaginary pages, every ASDF number form), and the two
// writers of the program (compact DIF/DUP and extended NTUPLES).
// Status words: 0 good, 1 refused after a message, -1 run-time failure,
// 2 (check only) a multi-dimensional set.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "datafiles/native.h"

namespace tevo {
struct Session;
}

namespace tevo::datafiles {

// ---- the ASDF number stream ----

enum class Asdf_Form : int8_t { Affn, Sqz, Dif, Dup, Missing, Error, End };

struct Asdf_Token {
  double value = 0;  // the number (for DUP the repeat count)
  Asdf_Form form = Asdf_Form::End;
};

// Scans one number of a data line starting at `pos` and moves `pos` behind
// it. Blanks and commas separate numbers; "$$" ends the line (End). "?" is a
// missing value. A sign right behind a number starts the next one (PAC).
// "E"/"e" is an exponent only when a sign and a digit follow; otherwise it is
// the SQZ digit 5.
Asdf_Token Next_Asdf_Token(std::string_view line, std::size_t& pos);

// Decodes the data lines of one table into Y values. The first number of a
// line is its X check value and not a point. When a line ended in DIF form,
// the first Y of the next line repeats the last point (the check point): it
// replaces that point and is counted in check_count, and in check_failures
// when it differs.
struct Asdf_Decoder {
  std::vector<double> y;
  std::vector<double> line_x;  // X check value of each line
  std::vector<double> line_x_unit;  // the last printed digit's value of that X
  std::vector<int32_t> line_first;  // index in y of each line's first point
  int32_t check_count = 0;
  int32_t check_failures = 0;
  bool prev_ended_dif = false;
  // 0 good, -1 a token that doesn't decode.
  int Add_Line(std::string_view line);
};

// The integer `value` in one of the forms: AFFN (" 123", " -123"), SQZ
// ("@ABCDEFGHI" / "abcdefghi" for the leading digit), DIF ("%JKLMNOPQR" /
// "jklmnopqr"), DUP (count; "STUVWXYZs" for the leading digit) and PAC
// ("+123", "-123").
enum class Asdf_Out : int8_t { Affn, Sqz, Dif, Dup, Pac };
std::string Encode_Asdf(int64_t value, Asdf_Out form);

// ---- the files ----

// Scans the labels up to the first data table: kind "JCAMP-DX" (or the
// experiment of the parameter blocks), status 0 for 1D NMR data, 2 for a
// multi-dimensional set, 1 when the file is not NMR JCAMP-DX, -1 on a read
// failure (location "RMJ/DRW").
Kind_Check RMJ(const std::string& path);

// What the reader found beyond the session fields; tests and the open use it.
struct Jcamp_Read_Info {
  int32_t npoints = 0;  // ##NPOINTS or ##VAR_DIM
  int32_t points_read = 0;  // real points decoded
  int32_t check_count = 0, check_failures = 0;  // DIF check points
  bool has_imaginary = false;
  bool x_in_hz = false;
};

// Reads a 1D NMR spectrum (SMODE 1) or FID (SMODE 0) into the session.
// A spectrum fills Spec_*/Ft_* and Spec_Axis ascending in ppm; a FID fills
// Fid_Re/Fid_Im. Location "RDJ/DRW".
int RDJ(Session& s, const std::string& path, Jcamp_Read_Info* info = nullptr);
// RDJ as the open's routing table calls it.
inline int Read_Jcamp(Session& s, const std::string& path) { return RDJ(s, path); }

// The spectrum of the current row as compact JCAMP-DX (XYDATA, DIF/DUP).
int Write_Jcamp_Compact(Session& s, const std::string& path);
// The spectrum of the current row as extended JCAMP-DX (NTUPLES, real and
// imaginary pages).
int Write_Jcamp_Extended(Session& s, const std::string& path);

// Number text of the old Format() patterns: at least `min_int` integer
// digits (0 drops a lone leading zero: ".5"), between `min_dec` and
// `max_dec` decimals, and the point kept when `point` is set even with no
// decimals ("400.").
std::string Format_Fixed(double value, int min_int, int min_dec, int max_dec, bool point = true);

}  // namespace tevo::datafiles
