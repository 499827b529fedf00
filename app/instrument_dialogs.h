// The windows of the instrument table: the table itself with the deletion
// of IDs and rows, the ID entry after reading a data set, and the pick of a
// row whose 0 ppm frequency references the data.
#pragma once

#include <QDialog>

#include "session/session.h"

class QComboBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QTableWidget;

namespace tevo::app {

// The table "OB_0ppm.frq" in seven columns and the list of known IDs.
// "装置IDの削除" (Command3) deletes the selected ID, "装置 Dataの削除"
// (Command4) the selected row, each after its question. 閉じる (Command1).
class Instrument_Table_Dialog : public QDialog {
  Q_OBJECT
 public:
  explicit Instrument_Table_Dialog(Session& session, QWidget* parent = nullptr);
  // Shows the table and the IDs as they are now.
  void Refresh();

 private:
  Session& session_;
  QTableWidget* table_ = nullptr;  // Grid1
  QListWidget* ids_ = nullptr;  // List1
};

// The instrument ID of the data just read: a combo of the known IDs
// (Combo1) and the typed text (Text1), which starts with `initial` or, when
// that is empty, the data set's ID. OK stores it in upper case.
class Instrument_Id_Dialog : public QDialog {
  Q_OBJECT
 public:
  explicit Instrument_Id_Dialog(Session& session, QWidget* parent = nullptr, const std::string& initial = {});

 private:
  Session& session_;
  QComboBox* known_ = nullptr;
  QLineEdit* text_ = nullptr;
};

// "装置データを使ってReferenceを変更": the data's instrument, frequency,
// nucleus and solvent above the rows of the table, its own row
// pre-selected. OK references the data by the selected row (after the
// question when solvent or nucleus differ); a declined question keeps the
// window open.
class Instrument_Pick_Dialog : public QDialog {
  Q_OBJECT
 public:
  explicit Instrument_Pick_Dialog(Session& session, QWidget* parent = nullptr);

 private:
  Session& session_;
  QListWidget* rows_ = nullptr;  // List1
};

}  // namespace tevo::app
