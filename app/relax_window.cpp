#include "relax_window.h"

#include <QApplication>
#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

#include "datafiles/vendor_text.h"
#include "dialog_parts.h"
#include "list_form.h"
#include "page/window_pages.h"
#include "page_form.h"
#include "relaxation/relax_plot.h"
#include "style_dialog.h"
#include "window_page_form.h"
#include "platform/qt/qt_surface.h"
#include "relaxation/array_data.h"
#include "session/messages.h"
#include "session/number_text.h"

namespace tevo::app {

namespace {

QString Q(const std::string& s) { return QString::fromStdString(s); }
QString Number(float v) { return QString::number(static_cast<double>(v), 'g', 7); }

// The frame of the plot inside the widget, in pixels.
struct Frame {
  int left, top, right, bottom;
};
Frame Plot_Frame(const QWidget& w) { return {60, 20, w.width() - 200, w.height() - 40}; }

// T1Cal_Form2: the delay and intensity limits of the plot.
class Relax_Range_Dialog : public QDialog {
 public:
  Relax_Range_Dialog(relaxation::Relax_Limits& limits, QWidget* parent) : QDialog(parent), limits_(limits) {
    setObjectName("T1Cal_Form2");
    setWindowTitle("表示範囲の変更");
    const float values[] = {limits.X_Min, limits.X_Max, limits.Y_Min, limits.Y_Max};
    const char* captions[] = {"t 最小 / s", "t 最大 / s", "強度 最小", "強度 最大"};
    auto* form = new QFormLayout;
    for (std::size_t i = 0; i < text_.size(); ++i) {
      text_[i] = Named_Field(this, ("Text" + std::to_string(i + 1)).c_str());
      text_[i]->setText(Number(values[i]));
      form->addRow(captions[i], text_[i]);
    }
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    QPushButton* ok = Ok_Cancel_Row(this, layout);
    connect(ok, &QPushButton::clicked, this, [this] {
      relaxation::T1Cal_Form2_OK(limits_, text_[0]->text().toStdString(), text_[1]->text().toStdString(),
                                 text_[2]->text().toStdString(), text_[3]->text().toStdString());
      accept();
    });
  }

 private:
  relaxation::Relax_Limits& limits_;
  std::array<QLineEdit*, 4> text_{};
};

}  // namespace

Relax_Plot::Relax_Plot(Relax_Window& owner) : QWidget(&owner), owner_(owner) {
  setObjectName("Picture1");
  setMinimumSize(560, 320);
}

void Relax_Plot::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), Qt::white);
  if (!owner_.have_data_) return;
  platform::QtSurface surface(painter, width(), height(), logicalDpiY(), true);
  const Frame f = Plot_Frame(*this);
  relaxation::Relax_Limits limits;
  owner_.Limits(limits.X_Min, limits.X_Max, limits.Y_Min, limits.Y_Max);
  const relaxation::Relax_Plot_Style style = relaxation::Relax_Display_Style(owner_.session_, logicalDpiY() / 72.0);
  relaxation::Draw_Relax_Plot(owner_.fit_, limits, surface, f.left, f.top, f.right, f.bottom, style);
  // The results of the last trial point beside the plot.
  int y = f.top;
  surface.Set_Text_Colour(style.axis);
  for (const std::string& line : relaxation::Relax_Result_Lines(owner_.fit_)) {
    surface.Text_Out(f.right + 12, y, line, style.numbers, style.numbers.Size * style.scale);
    y += 20;
  }
}

void Relax_Plot::mousePressEvent(QMouseEvent* e) {
  relaxation::Relax_Fit& fit = owner_.fit_;
  const Frame f = Plot_Frame(*this);
  const QPoint p = e->position().toPoint();
  if (owner_.running_ || !owner_.have_data_ || p.x() < f.left || p.x() > f.right || p.y() < f.top || p.y() > f.bottom)
    return;
  float x0, x1, y0, y1;
  owner_.Limits(x0, x1, y0, y1);
  const float delay = x0 + static_cast<float>(p.x() - f.left) / static_cast<float>(f.right - f.left) * (x1 - x0);
  const int32_t j = relaxation::Nearest_Point(fit.Data_T, delay);
  if (e->button() == Qt::LeftButton && j <= fit.Last_Point) fit.First_Point = j;
  if (e->button() == Qt::RightButton && j >= fit.First_Point) fit.Last_Point = j;
  owner_.Show_Range();
  update();
}

