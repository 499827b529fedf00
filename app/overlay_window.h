// NMR1D_Form6, "Multi Spectrum": the overlay set in ten rows beside the main
// window (modeless). Row 1 is the main spectrum, rows 2 .. 10 the slots. A
// row shows and edits its slot: show flag, magnification and offset (typed
// or by hold-to-repeat buttons), colour, peak and integral columns, points,
// comment and file; "読込" loads a file into it and "削除" empties it. Below
// the rows: the slant, intensity comparison, undo, copy (NMR1D_Form18) and
// exchange (NMR1D_Form19). Everything a control does is a core command.
#pragma once

#include <QDialog>
#include <array>
#include <functional>

#include "session/session.h"

class QBoxLayout;
class QCheckBox;
class QGridLayout;
class QSpinBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace tevo::app {

class Overlay_Window : public QDialog {
  Q_OBJECT
 public:
  Overlay_Window(Session& session, QWidget* parent = nullptr);

  // Fills every control from the session (under the window's "INIT" guard).
  void Refresh();
  // "読込" of a row, as the button does it.
  void Load_Row(int slot);

 signals:
  // A slot or the shared values changed: the main plot repaints.
  void changed();

 protected:
  void done(int result) override;

 private:
  struct Row {
    QCheckBox* show = nullptr;  // Check1
    QLineEdit* mag = nullptr;  // Text1
    std::array<QPushButton*, 2> mag_buttons{};  // YMag_Down, Ymag_Up
    QLineEdit* offset = nullptr;  // Text2
    QPushButton* colour = nullptr;  // the colour label
    QCheckBox* peaks = nullptr;  // Check4
    QCheckBox* integrals = nullptr;
    QLabel* points = nullptr;
    QLabel* comment = nullptr;
    QLabel* file = nullptr;
    QPushButton* load = nullptr;  // Command1
    QPushButton* remove = nullptr;  // Command3
  };
  void Build_Row(int slot, QGridLayout* grid);
  void Build_Bottom(QBoxLayout* layout);
  // Applies a core command and shows its effect.
  void After(bool did);
  void Take_Fields();
  void Pick_Colour(int slot);

  Session& session_;
  bool init_ = false;  // "INIT": the window is filling its own controls
  std::array<Row, 10> rows_;
  QLineEdit* shift_ = nullptr;  // Text5
  QCheckBox* compare_ = nullptr;  // Check2
  QCheckBox* dept_ = nullptr;  // Check3
  QPushButton* undo_ = nullptr;  // Command6
};

// NMR1D_Form18 ("スペクトルのコピー") and NMR1D_Form19 ("ｽﾍﾟｸﾄﾙの交換"):
// two spectrum numbers, Text1 and Text2. The copy takes a source from 1 (the
// main spectrum) and a target from 2; the exchange two numbers from 2, one
// of which may be an empty slot. OK runs the command; the window stays when
// it is refused.
class Slot_Pair_Dialog : public QDialog {
  Q_OBJECT
 public:
  enum class Kind { Copy, Exchange };
  Slot_Pair_Dialog(Session& session, Kind kind, QWidget* parent = nullptr);
  void accept() override;

 private:
  Session& session_;
  Kind kind_;
  QSpinBox* first_ = nullptr;  // Text1
  QSpinBox* second_ = nullptr;  // Text2
};

}  // namespace tevo::app
