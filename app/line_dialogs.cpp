#include "line_dialogs.h"

#include <QApplication>
#include <QCheckBox>
#include <QCloseEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

#include "datafiles/vendor_text.h"
#include "deconvolution/line_results.h"
#include "dialog_parts.h"
#include "hold_button.h"
#include "line_window.h"
#include "platform/ui.h"
#include "session/number_text.h"

namespace tevo::app {

namespace {

QString Number(float v) { return QString::number(static_cast<double>(v), 'g', 7); }
float Field_Value(const QLineEdit* e) { return static_cast<float>(datafiles::Val(e->text().toStdString())); }

// The settings keys of the fit's steps and widths, in the order of Text(0) .. Text(7).
constexpr const char* Fit_Keys[8] = {"SIM HENDOU POS",   "SIM CRITIC POS",   "SIM HENDOU WIDTH", "SIM CRITIC WIDTH",
                                     "SIM HENDOU HEIGH", "SIM CRITIC HEIGH", "SIM HENDOU FUNC",  "SIM CRITIC FUNC"};
constexpr const char* Param_Names[4] = {"位置(ppm)", "半値幅(Hz)", "高さ", "Gauss-Func."};

// A list row sorted by the number its column shows.
class Number_Item : public QTreeWidgetItem {
 public:
  using QTreeWidgetItem::QTreeWidgetItem;
  bool operator<(const QTreeWidgetItem& other) const override {
    const int c = treeWidget() ? treeWidget()->sortColumn() : 0;
    return text(c).toDouble() < other.text(c).toDouble();
  }
};

}  // namespace

// ---- SpecSim_Form4 ----

Line_Fit_Dialog::Line_Fit_Dialog(Line_Window& window) : QDialog(&window), window_(window) {
  setObjectName("SpecSim_Form4");
  setWindowTitle("非線形最小二乗近似");
  Session& s = window_.session();
  deconvolution::Sim_Prepare_Fit(s, window_.State(), fit_);
  if (fit_.Too_Many) s.ui->Beep();
  kept_ = base_ = window_.State().Peaks;
  auto* layout = new QVBoxLayout(this);
  auto* frames = new QWidget;
  auto* grid = new QGridLayout(frames);
  for (std::size_t q = 0; q < fit_.Fit_Peak_Index.size(); ++q) {
    auto* frame = new QGroupBox(QString("Peak %1").arg(fit_.Fit_Peak_Index[q] + 1), frames);
    frame->setObjectName(QString("Frame%1").arg(q));
    auto* g = new QGridLayout(frame);
    for (int p = 0; p < 4; ++p) {
      g->addWidget(new QLabel(Param_Names[p], frame), p, 0);
      auto* t = Named_Field(frame, ("Text_" + std::to_string(q) + "_" + std::to_string(p)).c_str());
      auto* c = new QCheckBox("Fix", frame);
      c->setObjectName(QString("Check1_%1_%2").arg(q).arg(p));
      c->setToolTip("変化させたくない時にはここにチェックを入れる");
      g->addWidget(t, p, 1);
      g->addWidget(c, p, 2);
      text_.push_back(t);
      fix_.push_back(c);
    }
    grid->addWidget(frame, static_cast<int>(q / 4), static_cast<int>(q % 4));
    frames_.push_back(frame);
  }
  auto* scroll = new QScrollArea(this);
  scroll->setWidget(frames);
  scroll->setWidgetResizable(true);
  layout->addWidget(scroll, 1);
  auto* progress = new QHBoxLayout;
  progress->addWidget(new QLabel("回数", this));
  count_ = new QLabel("0", this);
  count_->setObjectName("Label20");
  progress->addWidget(count_);
  progress->addWidget(new QLabel("誤差", this));
  error_ = new QLabel(this);
  error_->setObjectName("Label21");
  progress->addWidget(error_);
  progress->addStretch();
  layout->addLayout(progress);
  auto* row = new QHBoxLayout;
  start_ = Named_Button(this, "Command1", "計算開始");
  stop_button_ = Named_Button(this, "Command3", "計算中止");
  params_ = Named_Button(this, "Command4", "収束パラメータ");
  ok_ = Named_Button(this, "Command2", "OK");
  cancel_ = Named_Button(this, "Command5", "ｷｬﾝｾﾙ");
  for (QPushButton* b : {start_, stop_button_, params_, ok_, cancel_}) {
    b->setAutoDefault(false);
    row->addWidget(b);
  }
  layout->addLayout(row);
  connect(start_, &QPushButton::clicked, this, &Line_Fit_Dialog::Run_Fit);
  connect(stop_button_, &QPushButton::clicked, this, [this] { stop_ = running_; });
  connect(params_, &QPushButton::clicked, this, [this] {
    Fit_Param_Dialog form(window_.session(), this);
    form.exec();
  });
  connect(ok_, &QPushButton::clicked, this, &QDialog::accept);
  connect(cancel_, &QPushButton::clicked, this, &Line_Fit_Dialog::reject);
  Show_Values(fit_.Start);
  Set_Controls();
}

void Line_Fit_Dialog::Show_Values(const std::vector<float>& values) {
  for (std::size_t i = 0; i < text_.size() && i < values.size(); ++i) text_[i]->setText(Number(values[i]));
}

void Line_Fit_Dialog::Set_Controls() {
  // While a fit runs only "計算中止" answers.
  for (QGroupBox* f : frames_) f->setEnabled(!running_);
  for (QPushButton* b : {start_, params_, ok_, cancel_}) b->setEnabled(!running_);
  stop_button_->setEnabled(running_);
  if (running_) stop_button_->setFocus();
}

void Line_Fit_Dialog::Store(bool sort) {
  deconvolution::Sim_State& st = window_.State();
  const float axis0 = deconvolution::Sim_Axis0(window_.session());
  st.Peaks = base_;
  if (sort) return deconvolution::Store_Fit(fit_, st.Peaks, axis0, st.Descending);
  // While the fit runs the lines keep the order the slots index.
  for (std::size_t q = 0; q < fit_.Fit_Peak_Index.size(); ++q) {
    const auto k = static_cast<std::size_t>(fit_.Fit_Peak_Index[q]);
    const float* t = fit_.State.Trial.data() + 4 * q;
    st.Peaks.Peak_Pos[k] = t[0] - axis0;
    st.Peaks.Peak_Width[k] = std::fabs(t[1]);
    st.Peaks.Peak_Height[k] = t[2];
    st.Peaks.Peak_Gauss[k] = t[3];
  }
}

void Line_Fit_Dialog::Run_Fit() {
  if (running_ || fit_.Fit_Peak_Index.empty()) return;
  Session& s = window_.session();
  deconvolution::Sim_State& st = window_.State();
  // A fit empties the window's undo list.
  st.Undo = {};
  running_ = true;
  window_.Set_Fitting(true);
  Set_Controls();
  for (std::size_t i = 0; i < text_.size(); ++i) {
    fit_.Start[i] = Field_Value(text_[i]);
    fit_.Fix[i] = fix_[i]->isChecked() ? 1 : 0;
  }
  const std::array<float, 4> step = deconvolution::Sim_Fit_Steps(s), tol = deconvolution::Sim_Fit_Tols(s);
  for (std::size_t i = 0; i < fit_.Step.size(); ++i) fit_.Step[i] = step[i % 4], fit_.Tol[i] = tol[i % 4];
  const double f = s.Spectrum_Frequency;
  deconvolution::Run_Line_Fit(fit_, f, [&](const relaxation::Simplex_State& state) {
    count_->setText(QString::number(state.Iterations));
    error_->setText(Number(state.Vertex_Error[static_cast<std::size_t>(state.Low)]));
    if (state.Iterations % 100 == 0) {
      std::vector<float> vertex;
      for (const auto& p : state.Simplex) vertex.push_back(p[0]);
      Show_Values(vertex);
      Store(false);
      window_.Refresh();
    }
    // "計算中止" and repaints get through between iterations.
    QApplication::processEvents();
    return !stop_;
  });
  s.ui->Beep();
  window_.Set_Criterion(deconvolution::Line_Criterion(fit_.State.Trial, fit_.Fit_X, fit_.Fit_Y, f));
  Show_Values(fit_.State.Trial);
  Store(true);
  // The lines are sorted now: the slots index them afresh, the fields
  // keep showing the fit.
  base_ = st.Peaks;
  deconvolution::Line_Fit again;
  deconvolution::Sim_Prepare_Fit(s, st, again);
  if (again.Fit_Peak_Index.size() == fit_.Fit_Peak_Index.size()) {
    fit_.Fit_Peak_Index = again.Fit_Peak_Index;
    fit_.Start = again.Start;
    Show_Values(fit_.Start);
    for (std::size_t q = 0; q < frames_.size(); ++q) frames_[q]->setTitle(QString("Peak %1").arg(fit_.Fit_Peak_Index[q] + 1));
  }
  running_ = false;
  stop_ = false;
  window_.Set_Fitting(false);
  Set_Controls();
  window_.Refresh();
}

void Line_Fit_Dialog::reject() {
  if (running_) {
    stop_ = true;
    return;
  }
  // The position, width and height kept at opening come back.
  deconvolution::Sim_Peaks& p = window_.State().Peaks;
  p.Peak_Pos = kept_.Peak_Pos;
  p.Peak_Width = kept_.Peak_Width;
  p.Peak_Height = kept_.Peak_Height;
  window_.Refresh();
  QDialog::reject();
}

void Line_Fit_Dialog::closeEvent(QCloseEvent* e) {
  if (running_) {
    stop_ = true;
    return e->ignore();
  }
  QDialog::closeEvent(e);
}

// ---- SpecSim_Form2 ----

Fit_Param_Dialog::Fit_Param_Dialog(Session& session, QWidget* parent) : QDialog(parent) {
  setObjectName("SpecSim_Form2");
  setWindowTitle("収束パラメータ");
  auto* layout = new QVBoxLayout(this);
  auto* grid = new QGridLayout;
  grid->addWidget(new QLabel("変動値", this), 0, 1);
  grid->addWidget(new QLabel("収束誤差", this), 0, 2);
  for (int p = 0; p < 4; ++p) {
    grid->addWidget(new QLabel(Param_Names[p], this), p + 1, 0);
    for (int c = 0; c < 2; ++c) {
      const auto i = static_cast<std::size_t>(2 * p + c);
      text_[i] = Named_Field(this, ("Text" + std::to_string(i)).c_str());
      text_[i]->setText(QString::number(session.settings.Real(Fit_Keys[i]), 'g', 7));
      grid->addWidget(text_[i], p + 1, c + 1);
    }
  }
  layout->addLayout(grid);
  QPushButton* ok = Ok_Cancel_Row(this, layout);
  connect(ok, &QPushButton::clicked, this, [this, &session] {
    for (std::size_t i = 0; i < text_.size(); ++i) session.settings.Set(Fit_Keys[i], Field_Value(text_[i]));
    accept();
  });
}

// ---- SpecSim_Form10 ----

Line_List_Dialog::Line_List_Dialog(Line_Window& window) : QDialog(&window) {
  setObjectName("SpecSim_Form10");
  setWindowTitle("ピークリスト");
  Session& s = window.session();
  const deconvolution::Sim_Peaks& peaks = window.State().Peaks;
  const float axis0 = deconvolution::Sim_Axis0(s);
  auto* layout = new QVBoxLayout(this);
  list_ = new QTreeWidget(this);
  list_->setObjectName("ListView1");
  list_->setRootIsDecorated(false);
  QStringList heads;
  for (const char* h : deconvolution::Line_Result_Heads) heads << h;
  list_->setHeaderLabels(heads);
  int total = 0;
  for (std::size_t c = 0; c < deconvolution::Line_Result_Samples.size(); ++c) {
    const int w = fontMetrics().horizontalAdvance(deconvolution::Line_Result_Samples[c]) + 12;
    list_->setColumnWidth(static_cast<int>(c), w);
    total += w;
  }
  for (const auto& r : deconvolution::Line_Result_Rows(peaks, axis0, s.Spectrum_Frequency)) {
    auto* item = new Number_Item(list_);
    for (std::size_t c = 0; c < r.text.size(); ++c) {
      item->setText(static_cast<int>(c), QString::fromStdString(r.text[c]));
      item->setTextAlignment(static_cast<int>(c), Qt::AlignRight | Qt::AlignVCenter);
    }
  }
  // A click on a column head orders the list by it.
  list_->setSortingEnabled(true);
  list_->sortByColumn(0, Qt::AscendingOrder);
  layout->addWidget(list_, 1);
  auto* row = new QHBoxLayout;
  auto* save = Named_Button(this, "Command3", "保存");
  auto* print = Named_Button(this, "Command2", "印刷");
  print->setEnabled(false);  // printed lists come with the page output
  auto* close = Named_Button(this, "Command1", "閉じる");
  connect(save, &QPushButton::clicked, this, [&s, &peaks, axis0] {
    if (const auto path = Ask_Ascii_Path(s)) deconvolution::Write_Line_Results(s, peaks, axis0, *path);
  });
  connect(close, &QPushButton::clicked, this, &QDialog::accept);
  row->addStretch();
  for (QPushButton* b : {save, print, close}) b->setAutoDefault(false), row->addWidget(b);
  layout->addLayout(row);
  resize(total + 48, 320);
}

// ---- SpecSim_Form9 ----

Manual_Dialog::Manual_Dialog(Line_Window& window) : QDialog(&window), window_(window) {
  setObjectName("SpecSim_Form9");
  setWindowTitle("手動設定");
  auto* layout = new QVBoxLayout(this);
  auto* pick = new QHBoxLayout;
  const auto count = [this] { return window_.State().Peaks.Sim_Peak_Count; };
  auto* prev = new Hold_Button("<", [this] { Select(selected_ - 1); }, [this] { Select(selected_ - 1); return selected_ > 0; }, this);
  prev->setObjectName("PeakDec");
  auto* next = new Hold_Button(">", [this] { Select(selected_ + 1); },
                               [this, count] { Select(selected_ + 1); return selected_ < count() - 1; }, this);
  next->setObjectName("PeakInc");
  number_ = Named_Field(this, "Text5");
  number_->setToolTip("ピーク番号入力");
  On_Typed(number_, this, [this] { Select(number_->text().toInt() - 1); });
  pick->addWidget(new QLabel("ピーク番号", this));
  pick->addWidget(prev);
  pick->addWidget(number_);
  pick->addWidget(next);
  layout->addLayout(pick);
  auto* grid = new QGridLayout;
  using K = deconvolution::Sim_Step_Kind;
  const std::array<std::array<std::pair<const char*, K>, 2>, 4> steps = {{
      {{{"MoveLeft", K::Move_Left}, {"MoveRight", K::Move_Right}}},
      {{{"WidthDec", K::Width_Dec}, {"WidthInc", K::Width_Inc}}},
      {{{"HeightDec", K::Height_Dec}, {"HeightInc", K::Height_Inc}}},
      {{{"GaussDec", K::Gauss_Dec}, {"GaussInc", K::Gauss_Inc}}},
  }};
  for (int p = 0; p < 4; ++p) {
    grid->addWidget(new QLabel(Param_Names[p], this), p, 0);
    text_[static_cast<std::size_t>(p)] = Named_Field(this, ("Text" + std::to_string(p + 1)).c_str());
    On_Typed(text_[static_cast<std::size_t>(p)], this, [this, p] {
      deconvolution::Sim_State& st = window_.State();
      if (selected_ >= st.Peaks.Sim_Peak_Count) return;
      deconvolution::Sim_Push(st, 4);
      const auto k = static_cast<std::size_t>(selected_);
      const float v = Field_Value(text_[static_cast<std::size_t>(p)]);
      if (p == 0) st.Peaks.Peak_Pos[k] = v - deconvolution::Sim_Axis0(window_.session());
      if (p == 1 && v > 0) st.Peaks.Peak_Width[k] = v;
      if (p == 2) st.Peaks.Peak_Height[k] = v;
      if (p == 3) st.Peaks.Peak_Gauss[k] = std::clamp(v, 0.0f, 1.0f);
      window_.Refresh();
      Show();
    });
    grid->addWidget(text_[static_cast<std::size_t>(p)], p, 1);
    for (int side = 0; side < 2; ++side) {
      const auto [name, kind] = steps[static_cast<std::size_t>(p)][static_cast<std::size_t>(side)];
      const auto step = [this, kind = kind] {
        return deconvolution::Sim_Step_Peak(window_.session(), window_.State(), selected_, kind);
      };
      auto* b = new Hold_Button(side == 0 ? "-" : "+",
                                [this, step] {
                                  // One undo record per press, however long it is held.
                                  deconvolution::Sim_Push(window_.State(), 4);
                                  step();
                                },
                                step, this);
      b->setObjectName(name);
      connect(b, &Hold_Button::stepped, this, [this] {
        window_.Refresh();
        Show();
      });
      grid->addWidget(b, p, 2 + side);
    }
  }
  layout->addLayout(grid);
  area_ = new QLabel(this);
  area_->setObjectName("Integral");
  layout->addWidget(area_);
  auto* close = Named_Button(this, "Command1", "閉じる");
  connect(close, &QPushButton::clicked, this, &QDialog::accept);
  layout->addWidget(close);
  Select(0);
}

void Manual_Dialog::Select(int k) {
  selected_ = std::clamp(k, 0, std::max(0, window_.State().Peaks.Sim_Peak_Count - 1));
  Show();
}

void Manual_Dialog::Show() {
  const deconvolution::Sim_Peaks& p = window_.State().Peaks;
  const bool any = selected_ < p.Sim_Peak_Count;
  for (QLineEdit* t : text_) t->setEnabled(any);
  if (!any) return;
  const auto k = static_cast<std::size_t>(selected_);
  number_->setText(QString::number(selected_ + 1));
  text_[0]->setText(QString::fromStdString(
      Format_Number(p.Peak_Pos[k] + deconvolution::Sim_Axis0(window_.session()), "##0.00000")));
  text_[1]->setText(Number(p.Peak_Width[k]));
  text_[2]->setText(Number(p.Peak_Height[k]));
  text_[3]->setText(Number(p.Peak_Gauss[k]));
  area_->setText(QString("Integral: %1").arg(
      QString::fromStdString(Format_Number(deconvolution::Peak_Area(p.Peak_Height[k], p.Peak_Width[k], p.Peak_Gauss[k]), "0.0000"))));
}

}  // namespace tevo::app
