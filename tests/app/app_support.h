// The one QApplication of the window tests, made on first use.
#pragma once

#include <QApplication>

namespace tevo::test {

inline QApplication& App() {
  static int argc = 1;
  static char name[] = "test_app";
  static char* argv[] = {name, nullptr};
  static QApplication* app =
      QApplication::instance() ? qobject_cast<QApplication*>(QApplication::instance()) : new QApplication(argc, argv);
  return *app;
}

}  // namespace tevo::test