Relax_Window::Relax_Window(Session& session, int32_t region_first, int32_t region_last, QWidget* parent)
    : QDialog(parent), session_(session), region_first_(region_first), region_last_(region_last) {
  setObjectName("T1Cal_Form1");
  setWindowTitle("T1/T2データの解析");
  auto* layout = new QVBoxLayout(this);
  auto* menu = new QMenuBar(this);
  QAction* m30 = menu->addAction("表示範囲の変更");
  m30->setObjectName("m30");
  connect(m30, &QAction::triggered, this, &Relax_Window::m30_Click);
  // The intensities of the series as a printed list, delay against value.
  QAction* list = menu->addAction("Intensity Listの印刷");
  list->setObjectName("Print_List");
  connect(list, &QAction::triggered, this, [this] {
    if (session_.Intensity_Pairs.empty()) return;
    List_Form form(session_, page::List_Kind::T1, this);
    form.exec();
  });
  // The page of the plot and the fit (T1Cal_Form8).
  QAction* page = menu->addAction("印刷・プレビュー");
  page->setObjectName("m41");
  connect(page, &QAction::triggered, this, &Relax_Window::Print_Preview);
  layout->setMenuBar(menu);
  combo_ = new QComboBox(this);
  combo_->setObjectName("Combo1");
  combo_->addItem("面積(選択範囲)");
  for (std::size_t k = 1; k <= session_.Peaks.size(); ++k) combo_->addItem(QString("Peak %1").arg(k));
  layout->addWidget(combo_);
  auto* grid = new QGridLayout;
  const char* heads[] = {"", "初期値", "変動値", "収束誤差", ""};
  for (int c = 0; c < 5; ++c) grid->addWidget(new QLabel(heads[c], this), 0, c);
  const char* names[] = {"A0", "k", "B"};
  for (int p = 0; p < relaxation::Relax_Param_Count; ++p) {
    grid->addWidget(new QLabel(names[p], this), p + 1, 0);
    for (int c = 0; c < 3; ++c) {
      const int i = p * 3 + c;
      text_[static_cast<std::size_t>(i)] = Named_Field(this, ("Text" + std::to_string(i)).c_str());
      grid->addWidget(text_[static_cast<std::size_t>(i)], p + 1, c + 1);
    }
    fix_[static_cast<std::size_t>(p)] = new QCheckBox("Fix", this);
    fix_[static_cast<std::size_t>(p)]->setObjectName(QString("Check1%1").arg(p));
    grid->addWidget(fix_[static_cast<std::size_t>(p)], p + 1, 4);
  }
  layout->addLayout(grid);
  auto* row = new QHBoxLayout;
  start_ = Named_Button(this, "Command1", "計算開始");
  stop_button_ = Named_Button(this, "Command3", "計算中止");
  start_->setAutoDefault(false);
  stop_button_->setAutoDefault(false);
  row->addWidget(start_);
  row->addWidget(stop_button_);
  row->addWidget(new QLabel("回数", this));
  count_ = new QLabel(this);
  count_->setObjectName("Label20");
  row->addWidget(count_);
  row->addWidget(new QLabel("誤差", this));
  error_ = new QLabel(this);
  error_->setObjectName("Label21");
  row->addWidget(error_);
  row->addStretch();
  layout->addLayout(row);
  auto* info = new QHBoxLayout;
  criterion_ = new QLabel(this);
  criterion_->setObjectName("Labelcr");
  range_ = new QLabel(this);
  range_->setObjectName("Labelstart");
  info->addWidget(criterion_);
  info->addWidget(range_);
  info->addStretch();
  layout->addLayout(info);
  plot_ = new Relax_Plot(*this);
  layout->addWidget(plot_, 1);
  // The fonts, colours and lines of the plot and of its print.
  Add_Style_Items(menu->addMenu("設定"), session_, plot_, "m311", "T1Cal_Form3_0", "m312", "T1Cal_Form3_1", [this] {
    const page::Page_Content content = Window_Page();
    return Page_Image(session_, Style_Preview_Dpi, &content);
  });
  Set_Controls(false);
  connect(start_, &QPushButton::clicked, this, &Relax_Window::Run_Fit);
  connect(stop_button_, &QPushButton::clicked, this, [this] {
    if (running_) stop_ = true;
  });
  connect(combo_, &QComboBox::activated, this, [this](int index) { Select(index); });
}

bool Relax_Window::Can_Open(Session& session, int32_t region_first, int32_t region_last) {
  if (session.Array_Rows < 2) return false;
  if (session.Peaks.empty() && (region_first < 0 || region_last < 0)) {
    session.ui->Beep();
    Show_Message(session, "計算する範囲を決めるか、ピーク検出を行ってください", Style_OK, "");
    return false;
  }
  return true;
}

void Relax_Window::Select(int index, bool first_entry) {
  if (running_) return;
  if (combo_->currentIndex() != index) combo_->setCurrentIndex(index);
  // The sum over the region counts from point 1; no region is 0.
  const int32_t lo = std::min(region_first_, region_last_), hi = std::max(region_first_, region_last_);
  const relaxation::Fit_Data_Status status = relaxation::Select_Fit_Data(
      session_, index, lo >= 0 ? std::max(1, lo) : 0, lo >= 0 ? std::max(1, hi) : 0, first_entry, previous_k_, fit_);
  have_data_ = !fit_.Data_T.empty();
  if (status != relaxation::Fit_Data_Status::Ready) {
    Set_Controls(false);
    plot_->update();
    return;
  }
  previous_k_ = fit_.Start_Value[relaxation::Relax_K];
  for (std::size_t p = 0; p < relaxation::Relax_Param_Count; ++p) {
    text_[p * 3]->setText(Number(fit_.Start_Value[p]));
    text_[p * 3 + 1]->setText(Number(fit_.Step_Value[p]));
    text_[p * 3 + 2]->setText(Number(fit_.Tol_Value[p]));
  }
  Show_Range();
  Set_Controls(true);
  Run_Fit();
}

