#include "fid_window.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>
#include <functional>

#include "dialog_parts.h"
#include "display/spectrum_trace.h"
#include "display/style.h"
#include "hold_button.h"
#include "lp_dialog.h"
#include "phase_panel.h"
#include "signal/linear_prediction.h"
#include "signal/phase_mode.h"

namespace tevo::app {

namespace {

// One of the two plots of the window: the FID of the current row or the
// previewed spectrum, with the imaginary part on request. The spectrum also
// shows the pivots "pp" and "p2" and places an armed one at the next click.
class Trace_View : public QWidget {
 public:
  Trace_View(Session& s, const signal::Ft_Form_State& st, bool spectrum, QWidget* parent)
      : QWidget(parent), s_(s), st_(st), spectrum_(spectrum) {
    setMinimumSize(480, 160);
  }
  // Arms marker `which` (0 "pp", 1 "p2") for the next click; -1 disarms.
  // `placed` runs once the marker is set.
  void Arm(int which, std::function<void()> placed) {
    armed_ = which;
    placed_ = std::move(placed);
    setCursor(which < 0 ? Qt::ArrowCursor : Qt::CrossCursor);
  }
  int Armed() const { return armed_; }

 protected:
  // The shown points: the spectrum runs from Plot_Left (high index, at the
  // left edge) to Plot_Right; the FID from 0 to its end.
  std::pair<int32_t, int32_t> Span(int32_t n) const {
    int32_t a = 0, b = n - 1;
    if (spectrum_ && st_.Plot_Left != st_.Plot_Right) {
      a = std::min(st_.Plot_Left, st_.Plot_Right);
      b = std::max(st_.Plot_Left, st_.Plot_Right);
    }
    return {a, b};
  }

  void mousePressEvent(QMouseEvent* event) override {
    if (armed_ < 0 || s_.Spec_Points < 2) return;
    const auto [a, b] = Span(s_.Spec_Points);
    const double f = width() > 1 ? event->position().x() / (width() - 1) : 0;
    signal::Phase_Set_Marker(s_, armed_, static_cast<int32_t>(std::lround(b - f * std::max(1, b - a))));
    auto placed = std::move(placed_);
    Arm(-1, {});
    update();
    if (placed) placed();
  }

  void paintEvent(QPaintEvent*) override {
    QPainter p(this);
    p.fillRect(rect(), Qt::white);
    const int32_t n = spectrum_ ? s_.Spec_Points : s_.Fid_Points;
    if (n < 2 || s_.Point_Capacity < n) return;
    const int row = std::clamp(s_.Array_Row, 0, std::max(0, s_.Array_Rows - 1));
    const Point_Array& re = spectrum_ ? s_.Spec_Re : s_.Fid_Re;
    const Point_Array& im = spectrum_ ? s_.Spec_Im : s_.Fid_Im;
    const auto [a, b] = Span(n);
    float full = spectrum_ ? st_.Plot_Height : 0.0f;
    if (!(full > 0)) {
      for (int32_t i = a; i <= b; ++i) full = std::max(full, std::abs(re(i, row)));
      if (!(full > 0)) full = 1;
    }
    const double base = spectrum_ ? height() * (0.9 - st_.Vertical_Offset) : height() * 0.5;
    const double scale = (spectrum_ ? 0.85 : 0.45) * height() / full;
    // The same decimated trace as the main plot: at most four vertices a
    // pixel column, whatever the number of points. The x values are the
    // point indices; the spectrum runs with the high index on the left.
    const double left = spectrum_ ? b : a, right = spectrum_ ? a : std::max(b, a + 1);
    auto trace = [&](const Point_Array& y, const QColor& colour) {
      const display::Trace_Vertices v =
          display::Decimate_Trace({}, y.Row(static_cast<std::size_t>(row)), b + 1, left, right, 0, width() - 1,
                                  base / scale, 0, static_cast<int>(std::lround(base)), 0, height() - 1);
      QPolygon line;
      line.reserve(static_cast<int>(v.points.size()));
      for (const platform::Point& q : v.points) line << QPoint(q.x, q.y);
      p.setPen(QPen(colour, 0));
      p.drawPolyline(line);
    };
    if (st_.Show_Imaginary) trace(im, QColor(200, 0, 0));
    trace(re, Qt::black);
    if (spectrum_) Paint_Pivots(p, a, b);
  }

