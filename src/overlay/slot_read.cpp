#include "overlay/slot_read.h"

#include <cmath>
#include <filesystem>

#include "datafiles/open_file.h"
#include "datafiles/open_routes.h"
#include "datafiles/recognition.h"
#include "datafiles/vendor_text.h"
#include "page/markup.h"
#include "platform/ui.h"
#include "session/session.h"
#include "session/startup.h"
#include "signal/fid_processing.h"

namespace tevo::overlay {

namespace {

constexpr size_t Slot_Comment_Bytes = 30;
constexpr float New_Slot_Mag = 0.95f;
constexpr double Cent_Tolerance = 0.01;

}  // namespace

Overlay_Slot Slot_From_Session(const Session& t, const std::string& path, const Overlay_Slot& keep) {
  Overlay_Slot o;
  o.Slot_Y_Offset = keep.Slot_Y_Offset;
  o.Slot_Colour = keep.Slot_Colour;
  const auto n = static_cast<size_t>(std::max(t.Spec_Points, 0));
  const auto row = static_cast<size_t>(std::max(t.Array_Row, 0));
  o.Slot_Points = t.Spec_Points;
  o.Slot_X.assign(t.Spec_Axis.begin(), t.Spec_Axis.begin() + static_cast<long>(std::min(n, t.Spec_Axis.size())));
  o.Slot_Y.resize(n);
  o.Slot_Y_Im.resize(n);
  for (size_t i = 0; i < n; ++i) {
    o.Slot_Y[i] = t.Spec_Re(i, row);
    o.Slot_Y_Im[i] = t.Spec_Im(i, row);
  }
  o.Slot_Show = 1;
  o.Slot_Y_Mag = New_Slot_Mag;
  o.Slot_Max_Abs = t.Max_Abs;
  o.Slot_Y_Full = t.Max_Abs / New_Slot_Mag;
  o.Slot_Param = t.Param;
  o.Slot_Observe_Frequency = t.Observe_Frequency;
  o.Slot_Spectrum_Frequency = t.Spectrum_Frequency;
  if (!t.Peaks.empty()) o.Slot_Peaks = t.Peaks;
  if (!t.Integrals.empty()) o.Slot_Integrals = t.Integrals;
  o.Slot_Peak_Level = t.Peak_Level;
  o.Slot_Noise_Level = t.Noise_Level;
  o.Slot_Base_Level = t.Base_Level;
  o.Slot_Integ_Ref = t.Integ_Ref;
  o.Slot_Integ_Scale = t.Integ_Scale;
  o.Slot_Integ_Ref_Index = t.Integ_Ref_Index;
  Set_Slot_Comment(o, t.Param.COMNT);
  o.Slot_File = path;
  return o;
}

void Set_Slot_Comment(Overlay_Slot& o, const std::string& text) {
  o.Slot_Comment = page::Cut_To_Bytes(text, Slot_Comment_Bytes);
}

int Read_Overlay_Slot(Session& s, int slot, const std::string& path, Slot_Align align) {
  if (slot < 1 || slot > Overlay_Max) return 1;
  return Read_Slot_Record(s, s.Overlay[static_cast<size_t>(slot)], path, align);
}

int Read_Slot_Record(Session& s, Overlay_Slot& o, const std::string& path, Slot_Align align) {
  Session t = datafiles::Scratch_Session(s, "TempSlot.dat");
  const datafiles::Recognition r = datafiles::Classify_File(t, path);
  if (r.sniff.status < 0) return -1;
  const datafiles::Open_Route* route = datafiles::Class_Accepted(r) ? datafiles::Find_Route(r) : nullptr;
  if (route == nullptr) return datafiles::Reader_Refuse(s, "Dataが違います");
  const int status = datafiles::Read_Routed(t, r, *route);
  if (status != 0) return status;
  session::Write_Log(s, "Read(M)", path);
  if (t.Param.SMODE == 0) {
    t.Is_Fid = 1;
    t.Is_Spectrum = 0;
    signal::Process_Report report;
    if (signal::Process_Fid(t, {}, report) != 0) return -1;
  }

  if (align == Slot_Align::Cent &&
      std::fabs(t.Observe_Frequency - s.Observe_Frequency) > Cent_Tolerance * s.Observe_Frequency) {
    s.ui->Beep();
    return Slot_Off_Frequency;
  }
  Overlay_Slot read = Slot_From_Session(t, t.Open_Name.empty() ? path : t.Open_Name, o);
  if (align == Slot_Align::Cent && t.Spectrum_Frequency > 0 && s.Spectrum_Frequency > 0) {
    // Hz from the file's carrier, laid at the main spectrum's carrier.
    const double own = (t.Observe_Frequency / t.Spectrum_Frequency - 1) * 1e6;
    const double main = (s.Observe_Frequency / s.Spectrum_Frequency - 1) * 1e6;
    for (float& x : read.Slot_X)
      x = static_cast<float>((x - own) * t.Spectrum_Frequency / s.Spectrum_Frequency + main);
  }
  o = std::move(read);
  return 0;
}

}  // namespace tevo::overlay
