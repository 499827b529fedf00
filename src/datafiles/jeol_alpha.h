// JEOL ALPHA data (banner "NFT1DT"): one binary file, a head of 8705
// bytes with little-endian integers and VAX D doubles, then the real part
// and the imaginary part of the points, VAX F floats for a spectrum and
// little-endian real32 for a FID. The data start at 16384 when the int32 at
// 40 is 33, else at 8704.
#pragma once

#include <string>

#include "datafiles/native.h"
#include "datafiles/vendor_read.h"

namespace tevo {
struct Session;
}

namespace tevo::datafiles {

// The frequency, size and reversal rules of the ALPHA and LAMBDA reads,
// with r.p.POINT the complex points as read and r.p.SMTMS the reference
// point as stored (point 0 the highest frequency): false when POINT is
// below 10 or above what the transform takes, or the carrier or the sweep
// width is 0. Otherwise POINT becomes the next power of two, RESOL =
// FREQU / POINT, and a spectrum is reversed with SMTMS = POINT - SMTMS and
// its 0 ppm frequency from SMTMS and SMEXR; a FID keeps the carrier as 0 ppm
// frequency.
bool Alpha_Rules(Vendor_Read& r);

// The check: kind "1D:" or "2D:" (points in a second dimension) and the
// kind name of the head; status 1 without the banner, -1 when unreadable.
Kind_Check Check_Alpha(const std::string& path);

// Reads a 1D file. Location "Read_Alpha/DRW".
int Read_Alpha(Session& s, const std::string& path);

}  // namespace tevo::datafiles
