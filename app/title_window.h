// NMR1D_Form0: the title window shown while the program starts. Its timer
// marks it ready; start-up waits for that (at most 30 seconds) before the
// main window appears.
#pragma once

#include <QWidget>
#include <string>

namespace tevo::app {

// "Ver." then the three parts of the version number ("1.0.0").
std::string Version_Caption();

class Title_Window : public QWidget {
  Q_OBJECT
 public:
  explicit Title_Window(QWidget* parent = nullptr);
  bool Ready() const { return ready_; }

 private:
  bool ready_ = false;
};

}  // namespace tevo::app
