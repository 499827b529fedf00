// Data files of the smaller vendor families, built byte by byte from their
// published layouts, and damaged copies of them: cut at several lengths,
// counts in the head made huge or negative.
#pragma once

#include <complex>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace tevo::test {

// What a built file holds.
struct Vendor_Spec {
  bool spectrum = false;
  int32_t points = 1024;  // complex points a row
  int32_t rows = 1;
  double observe_mhz = 400.13;  // carrier
  double sweep_hz = 8000;
  double shift_ppm = 4.5;  // shift of the reference point (the carrier; MAC: the first point)
  double line_hz = 1000;  // offset of the FID's one line from the carrier
  std::string nucleus = "1H";  // as the program names it
  std::string kind = "ZG30";
  double amplitude = 1e5;  // of the FID's first point, row 1
};

// Point k of row r as the program holds it after the read (file order for
// a spectrum; a FID in the program's own sense: conjugated, so that the
// line lands at +line_hz). Whole numbers, so that every word type holds them.
std::complex<float> Vendor_Point(const Vendor_Spec& spec, int32_t k, int32_t r);

// Where a family's files were built.
struct Built_File {
  std::filesystem::path folder;  // everything of the data set, and nothing else
  std::string open;  // given to the open command, relative to the folder
  std::string data;  // the file the cuts shorten
  struct Patch {
    std::string file;
    size_t offset;
    std::vector<uint8_t> bytes;
  };
  std::vector<Patch> bad_counts;  // each alone makes a count huge or negative
  struct Edit {
    std::string file, from, to;
  };
  std::vector<Edit> bad_text;  // the same for a text head
  std::filesystem::path Open() const { return folder / open; }
};

// Aspect ".MSL": 24-bit words; spec.kind is the name, spec.shift_ppm a
// negative or positive float48.
Built_File Build_Msl(const std::filesystem::path& folder, const Vendor_Spec& spec);
// GE Omega ".FID" with its ".HED" text.
Built_File Build_Ge(const std::filesystem::path& folder, const Vendor_Spec& spec);
// Chemagnetics folder: acq, acq_2, proc, data and the marker "Spec.CMX";
// rows above 1 are NO_STEPS with STEP_SIZE 0.25.
Built_File Build_Cmx(const std::filesystem::path& folder, const Vendor_Spec& spec);
// NUTS type 1 ("nuts.fid"), 2 or 3 ("nuts.nut").
Built_File Build_Nuts(const std::filesystem::path& folder, const Vendor_Spec& spec, int type);
// MAC FID ".import".
Built_File Build_Mac(const std::filesystem::path& folder, const Vendor_Spec& spec);
// Keyed CSV: "$CSVSTART", keys, "$END", "re,im" lines.
Built_File Build_Csv(const std::filesystem::path& folder, const Vendor_Spec& spec);

// Varian folder: procpar, text and either "fid" (FID rows in `words`,
// rows above 1 an array of d1 values 0.1, 0.2, ...) or, for a spectrum,
// "datdir/data" (complex float words) with the parameters in the parent folder.
enum class Varian_Words { Int16, Int32, Float32 };
Built_File Build_Varian(const std::filesystem::path& folder, const Vendor_Spec& spec,
                        Varian_Words words = Varian_Words::Int32);
// JEOL EX/GX/GSX pair "ex.gxp" / "ex.gxd": the keyed layout (a head line,
// keys one a line, an empty line, then a stray POINT line that must not
// count) or the long-line layout; rows above 1 through CLPNT.
Built_File Build_Ex(const std::filesystem::path& folder, const Vendor_Spec& spec, bool long_line);
// JEOL ALPHA "alpha.nmf": VAX D doubles in the head, the data at 16384
// (`long_head`) or 8704, VAX F floats for a spectrum.
Built_File Build_Alpha(const std::filesystem::path& folder, const Vendor_Spec& spec, bool long_head);
// JEOL LAMBDA "lambda.nmfid" (FID) or "lambda.nmdata" (spectrum).
Built_File Build_Lambda(const std::filesystem::path& folder, const Vendor_Spec& spec);

// VAX F (4 bytes) and VAX D (8 bytes) numbers.
void Put_Vax_F(std::vector<uint8_t>& b, size_t off, double v);
void Put_Vax_D(std::vector<uint8_t>& b, size_t off, double v);

// Copies of the data set under `where`, one folder each: the data file cut
// at several lengths, then each bad count and text edit alone. Returns the
// paths to open.
std::vector<std::filesystem::path> Damaged_Copies(const Built_File& built, const std::filesystem::path& where);

}  // namespace tevo::test
