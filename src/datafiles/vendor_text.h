// Small text and file helpers shared by the readers of the vendor parameter
// files and JCAMP-DX: whole-file reads, line splitting, trimming, numbers.
#pragma once

#include <cmath>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tevo {
struct Session;
}

namespace tevo::datafiles {

// The whole file as bytes; nullopt when it can't be opened or read.
// `error` receives the program's error number (53 not found, 57 other I/O).
std::optional<std::string> Read_Whole_File(const std::string& path, int* error = nullptr);

// The lines of the whole text by Read_Line_Any: CR, LF or CR LF end a line,
// leading control bytes and empty lines vanish.
std::vector<std::string> Split_Lines(std::string_view bytes);

std::string Trim(std::string_view text);
std::string Upper(std::string_view text);
bool Starts_With_Ci(std::string_view text, std::string_view head);

// A number at the start of the trimmed text (leading blanks allowed, trailing
// text ignored, as the old Val() did); nullopt when the text does not start
// with one.
std::optional<double> Leading_Number(std::string_view text);
// Leading_Number, or 0.
double Val(std::string_view text);

// The smallest power of two >= n (1 for n < 2).
int32_t Next_Power_Of_Two(int32_t n);

// The observe frequency rounded to 0.05 MHz as "0.00" text.
std::string Observe_Text_Of(double mhz);

// A reader's refusal: beep, the message under "Dataエラー", normal cursor;
// returns 1.
int Reader_Refuse(Session& s, const std::string& text);
// A reader's run-time failure: the file error text with the location;
// returns -1.
int Reader_Fail(Session& s, int error_number, const std::string& location);

// Writes an export's lines (UTF-8, written as Shift-JIS with CR LF) and logs
// "Write"; on failure the file error message. Returns 0 written, -1 failed.
int Write_Export_Lines(Session& s, const std::string& path, const std::vector<std::string>& lines);

// The edge of a reader: runs `body` under the hourglass and returns its
// status with the normal cursor back. A read past the end of the bytes
// (std::out_of_range, error 62), memory exhausted (7) or any other exception
// (57) becomes the reader's failure at `location`.
int Guarded_Read(Session& s, const std::string& location, const std::function<int()>& body);

// NMR1D_Form102, "FID/Spectrum選択(Fourie変換？)": asked where a file can't
// tell whether it holds a spectrum or a FID. Returns "1" spectrum, "0" FID,
// "" when cancelled.
std::string NMR1D_Form102(Session& s);

// Round to nearest, ties to even.
inline double Round_Even(double v) { return std::nearbyint(v); }

// A number a file gave, stored in a narrower field: clamped to the field's
// range (NaN gives 0), so that no value of a damaged file overflows.
float To_Real32(double v);
int32_t To_Int32(double v);
int16_t To_Int16(double v);

}  // namespace tevo::datafiles
