#include "phase_panel.h"

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>

#include "dialog_parts.h"
#include "signal/phase_mode.h"

namespace tevo::app {

namespace {
QString Q(const std::string& s) { return QString::fromStdString(s); }
}  // namespace

Phase_Panel::Phase_Panel(Session& session, signal::Phase_Place place, QWidget* parent)
    : QWidget(parent), session_(session), place_(place) {
  setObjectName(place == signal::Phase_Place::Main_Window ? "PhaseToolbar" : "PhaseFrame");
  auto* grid = new QGridLayout(this);
  grid->setContentsMargins(4, 2, 4, 2);
  grid->setSpacing(2);
  Build_Order(0, QString::fromUtf8("0次"));
  Build_Order(1, QString::fromUtf8("1次"));

  auto* buttons = new QHBoxLayout;
  const std::pair<const char*, int> autos[] = {{"全自動", 0}, {"半自動", 1}};
  for (const auto& [caption, mode] : autos) {
    auto* b = new QPushButton(QString::fromUtf8(caption), this);
    b->setObjectName(mode == 0 ? "PhaseAuto_Full" : "PhaseAuto_Semi");
    connect(b, &QPushButton::clicked, this, [this, mode = mode] {
      if (place_ == signal::Phase_Place::Main_Window) {
        signal::Phase_Auto_Main(session_, mode);
      } else {
        signal::Phase_Auto(session_, mode, session_.Spec_Points, place_);
        signal::Phase_Apply_Current(session_, place_);
      }
      Refresh();
      emit changed();
    });
    buttons->addWidget(b);
  }
  if (place_ == signal::Phase_Place::Main_Window) {
    auto* reset = new QPushButton(QString::fromUtf8("元に戻す"), this);
    reset->setObjectName("PhaseReset");
    connect(reset, &QPushButton::clicked, this, [this] {
      signal::Phase_Reset_Row(session_);
      Refresh();
      emit changed();
    });
    buttons->addWidget(reset);
    auto* ok = new QPushButton(QString::fromUtf8("確定"), this);
    ok->setObjectName("PhaseCommand1");
    connect(ok, &QPushButton::clicked, this, [this] {
      signal::PhaseCommand1_Click(session_);
      emit finished();
    });
    auto* cancel = new QPushButton(QString::fromUtf8("ｷｬﾝｾﾙ"), this);
    cancel->setObjectName("PhaseCommand2");
    connect(cancel, &QPushButton::clicked, this, [this] {
      signal::PhaseCommand2_Click(session_);
      emit finished();
    });
    buttons->addWidget(ok);
    buttons->addWidget(cancel);
  }
  buttons->addStretch();
  grid->addLayout(buttons, 2, 0, 1, 3);
  Refresh();
}

void Phase_Panel::Build_Order(int order, const QString& caption) {
  auto* grid = static_cast<QGridLayout*>(layout());
  grid->addWidget(new QLabel(caption, this), order, 0);
  auto* field = new QLineEdit(this);
  field->setObjectName(QStringLiteral("PhaseText%1").arg(order + 1));
  field->setMaximumWidth(80);
  On_Typed(field, this, [this, field, order] {
    if (refreshing_) return;
    if (signal::Phase_Typed(session_, place_, order, field->text().toStdString())) emit changed();
    Refresh();
  });
  grid->addWidget(field, order, 1);

  auto* row = new QHBoxLayout;
  auto* bar = new QScrollBar(Qt::Horizontal, this);
  bar->setObjectName(QStringLiteral("PhaseScroll%1").arg(order + 1));
  const int lim = int(signal::Phase_Limit(order) * 10);
  bar->setRange(-lim, lim);
  bar->setSingleStep(1);
  bar->setPageStep(100);
  bar->setMinimumWidth(200);
  connect(bar, &QScrollBar::valueChanged, this, [this, order](int value) {
    if (refreshing_) return;
    signal::Phase_Scroll(session_, place_, order, value);
    Refresh();
    emit changed();
  });
  row->addWidget(bar, 1);
  // The step labels: negative steps left of zero, positive right.
  for (std::size_t i = 0; i < signal::Phase_Steps.size(); ++i) {
    const float step = signal::Phase_Steps[i];
    auto* b = new QPushButton(QString::number(step, 'g', 3), this);
    b->setObjectName(QStringLiteral("PhaseStep%1_%2").arg(order + 1).arg(i));
    b->setMaximumWidth(36);
    // Held down, a step repeats after 500 ms every 50 ms; never a default
    // button, so that Enter in a field applies that field only.
    b->setAutoDefault(false);
    b->setAutoRepeat(true);
    b->setAutoRepeatDelay(500);
    b->setAutoRepeatInterval(50);
    connect(b, &QPushButton::clicked, this, [this, order, i] {
      signal::Phase_Step(session_, place_, order, int(i));
      Refresh();
      emit changed();
    });
    row->addWidget(b);
  }
  grid->addLayout(row, order, 2);
  fields_[order] = field;
  bars_[order] = bar;
}

void Phase_Panel::Refresh() {
  refreshing_ = true;
  for (int order = 0; order < 2; ++order) {
    const float v = signal::Phase_Value(session_, place_, order);
    fields_[order]->setText(Q(signal::Phase_Text(v)));
    bars_[order]->setValue(signal::Phase_Scroll_Value(v));
  }
  refreshing_ = false;
}

}  // namespace tevo::app
