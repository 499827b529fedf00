// A push button that repeats while held: the first step at the press, the
// next after 500 ms, then every 50 ms until the button is released.
#pragma once

#include <QPushButton>
#include <QTimer>
#include <functional>

namespace tevo::app {

class Hold_Button : public QPushButton {
  Q_OBJECT
 public:
  // `press` applies the first step; `repeat` one more and returns false when
  // the limit is reached (the repeat ends).
  Hold_Button(const QString& text, std::function<void()> press, std::function<bool()> repeat,
              QWidget* parent = nullptr);

 signals:
  void stepped();

 private:
  QTimer timer_;
  int steps_ = 0;
  std::function<void()> press_;
  std::function<bool()> repeat_;
};

}  // namespace tevo::app
