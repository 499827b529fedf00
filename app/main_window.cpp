#include "main_window.h"

#include <QLabel>

namespace tevo::app {

Main_Window::Main_Window(Session& session, QWidget* parent)
    : QMainWindow(parent), session_(session) {
  setWindowTitle(QString::fromUtf8("NMR 1D              "));
  auto* label = new QLabel(QString::fromUtf8("データがありません"), this);
  label->setAlignment(Qt::AlignCenter);
  setCentralWidget(label);
  resize(1024, 720);
}

}  // namespace tevo::app
