// tevo1d: the desktop application.
#include <QApplication>

#include "main_window.h"

int main(int argc, char** argv) {
  QApplication qapp(argc, argv);
  tevo::Session session;
  tevo::app::Main_Window window(session);
  window.show();
  return qapp.exec();
}