void Relax_Window::Run_Fit() {
  if (running_ || stop_ || !have_data_) return;
  running_ = true;
  Set_Controls(false);
  for (std::size_t p = 0; p < relaxation::Relax_Param_Count; ++p) {
    fit_.Start_Value[p] = static_cast<float>(datafiles::Val(text_[p * 3]->text().toStdString()));
    fit_.Step_Value[p] = static_cast<float>(datafiles::Val(text_[p * 3 + 1]->text().toStdString()));
    fit_.Tol_Value[p] = static_cast<float>(datafiles::Val(text_[p * 3 + 2]->text().toStdString()));
    fit_.Fix_Flag[p] = fix_[p]->isChecked() ? 1 : 0;
  }
  relaxation::Run_Relax_Fit(fit_, [this](const relaxation::Simplex_State& st) {
    count_->setText(QString::number(st.Iterations));
    error_->setText(Number(st.Vertex_Error[static_cast<std::size_t>(st.Low)]));
    if (relaxation::Relax_Repaint_Due(st.Iterations)) {
      relaxation::Calc_Curve(fit_);
      Show_Vertex0();
      plot_->update();
    }
    // The window stays live: "計算中止", repaints and the close question.
    QApplication::processEvents();
    return !stop_;
  });
  if (fit_.Outcome == relaxation::Simplex_Step::Arithmetic_Error)
    Show_Message(session_, relaxation::Fit_Error_Text(fit_.State.Iterations), Style_OK, "計算エラー");
  count_->setText(QString::number(fit_.State.Iterations));
  criterion_->setText(Q(relaxation::Criterion_Text(fit_.Final_Criterion)));
  Show_Vertex0();
  Show_Range();
  running_ = false;
  stop_ = false;
  Set_Controls(true);
  plot_->update();
}

void Relax_Window::Limits(float& x0, float& x1, float& y0, float& y1) const {
  const relaxation::Relax_Limits l = limits_ ? *limits_ : relaxation::Series_Limits(fit_);
  x0 = l.X_Min;
  x1 = l.X_Max;
  y0 = l.Y_Min;
  y1 = l.Y_Max;
}

page::Page_Content Relax_Window::Window_Page() const {
  relaxation::Relax_Limits l;
  Limits(l.X_Min, l.X_Max, l.Y_Min, l.Y_Max);
  return page::Relax_Page(session_, fit_, l);
}

void Relax_Window::Print_Preview() {
  Window_Page_Form form(session_, "T1Cal_Form8", "印刷プレビュー(T1/T2)", [this] { return Window_Page(); },
                        this);
  form.exec();
}

void Relax_Window::m30_Click() {
  relaxation::Relax_Limits l;
  Limits(l.X_Min, l.X_Max, l.Y_Min, l.Y_Max);
  Relax_Range_Dialog form(l, this);
  if (form.exec() != QDialog::Accepted) return;
  limits_ = l;
  plot_->update();
}

void Relax_Window::Show_Vertex0() {
  const relaxation::Simplex_State& st = fit_.State;
  if (st.Simplex.size() != relaxation::Relax_Param_Count) return;
  for (std::size_t p = 0; p < relaxation::Relax_Param_Count; ++p) {
    text_[p * 3]->setText(Number(st.Simplex[p][0]));
    text_[p * 3 + 1]->setText(Number(st.Step_Value[p]));
    text_[p * 3 + 2]->setText(Number(st.Tol_Value[p]));
  }
}

void Relax_Window::Show_Range() {
  if (fit_.Data_T.empty() || fit_.Last_Point < fit_.First_Point) return range_->clear();
  range_->setText(Q("Start=" + Format_Number(fit_.Data_T[static_cast<std::size_t>(fit_.First_Point)], "####0.0##") +
                    " s  End=" + Format_Number(fit_.Data_T[static_cast<std::size_t>(fit_.Last_Point)], "####0.0##") +
                    " s"));
}

void Relax_Window::Set_Controls(bool enabled) {
  // While a fit runs only "計算中止" answers; before any data only the choice.
  combo_->setEnabled(!running_);
  start_->setEnabled(enabled);
  stop_button_->setEnabled(running_);
  for (QLineEdit* t : text_) t->setEnabled(enabled);
  for (QCheckBox* c : fix_) c->setEnabled(enabled);
}

void Relax_Window::closeEvent(QCloseEvent* e) {
  if (running_) {
    if (Show_Message(session_, "閉じますか", Style_Yes_No | Icon_Question, "解析の終了") != Msg_Yes) return e->ignore();
    stop_ = true;
  }
  e->accept();
}

void Relax_Window::reject() {
  // Escape closes through the same question as the window's close box.
  close();
}

}  // namespace tevo::app