  // The pivots as vertical lines from a sixth of the height down, labelled.
  void Paint_Pivots(QPainter& p, int32_t a, int32_t b) {
    const int top = height() / 6;
    const struct {
      int32_t point;
      const char* key;
      int32_t colour;
      const char* label;
    } marks[] = {{s_.Pivot_Pp, "PP COLOR", 0x0000FF, "pp"}, {s_.Pivot_P2, "PP2 COLOR", 0x008000, "p2"}};
    for (const auto& m : marks) {
      const int32_t c = display::Setting_Colour(s_, m.key, m.colour);
      p.setPen(QPen(QColor(c & 0xFF, (c >> 8) & 0xFF, (c >> 16) & 0xFF), 0));
      const int x = static_cast<int>(std::lround(double(b - m.point) / std::max(1, b - a) * (width() - 1)));
      p.drawLine(x, top, x, height() - 1);
      p.drawText(x + 2, top, QString::fromLatin1(m.label));
    }
  }

 private:
  Session& s_;
  const signal::Ft_Form_State& st_;
  bool spectrum_;
  int armed_ = -1;
  std::function<void()> placed_;
};

QString Fmt(double v) { return QString::number(v, 'g', 7); }

}  // namespace

Fid_Window::Fid_Window(Session& session, QWidget* parent) : QDialog(parent), session_(session) {
  setObjectName("NMR1D_Form11");
  setWindowTitle(QStringLiteral("FT-Phase"));
  auto* outer = new QHBoxLayout(this);
  auto* plots = new QVBoxLayout;
  fid_plot_ = new Trace_View(session_, state_, false, this);
  spec_plot_ = new Trace_View(session_, state_, true, this);
  fid_plot_->setObjectName("FidPlot");
  spec_plot_->setObjectName("SpectrumPlot");
  plots->addWidget(fid_plot_, 1);
  plots->addWidget(spec_plot_, 2);
  phase_ = new Phase_Panel(session_, signal::Phase_Place::Dialog, this);
  connect(phase_, &Phase_Panel::changed, this, [this] { spec_plot_->update(); });
  plots->addWidget(phase_);
  // Toolbar3: 2 arms "pp", 3 arms "p2" (the next click in the spectrum places
  // it, for the half-automatic phase), 4 runs the full automatic phase.
  auto* toolbar = new QHBoxLayout;
  auto* spectrum = static_cast<Trace_View*>(spec_plot_);
  for (const auto& [index, caption] : {std::pair<int, const char*>{2, "pp"}, {3, "p2"}, {4, "全自動"}}) {
    QPushButton* b = Add_Button("Toolbar3_" + std::to_string(index), QString::fromUtf8(caption));
    b->setCheckable(index != 4);
    toolbar->addWidget(b);
  }
  toolbar->addStretch();
  plots->addLayout(toolbar);
  for (int which : {0, 1}) {
    QPushButton* b = buttons_.at("Toolbar3_" + std::to_string(which + 2));
    connect(b, &QPushButton::toggled, this, [this, spectrum, which, b](bool on) {
      if (!on) {
        if (spectrum->Armed() == which) spectrum->Arm(-1, {});
        return;
      }
      buttons_.at("Toolbar3_" + std::to_string(3 - which))->setChecked(false);
      spectrum->Arm(which, [b] { b->setChecked(false); });
    });
  }
  connect(buttons_.at("Toolbar3_4"), &QPushButton::clicked, this,
          [this] { phase_->findChild<QPushButton*>("PhaseAuto_Full")->click(); });
  outer->addLayout(plots, 1);

  auto* side = new QFormLayout;
  outer->addLayout(side);
  window_kind_ = new QComboBox(this);
  window_kind_->setObjectName("Combo1");
  window_kind_->addItems({QStringLiteral("Exponential"), QStringLiteral("Sine"), QStringLiteral("Sine^2"),
                          QStringLiteral("Gaussian")});
  side->addRow(QString::fromUtf8("窓関数"), window_kind_);
  connect(window_kind_, &QComboBox::activated, this, [this](int kind) {
    signal::Set_Window_Kind(session_, state_, int16_t(kind));
    Refresh();
  });
  auto number = [](const QString& t, bool& ok) { return t.trimmed().toDouble(&ok); };
  Add_Field("Text3", QStringLiteral("BF, Hz"), [this, number](const QString& t) {
    bool ok = false;
    const double v = number(t, ok);
    return ok && signal::Set_Line_Broadening(session_, state_, float(v));
  });
  for (int corner = 1; corner <= 4; ++corner) {
    Add_Field("Text" + std::to_string(corner + 3), QStringLiteral("T%1").arg(corner),
              [this, number, corner](const QString& t) {
                bool ok = false;
                const double v = number(t, ok);
                return ok && signal::Set_Trap_Corner(session_, state_, corner, float(v));
              });
  }
  Add_Field("Text10", QStringLiteral("Start"), [this, number](const QString& t) {
    bool ok = false;
    const double v = number(t, ok);
    return ok && signal::Set_Window_Bounds(session_, state_, float(v), session_.Window_End);
  });
  Add_Field("Text11", QStringLiteral("End"), [this, number](const QString& t) {
    bool ok = false;
    const double v = number(t, ok);
    return ok && signal::Set_Window_Bounds(session_, state_, session_.Window_Start, float(v));
  });
  Add_Field("Text12", QStringLiteral("FID Shift"), [this](const QString& t) {
    bool ok = false;
    const int v = t.trimmed().toInt(&ok);
    return ok && signal::Set_Fid_Shift(session_, state_, v);
  });
  auto* arrows = new QHBoxLayout;
  for (const auto& [name, dir] : {std::pair<const char*, int>{"Command9", 1}, {"Command10", -1}}) {
    auto began = std::make_shared<int32_t>(0);
    // The shift moves at once; the preview follows when the event loop is
    // free (Request_Preview), and a repeat waits while one is due, so a held
    // button never queues transforms faster than they finish.
    auto* b = new Hold_Button(
        QString::fromUtf8(dir > 0 ? "▲" : "▼"),
        [this, dir, began] {
          *began = session_.Fid_Shift;
          if (signal::Step_Fid_Shift(session_, dir, *began)) Request_Preview();
        },
        [this, dir, began] {
          if (preview_due_) return true;
          if (!signal::Step_Fid_Shift(session_, dir, *began)) return false;
          Request_Preview();
          return true;
        },
        this);
    b->setObjectName(name);
    arrows->addWidget(b);
  }
  side->addRow(QString(), arrows);
  Add_Field("Text1", QString::fromUtf8("縦軸拡大"), [this, number](const QString& t) {
    bool ok = false;
    const double v = number(t, ok);
    if (!ok || !(v > 0)) return false;
    state_.Vertical_Zoom = float(v);
    state_.Plot_Height = state_.Plot_Max / state_.Vertical_Zoom;
    return true;
  });
  Add_Field("Text2", QString::fromUtf8("縦Offset"), [this, number](const QString& t) {
    bool ok = false;
    const double v = number(t, ok);
    if (!ok || v <= -1 || v >= 1) return false;
    state_.Vertical_Offset = float(v);
    return true;
  });

  auto* commands = new QVBoxLayout;
  connect(Add_Button("Command2", QStringLiteral("FFT")), &QPushButton::clicked, this, [this] {
    signal::Run_Preview(session_, state_);
    Refresh();
  });
  connect(Add_Button("Command1", QStringLiteral("ZeroFill")), &QPushButton::clicked, this, [this] {
    signal::Zero_Fill(session_, state_);
    Refresh();
  });
  connect(Add_Button("Command4", QString::fromUtf8("ZeroFill解除")), &QPushButton::clicked, this, [this] {
    signal::Undo_Zero_Fill(session_, state_);
    Refresh();
  });
  // Both predictions first show their parameters; キャンセル there runs nothing.
  connect(Add_Button("Command5", QStringLiteral("LP Fill")), &QPushButton::clicked, this, [this] {
    if (Lp_Dialog(session_, this).exec() != QDialog::Accepted) return;
    signal::LP_Fill(session_, state_);
    Refresh();
  });
  connect(Add_Button("Command6", QStringLiteral("LP Back")), &QPushButton::clicked, this, [this] {
    if (Lp_Dialog(session_, this).exec() != QDialog::Accepted) return;
    signal::LP_Back(session_, state_);
    Refresh();
  });
  auto_phase_ = new QCheckBox(QString::fromUtf8("FT後の自動位相補正"), this);
  auto_phase_->setObjectName("Check2");
  connect(auto_phase_, &QCheckBox::toggled, this, [this](bool on) { session_.Auto_Phase_Off = on ? 0 : 1; });
  imaginary_ = new QCheckBox(QString::fromUtf8("虚数データの表示"), this);
  imaginary_->setObjectName("m31");
  connect(imaginary_, &QCheckBox::toggled, this, [this](bool on) {
    state_.Show_Imaginary = on;
    Refresh();
  });
  connect(Add_Button("Command3", QString::fromUtf8("完 了")), &QPushButton::clicked, this, [this] {
    signal::Commit_Transform(session_, state_);
    accept();
  });
  connect(Add_Button("m19", QString::fromUtf8("現データの破棄")), &QPushButton::clicked, this, [this] {
    if (signal::Discard_Ft_Form(session_, state_)) QDialog::reject();
  });
  for (const char* name : {"Command2", "Command1", "Command4", "Command5", "Command6"}) commands->addWidget(buttons_.at(name));
  commands->addWidget(auto_phase_);
  commands->addWidget(imaginary_);
  commands->addStretch();
  commands->addWidget(buttons_.at("Command3"));
  commands->addWidget(buttons_.at("m19"));
  side->addRow(commands);

  // No button of the window is a default button: Enter in a field applies
  // that field and nothing else.
  for (QPushButton* b : findChildren<QPushButton*>()) {
    b->setAutoDefault(false);
    b->setDefault(false);
  }

  signal::Open_Ft_Form(session_, state_);
  signal::Run_Preview(session_, state_);
  Refresh();
  resize(1100, 640);
  // Over the main window, not wherever the platform puts a new window.
  if (parent) move(parent->geometry().center() - rect().center());
}

void Fid_Window::Add_Field(const std::string& name, const QString& caption,
                           std::function<bool(const QString&)> take) {
  auto* field = new QLineEdit(this);
  field->setObjectName(QString::fromStdString(name));
  field->setMaximumWidth(100);
  // A value refused restores the field, without a message.
  On_Typed(field, this, [this, field, take] {
    take(field->text());
    Refresh();
  });
  static_cast<QFormLayout*>(static_cast<QHBoxLayout*>(layout())->itemAt(1)->layout())->addRow(caption, field);
  fields_[name] = field;
}

QPushButton* Fid_Window::Add_Button(const std::string& name, const QString& caption) {
  auto* b = new QPushButton(caption, this);
  b->setObjectName(QString::fromStdString(name));
  b->setAutoDefault(false);
  buttons_[name] = b;
  return b;
}

void Fid_Window::Request_Preview() {
  if (preview_due_) return;
  preview_due_ = true;
  QTimer::singleShot(0, this, [this] {
    signal::Parameters_Changed(session_, state_);
    Refresh();
    // Shown before the next step is taken.
    fid_plot_->repaint();
    spec_plot_->repaint();
    preview_due_ = false;
  });
}

void Fid_Window::Refresh() {
  const Session& s = session_;
  fields_.at("Text3")->setText(QString::asprintf("%.2f", s.Line_Broadening));
  fields_.at("Text4")->setText(Fmt(s.Trap_T1));
  fields_.at("Text5")->setText(Fmt(s.Trap_T2));
  fields_.at("Text6")->setText(Fmt(s.Trap_T3));
  fields_.at("Text7")->setText(Fmt(s.Trap_T4));
  fields_.at("Text10")->setText(Fmt(s.Window_Start));
  fields_.at("Text11")->setText(Fmt(s.Window_End));
  fields_.at("Text12")->setText(QString::number(s.Fid_Shift));
  fields_.at("Text1")->setText(Fmt(state_.Vertical_Zoom));
  fields_.at("Text2")->setText(Fmt(state_.Vertical_Offset));
  fields_.at("Text12")->setVisible(state_.Shift_Field_Shown);
  window_kind_->setCurrentIndex(s.Window_Kind);
  // The exponential width applies to kind 0, start and end to kinds 1..3.
  fields_.at("Text3")->setEnabled(s.Window_Kind == 0);
  fields_.at("Text10")->setEnabled(s.Window_Kind != 0);
  fields_.at("Text11")->setEnabled(s.Window_Kind != 0);
  auto_phase_->setChecked(s.Auto_Phase_Off == 0);
  buttons_.at("Command3")->setEnabled(state_.Commit_Enabled);
  buttons_.at("Command1")->setEnabled(state_.Zero_Fill_Enabled);
  buttons_.at("Command5")->setEnabled(state_.LP_Fill_Enabled);
  phase_->Refresh();
  fid_plot_->update();
  spec_plot_->update();
}

void Fid_Window::closeEvent(QCloseEvent* event) {
  if (state_.Result == "OK" || signal::Discard_Ft_Form(session_, state_)) {
    event->accept();
  } else {
    event->ignore();
  }
}

void Fid_Window::reject() {
  // Escape and the close box go through the same question.
  if (signal::Discard_Ft_Form(session_, state_)) QDialog::reject();
}

}  // namespace tevo::app
