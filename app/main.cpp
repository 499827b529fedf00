// tevo1d: the desktop application.
#include <QApplication>

#include "main_window.h"
#include "platform/qt/qt_output.h"

int main(int argc, char** argv) {
  QApplication qapp(argc, argv);
  // The faces of the system, for the markup's font checks and Symbol face.
  tevo::platform::Probe_Font_Table();
  tevo::Session session;
  tevo::app::Main_Window window(session);
  window.show();
  return qapp.exec();
}
