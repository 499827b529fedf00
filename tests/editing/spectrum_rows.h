// Small synthetic spectra for the editing tests: one row of n points, the
// same values in Ft_*, Spec_* and the display copy (one display point per
// point), 1H at 400 MHz with 0 ppm in the middle.
#pragma once

#include <complex>
#include <filesystem>
#include <functional>
#include <string>

#include "datafiles/open_file.h"
#include "editing/reference.h"
#include "signal/fid_processing.h"
#include "support/test_support.h"
#include "platform/ui.h"
#include "session/session.h"

namespace tevo::test {

struct Spectrum_Session {
  platform::Scripted_Ui ui;
  Session s;
  Spectrum_Session(int32_t n, const std::function<std::complex<double>(int32_t)>& point, float max_abs = 1.0f) {
    ui.quiet = true;
    s.ui = &ui;
    s.settings.Set("DISP EXTEND MODE", 1);
    Alloc_Point_Arrays(s, n);
    s.Spec_Points = n;
    s.Is_Spectrum = 1;
    s.Param.POINT = n;
    s.Observe_Frequency = s.Spectrum_Frequency = 400;
    s.Param.OBNUC = "1H";
    s.Param.FREQU = 4000;
    s.Param.RESOL = 4000.0f / static_cast<float>(n);
    s.Param.SMTMS = static_cast<float>(n / 2);
    editing::Axis_From_Reference(s);
    for (int32_t i = 0; i < n; ++i) {
      const std::complex<double> z = point(i);
      s.Spec_Re(i) = s.Ft_Re(i) = static_cast<float>(z.real());
      s.Spec_Im(i) = s.Ft_Im(i) = static_cast<float>(z.imag());
    }
    s.Max_Abs = max_abs;
    Build_Disp_Arrays(s, 0);
    s.X_Left = s.Spec_Axis.back();
    s.X_Right = s.Spec_Axis.front();
  }
};

// Complex Lorentzian line of height `height` at point k0, half-width w
// points: real part absorptive, imaginary part dispersive.
inline std::complex<double> Lorentz(double height, double k0, double w, int32_t k) {
  return height * w / std::complex<double>(w, k - k0);
}

// Opens a Bruker FID of the test data (its experiment folder, relative to
// the data cache) in a session working in `home`, processes it with the
// defaults, and puts 0 ppm where the vendor's processing put it (##$SF of
// pdata/1/procs). True when all went well.
inline bool Open_Bruker_Fid(Session& s, const std::filesystem::path& home, const std::string& experiment) {
  const std::filesystem::path dir = Test_Data_File(experiment);
  s.App_Path = home.string();
  s.Log_Mode = -1;
  if (datafiles::NM1D_m11_Click(s, {(dir / "fid").string(), {}}) != 0) return false;
  signal::Process_Report report;
  if (signal::Process_Fid(s, {}, report) != 0) return false;
  const std::string procs = Read_Text(dir / "pdata/1/procs");
  const auto at = procs.find("##$SF= ");
  if (at == std::string::npos) return false;
  editing::Reference_From_Frequency(s, std::stod(procs.substr(at + 7)));
  Build_Disp_Arrays(s, 0);
  return true;
}

}  // namespace tevo::test
