// SpecSim_Form1, "波形の分離": a stretch of the spectrum modelled as a sum of
// Lorentz/Gauss lines. Its plot shows the spectrum, the model and each line,
// the residual in a band at the top and the calculation range's edges. The
// tool-bar latches what a click does: add a line (left button, height from
// the spectrum) or delete the one within reach (right button), or move the
// right or the left edge of the range. Undo (m34) steps back through the
// window's own list; m21 opens the fit, "ﾋﾟｰｸの表示" the list of lines.
#pragma once

#include <QDialog>
#include <QWidget>
#include <optional>
#include <string>

#include "deconvolution/line_edit.h"
#include "session/session.h"

class QAction;
class QLabel;
class QToolButton;

namespace tevo::app {

class Line_Window;

// The save dialog of the window's text files: title "<data> の保存", the data's
// name with ".dat", the ASCII kinds; the path chosen, or nothing.
std::optional<std::string> Ask_Ascii_Path(Session& s);

// Picture1: the spectrum stretch, the model, the residual band.
class Line_Plot : public QWidget {
  Q_OBJECT
 public:
  explicit Line_Plot(Line_Window& owner);
  // The pixel column of a ppm value, and back.
  double Pixel_Of_Ppm(double ppm) const;
  double Ppm_Of_Pixel(double x) const;

 protected:
  void paintEvent(QPaintEvent*) override;
  void mousePressEvent(QMouseEvent* e) override;
  void mouseMoveEvent(QMouseEvent* e) override;

 private:
  Line_Window& owner_;
};

class Line_Window : public QDialog {
  Q_OBJECT
 public:
  // The click modes of Toolbar1's buttons 1, 2 and 3.
  enum class Click_Mode { Peaks, Right_Edge, Left_Edge };

  explicit Line_Window(Session& session, QWidget* parent = nullptr);

  deconvolution::Sim_State& State() { return state_; }
  const deconvolution::Sim_State& State() const { return state_; }
  Session& session() { return session_; }
  QAction* Action(const char* id) const;
  Line_Plot* Plot() const { return plot_; }
  Click_Mode Mode() const { return mode_; }
  void Set_Mode(Click_Mode mode);
  // Recomputes the model and residual, shows the counts and labels, repaints.
  void Refresh();
  // What a click at `ppm` does in the current mode (left or right button).
  void Click(double ppm, bool left_button, double reach_ppm);
  // The edge of the current mode dragged on to `ppm` (no further undo record).
  void Drag_Edge(double ppm);
  // m21: the fit of the lines inside the range (after the question when
  // there is none). m34: undo. Command3: the list of lines.
  void Start_Fit();
  void Undo();
  void Show_List();
  // m41_1: the page of this window (SpecSim_Form8).
  void Print_Preview();
  // "Criterion=" of the last fit.
  void Set_Criterion(float criterion);
  const deconvolution::Sim_Curve& Curve() const { return curve_; }
  bool Fitting() const { return fitting_; }
  // The spectrum's vertical magnification (1: its extremes fill the plot).
  float Y_Mag() const { return y_mag_; }
  void Set_Fitting(bool on) { fitting_ = on; }

 private:
  Session& session_;
  deconvolution::Sim_State state_;
  deconvolution::Sim_Curve curve_;
  Click_Mode mode_ = Click_Mode::Peaks;
  bool fitting_ = false;
  float y_mag_ = 1.0f;
  Line_Plot* plot_ = nullptr;  // Picture1
  QToolButton* mode_buttons_[3] = {};
  QLabel* count_ = nullptr;  // "No. of Peaks:"
  QLabel* start_ = nullptr;  // "Start="
  QLabel* end_ = nullptr;  // "End="
  QLabel* criterion_ = nullptr;  // Labelcr
  QAction* undo_ = nullptr;  // m34
};

}  // namespace tevo::app
