// The rules the smaller foreign readers (Aspect, GE Omega, Chemagnetics,
// NUTS, MAC, CSV) share once their file is decoded into a Vendor_Read: the
// size rules, checked before any point is read; the power-of-two length of a
// FID; the reversal of a spectrum stored from its highest frequency down;
// and the 0 ppm frequency from the reference point and its shift.
#pragma once

#include <cstdint>
#include <string>

#include "datafiles/decoders.h"
#include "datafiles/native.h"
#include "datafiles/vendor_read.h"
#include "datafiles/vendor_text.h"

namespace tevo {
struct Session;
}

namespace tevo::datafiles {

// The message of a file whose sizes or frequencies can't be read.
inline constexpr const char* Param_Error_Text = "Dataが大きすぎるか、ﾊﾟﾗﾒｰﾀｴﾗｰ";

// At least 10 points, a carrier and a sweep width above 0, and no more
// complex points than the transform takes (a FID after padding to a power
// of two).
bool Vendor_Sizes_Ok(int32_t points, double observe, double frequ, int16_t smode);

// Where the shift SMEXR of a read stands.
enum class Reference_At {
  Carrier,  // the middle of the spectrum
  Stored_Point,  // point SMTMS as stored, point 0 the highest frequency
};

// Stores a read of `r.points` complex points a row: a FID padded to the next
// power of two, a spectrum reversed so that its index ascends in ppm; the
// 0 ppm frequency from the reference.
void Store_With_Rules(Session& s, Vendor_Read& r, Reference_At at);

// A reader of one file: `body` gets the whole file's bytes inside the
// reader's edge; a file that can't be read fails at `location`.
template <class Body>
int Guarded_File_Read(Session& s, const std::string& path, const char* location, Body&& body) {
  return Guarded_Read(s, location, [&] {
    int err = 0;
    const auto bytes = Read_Whole_File(path, &err);
    if (!bytes) return Reader_Fail(s, err, location);
    return body(As_Bytes(*bytes));
  });
}

// A check over the whole file's bytes: status -1 when the file can't be
// read or `check` runs past its end.
template <class Check>
Kind_Check Check_File(const std::string& path, Check&& check) {
  const auto bytes = Read_Whole_File(path);
  if (!bytes) return {"", -1};
  try {
    return check(As_Bytes(*bytes));
  } catch (const std::exception&) {
    return {"", -1};
  }
}

}  // namespace tevo::datafiles
