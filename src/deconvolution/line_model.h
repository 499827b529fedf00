// The line separation's model: a stretch of the spectrum as a sum of lines,
// each a Lorentzian and a Gaussian mixed by a share g, with its half width
// at half height W in Hz. The peak set, its areas, its order and the undo
// list of the window live here; the fit is line_fit.h.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace tevo::deconvolution {

inline constexpr int32_t Sim_Peak_Max = 100;  // the arrays hold 101 entries, the last never used
inline constexpr int32_t Sim_Undo_Depth = 21;

struct Sim_Peaks {
  std::array<float, Sim_Peak_Max + 1> Peak_Pos{};  // ppm less Spec_Axis[0]
  std::array<float, Sim_Peak_Max + 1> Peak_Width{};  // half width at half height, Hz, >= 0
  std::array<float, Sim_Peak_Max + 1> Peak_Height{};  // spectrum units
  std::array<float, Sim_Peak_Max + 1> Peak_Gauss{};  // Gaussian share, 0 Lorentzian .. 1 Gaussian
  int32_t Sim_Peak_Count = 0;
  bool operator==(const Sim_Peaks&) const = default;
};

// One line at ppm x: position p (ppm), width w (Hz), height h, share g,
// reference frequency f (MHz). Zero for h = 0 or w^2 <= 0.
double Line_Shape(double p, double w, double h, double g, double x, double f);

// The sum of the lines of a parameter vector (position ppm, width, height,
// share per line, in that order) at ppm x, in vector order.
double Line_Value(std::span<const float> trial, double x, double f);

// The window's area of a line: (pi/2 - g * 0.5063293) * h * w in float
// constants, half the integral over Hz of either pure shape.
float Peak_Area(float height, float width, float gauss);

// 100 * area / the largest area (counted from 1e-5), one per peak.
std::vector<float> Relative_Areas(const Sim_Peaks& peaks);

// Sorts the four arrays together by position with an exchange sort:
// ascending or descending.
void Sort_Peaks(Sim_Peaks& peaks, bool descending);

// Adds a line at `ppm` (offset from `axis0`) with the shared widths and the
// height under the mouse; false at 100 lines.
bool Add_Sim_Peak(Sim_Peaks& peaks, float ppm, float axis0, float height, float width, float gauss,
                  bool descending);

// Removes line k (from 0), the later ones moving down.
void Delete_Sim_Peak(Sim_Peaks& peaks, int32_t k);

// The window's undo list: 21 records, newest first; code 65535 in the
// newest marks it empty.
struct Sim_Undo_Rec {
  uint16_t Code = 65535;
  Sim_Peaks Peaks;
};
using Sim_Undo_List = std::array<Sim_Undo_Rec, Sim_Undo_Depth>;

// Shifts the records down one place (the oldest drops off) and stores the
// peak set under `code` as the newest.
void Sim_Undo_Push(Sim_Undo_List& list, uint16_t code, const Sim_Peaks& peaks);
// Restores the newest record into `peaks` and pops it; false when empty.
bool Sim_Undo_Pop(Sim_Undo_List& list, Sim_Peaks& peaks);
// The caption of the undo menu item for the newest record ("UnDo" when empty).
std::string Sim_Undo_Caption(const Sim_Undo_List& list);

}  // namespace tevo::deconvolution
