// The one QApplication of the window tests, made on first use.
#pragma once

#include <QApplication>
#include <QTimer>
#include <QWidget>
#include <functional>

namespace tevo::test {

inline QApplication& App() {
  static int argc = 1;
  static char name[] = "test_app";
  static char* argv[] = {name, nullptr};
  static QApplication* app =
      QApplication::instance() ? qobject_cast<QApplication*>(QApplication::instance()) : new QApplication(argc, argv);
  return *app;
}

// Runs `act` on the first visible top-level window that `match` accepts,
// looking every 20 ms for up to `tries` times: a modal window is driven from
// inside its own event loop, and events that run before it shows must not
// use up the look.
inline void When_Window_Shown(std::function<bool(QWidget*)> match, std::function<void(QWidget&)> act,
                              int tries = 200) {
  QTimer::singleShot(20, [match, act, tries] {
    for (QWidget* w : QApplication::topLevelWidgets())
      if (w->isVisible() && match(w)) return act(*w);
    if (tries > 0) When_Window_Shown(match, act, tries - 1);
  });
}

}  // namespace tevo::test
