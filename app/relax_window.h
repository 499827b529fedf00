// T1Cal_Form1, "T1/T2データの解析": one exponential fitted to an array data
// set's intensities against their delays. Combo1 chooses what is measured
// (the sum over the selected region, or the height of one peak); the nine
// fields hold start value, step and tolerance of A0, k and B, the Fix boxes
// hold a parameter at its start value. The fit runs at each new choice and
// again on "計算開始"; "計算中止" stops it at the next iteration. The plot
// shows the normalised points and the curve; the left button moves the
// first point in use, the right button the last. Its menu sets the plot's
// limits (T1Cal_Form2).
#pragma once

#include <QDialog>
#include <QWidget>
#include <array>
#include <optional>

#include "page/draw_page.h"
#include "relaxation/relaxation_fit.h"
#include "session/session.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace tevo::app {

class Relax_Window;

// Picture1: the points, the fitted curve and the results.
class Relax_Plot : public QWidget {
  Q_OBJECT
 public:
  explicit Relax_Plot(Relax_Window& owner);

 protected:
  void paintEvent(QPaintEvent*) override;
  void mousePressEvent(QMouseEvent* e) override;

 private:
  Relax_Window& owner_;
};

class Relax_Window : public QDialog {
  Q_OBJECT
 public:
  // `region_first`, `region_last`: the selected range of the main plot as
  // Spec_Re indices from 0, -1 when none.
  Relax_Window(Session& session, int32_t region_first, int32_t region_last, QWidget* parent = nullptr);

  // The m52 entry: false (after the message) when there is neither a peak
  // list nor a region to measure.
  static bool Can_Open(Session& session, int32_t region_first, int32_t region_last);

  // Combo1_Change: takes the intensities of the choice, sets the start
  // values and runs the fit. `first_entry` as on opening from the menu.
  void Select(int index, bool first_entry = false);
  // Command1_Click: the fit from the fields.
  void Run_Fit();
  bool Running() const { return running_; }
  const relaxation::Relax_Fit& Fit() const { return fit_; }
  // The plot's limits: those set through "表示範囲の変更" while the window is
  // open, otherwise delay from 0 to the last delay, intensity over the data.
  void Limits(float& x0, float& x1, float& y0, float& y1) const;
  // m30: T1Cal_Form2 with the limits of the moment; "OK" takes them.
  void m30_Click();
  // m41: the page of the plot and the fit (T1Cal_Form8).
  void Print_Preview();
  // What that page shows in its frame and its block.
  page::Page_Content Window_Page() const;

 protected:
  void closeEvent(QCloseEvent* e) override;
  void reject() override;

 private:
  friend class Relax_Plot;
  void Show_Vertex0();
  void Set_Controls(bool enabled);
  void Show_Range();

  Session& session_;
  int32_t region_first_, region_last_;
  relaxation::Relax_Fit fit_;
  float previous_k_ = 1.0f;
  std::optional<relaxation::Relax_Limits> limits_;  // set by T1Cal_Form2
  bool running_ = false, stop_ = false, have_data_ = false;
  QComboBox* combo_ = nullptr;  // Combo1
  std::array<QLineEdit*, 9> text_{};  // Text(0) .. Text(8)
  std::array<QCheckBox*, 3> fix_{};  // Check1(0) .. Check1(2)
  QPushButton* start_ = nullptr;  // Command1
  QPushButton* stop_button_ = nullptr;  // Command3
  QLabel* count_ = nullptr;  // Label20
  QLabel* error_ = nullptr;  // Label21
  QLabel* criterion_ = nullptr;  // Labelcr
  QLabel* range_ = nullptr;  // Labelstart, Labelend
  Relax_Plot* plot_ = nullptr;  // Picture1
};

}  // namespace tevo::app
