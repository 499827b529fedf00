// The window of m47 ("解析出来るファイルについて"): the formats of
// "RequiredFile1D.txt" with their descriptions, and the files the chosen
// format needs.
#pragma once

#include <QDialog>

#include "session/session.h"

namespace tevo::app {

class Required_Files_Dialog : public QDialog {
  Q_OBJECT
 public:
  Required_Files_Dialog(const Session& session, QWidget* parent);
};

}  // namespace tevo::app
