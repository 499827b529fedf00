#include "hold_button.h"

#include "display/view_commands.h"

namespace tevo::app {

Hold_Button::Hold_Button(const QString& text, std::function<void()> press, std::function<bool()> repeat,
                         QWidget* parent)
    : QPushButton(text, parent), press_(std::move(press)), repeat_(std::move(repeat)) {
  connect(this, &QPushButton::pressed, this, [this] {
    steps_ = 0;
    press_();
    emit stepped();
    timer_.start(display::Repeat_Interval_Ms(1));
  });
  connect(this, &QPushButton::released, this, [this] { timer_.stop(); });
  connect(&timer_, &QTimer::timeout, this, [this] {
    if (!isDown() || !repeat_()) {
      timer_.stop();
      return;
    }
    ++steps_;
    emit stepped();
    timer_.setInterval(display::Repeat_Interval_Ms(steps_ + 1));
  });
}

}  // namespace tevo::app
