// The mirror of the spectrum (m291): the frequency direction reversed, for
// data recorded with the sense of the quadrature channels swapped. The axis
// stays; every point i takes what point N - 1 - i held, so the spectrum is
// turned over about the middle of its range.
#pragma once

namespace tevo {
struct Session;
}

namespace tevo::editing {

// Turns the spectrum over in place, all rows: the real part reversed, the
// imaginary part reversed and negated (the spectrum of the complex
// conjugate signal, so the dispersion keeps its sense and phasing still
// works). The phase so far becomes part of the data (Ft_* = Spec_*,
// phases 0). Peaks, integrals with their baselines, baseline points, inset
// windows and the view are turned over with it, so each still marks the
// same signal. The data set counts as changed; undo is cleared. Nothing is
// done without a spectrum.
void Mirror_Spectrum(Session& s);

// The menu command: leaves the mode, asks "スペクトルの左右を反転しますか"
// and turns the spectrum over on Yes. True when it was turned over.
bool m291_Click(Session& s);

}  // namespace tevo::editing
