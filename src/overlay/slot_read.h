// Reading a file into an overlay slot. A slot read is a main read: the file
// is recognised and read by the open command's own routines into a scratch
// session (a FID is then transformed with the processing window's
// defaults), and the spectrum moves from there into the slot record.
#pragma once

#include <string>

namespace tevo {
struct Session;
struct Overlay_Slot;
}

namespace tevo::overlay {

// How the slot's ppm axis is laid against the main spectrum's.
enum class Slot_Align {
  Chem,  // "CHEM": the file's own axis, chemical shifts fall together
  Cent,  // "CENT": the carriers fall together, Hz per point that of the file
};

// The status of a "CENT" read whose observe frequency lies more than 1 %
// from the main spectrum's.
inline constexpr int Slot_Off_Frequency = 5;

// Reads `path` into slot `slot` (1 .. Overlay_Max) of `s`. Returns the
// reader's status (0 read, 1 refused, -1 failure, the messages shown) or
// Slot_Off_Frequency; on anything but 0 the slot stays as it was. Logs
// "Read(M)".
int Read_Overlay_Slot(Session& s, int slot, const std::string& path, Slot_Align align);
// The same read into the record `o` (which keeps its offset and colour),
// against the main spectrum of `s`; the overlay editor replaces its working
// record with it.
int Read_Slot_Record(Session& s, Overlay_Slot& o, const std::string& path, Slot_Align align);

// The slot record of the session's current spectrum (row Array_Row): its
// points, axis, scale, parameters and lists; `keep` gives the offset and
// colour the slot had.
Overlay_Slot Slot_From_Session(const Session& t, const std::string& path, const Overlay_Slot& keep);

// The slot's comment, cut to 30 bytes: from the file's comment at a read,
// or as typed in the overlay editor's SMulti_Form4.
void Set_Slot_Comment(Overlay_Slot& o, const std::string& text);

}  // namespace tevo::overlay
