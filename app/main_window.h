// The main window of the application.
#pragma once

#include <QMainWindow>

#include "session/session.h"

namespace tevo::app {

class Main_Window : public QMainWindow {
  Q_OBJECT
 public:
  explicit Main_Window(Session& session, QWidget* parent = nullptr);

 private:
  Session& session_;
};

}  // namespace tevo::app
