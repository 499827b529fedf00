// The dialogs of the line separation window:
//   SpecSim_Form4 "非線形最小二乗近似": the fit of the lines inside the
//     calculation range, a frame per line with its start values and Fix
//     boxes, start and stop, progress; OK keeps, キャンセル puts back the
//     values kept at opening.
//   SpecSim_Form2 "収束パラメータ": the fit's steps and convergence widths.
//   SpecSim_Form10 "ピークリスト": the list of lines, saved as the result file.
//   SpecSim_Form9 "手動設定": one line's values typed or stepped while a
//     button is held.
#pragma once

#include <QDialog>
#include <array>
#include <vector>

#include "deconvolution/line_fit.h"
#include "deconvolution/line_model.h"

class QCheckBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QTreeWidget;

namespace tevo {
struct Session;
}

namespace tevo::app {

class Line_Window;

class Line_Fit_Dialog : public QDialog {
  Q_OBJECT
 public:
  explicit Line_Fit_Dialog(Line_Window& window);
  // Command1_Click: the fit from the fields until it converges or is stopped.
  void Run_Fit();
  bool Running() const { return running_; }
  const deconvolution::Line_Fit& Fit() const { return fit_; }

 protected:
  void reject() override;  // キャンセル: the values kept at opening
  void closeEvent(QCloseEvent* e) override;

 private:
  void Show_Values(const std::vector<float>& values);
  void Set_Controls();
  // The last trial into the window's lines, sorted at the end of a fit.
  void Store(bool sort);

  Line_Window& window_;
  deconvolution::Line_Fit fit_;
  deconvolution::Sim_Peaks kept_;  // at opening, for キャンセル
  deconvolution::Sim_Peaks base_;  // the order the slots index
  bool running_ = false, stop_ = false;
  std::vector<QGroupBox*> frames_;
  std::vector<QLineEdit*> text_;  // 4 per slot
  std::vector<QCheckBox*> fix_;  // 4 per slot
  QPushButton* start_ = nullptr;  // Command1
  QPushButton* stop_button_ = nullptr;  // Command3
  QPushButton* params_ = nullptr;  // Command4
  QPushButton* ok_ = nullptr;  // Command2
  QPushButton* cancel_ = nullptr;  // Command5
  QLabel* count_ = nullptr;  // Label20
  QLabel* error_ = nullptr;  // Label21
};

class Fit_Param_Dialog : public QDialog {
  Q_OBJECT
 public:
  explicit Fit_Param_Dialog(Session& session, QWidget* parent = nullptr);

 private:
  std::array<QLineEdit*, 8> text_{};
};

class Line_List_Dialog : public QDialog {
  Q_OBJECT
 public:
  explicit Line_List_Dialog(Line_Window& window);
  QTreeWidget* List() const { return list_; }

 private:
  QTreeWidget* list_ = nullptr;  // ListView1
};

class Manual_Dialog : public QDialog {
  Q_OBJECT
 public:
  explicit Manual_Dialog(Line_Window& window);
  void Select(int k);  // from 0

 private:
  void Show();
  Line_Window& window_;
  int selected_ = 0;
  std::array<QLineEdit*, 4> text_{};  // Text1 .. Text4
  QLineEdit* number_ = nullptr;  // Text5
  QLabel* area_ = nullptr;  // "Integral"
};

}  // namespace tevo::app
