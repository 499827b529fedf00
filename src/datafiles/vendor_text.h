// Small text and file helpers shared by the readers of the vendor parameter
// files and JCAMP-DX: whole-file reads, line splitting, trimming, numbers.
#pragma once

#include <cmath>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tevo::datafiles {

// The whole file as bytes; nullopt when it can't be opened or read.
// `error` receives the program's error number (53 not found, 57 other I/O).
std::optional<std::string> Read_Whole_File(const std::string& path, int* error = nullptr);

// Splits the bytes into lines: CR, LF or CR LF end a line. The last line
// counts even without an ending.
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

// Round to nearest, ties to even.
inline double Round_Even(double v) { return std::nearbyint(v); }

}  // namespace tevo::datafiles
