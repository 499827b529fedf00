#include "line_window.h"

#include <QAction>
#include <QLineEdit>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenuBar>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>
#include <filesystem>

#include "dialog_parts.h"
#include "hold_button.h"
#include "editing/integrals.h"
#include "deconvolution/line_plot.h"
#include "deconvolution/line_results.h"
#include "line_dialogs.h"
#include "list_form.h"
#include "page/window_pages.h"
#include "page_form.h"
#include "printer_dialog.h"
#include "style_dialog.h"
#include "window_page_form.h"
#include "platform/ui.h"
#include "platform/qt/qt_surface.h"
#include "session/messages.h"
#include "session/number_text.h"

namespace tevo::app {

namespace {

QString Q(const std::string& s) { return QString::fromStdString(s); }

// The plot's two bands inside the widget: the residual at the top, the
// spectrum below it, sharing the horizontal scale; room for numbers around.
deconvolution::Line_Plot_Bands Plot_Bands(const QWidget& w) {
  return deconvolution::Line_Bands(50, 8, w.width() - 20, w.height() - 30, true);
}

}  // namespace

std::optional<std::string> Ask_Ascii_Path(Session& s) {
  const std::filesystem::path name(s.Open_Name);
  platform::File_Request request;
  request.title = name.filename().string() + " の保存";
  request.initial_dir = name.parent_path().string();
  request.initial_name = name.stem().empty() ? std::string("*.dat") : name.stem().string() + ".dat";
  request.filter = "ASCII形式(*.dat)|*.dat*|ASCII形式(*.txt)|*.txt*|ASCII形式(*.asc)|*.asc*|全てのファイル|*.*|";
  request.default_ext = "txt";
  const auto answer = s.ui->Save_File(request);
  if (!answer) return std::nullopt;
  return answer->path;
}

Line_Plot::Line_Plot(Line_Window& owner) : QWidget(&owner), owner_(owner) {
  setObjectName("Picture1");
  setMinimumSize(640, 380);
}

double Line_Plot::Pixel_Of_Ppm(double ppm) const {
  const deconvolution::Line_Plot_Bands b = Plot_Bands(*this);
  const deconvolution::Sim_State& st = owner_.State();
  const double span = st.Range_Right_Ppm - st.Range_Left_Ppm;
  return span == 0 ? b.left : b.left + (ppm - st.Range_Left_Ppm) / span * (b.right - b.left);
}

double Line_Plot::Ppm_Of_Pixel(double x) const {
  const deconvolution::Line_Plot_Bands b = Plot_Bands(*this);
  const deconvolution::Sim_State& st = owner_.State();
  return st.Range_Left_Ppm + (x - b.left) / (b.right - b.left) * (st.Range_Right_Ppm - st.Range_Left_Ppm);
}

void Line_Plot::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), Qt::white);
  platform::QtSurface surface(painter, width(), height(), logicalDpiY(), true);
  Session& s = owner_.session();
  deconvolution::Draw_Line_Plot(s, owner_.State(), owner_.Curve(), owner_.Y_Mag(), surface, Plot_Bands(*this),
                                deconvolution::Line_Display_Style(s, logicalDpiY() / 72.0));
}

void Line_Plot::mousePressEvent(QMouseEvent* e) {
  const deconvolution::Line_Plot_Bands b = Plot_Bands(*this);
  const QPoint p = e->position().toPoint();
  if (p.x() < b.left || p.x() > b.right || p.y() < b.res_top || p.y() > b.bottom) return;
  // Within reach of a line: 2 % of the plot's width.
  const double reach = std::fabs(Ppm_Of_Pixel(b.left + 0.02 * (b.right - b.left)) - Ppm_Of_Pixel(b.left));
  owner_.Click(Ppm_Of_Pixel(p.x()), e->button() == Qt::LeftButton, reach);
}

void Line_Plot::mouseMoveEvent(QMouseEvent* e) {
  // An edge follows the mouse while the left button is held.
  if (e->buttons() & Qt::LeftButton) owner_.Drag_Edge(Ppm_Of_Pixel(e->position().x()));
}

Line_Window::Line_Window(Session& session, QWidget* parent) : QDialog(parent), session_(session) {
  setObjectName("SpecSim_Form1");
  setWindowTitle("波形の分離");
  deconvolution::Sim_Open(session_, state_);
  auto* layout = new QVBoxLayout(this);
  auto* bar = new QMenuBar(this);
  layout->setMenuBar(bar);
  const auto add = [this](QMenu* menu, const char* id, const char* caption, bool built) {
    QAction* a = menu->addAction(caption);
    a->setObjectName(id);
    a->setEnabled(built);
    return a;
  };
  QMenu* file = bar->addMenu("ファイル(&F)");
  connect(add(file, "m13", "FittingピークのASCII保存", true), &QAction::triggered, this, [this] {
    if (const auto path = Ask_Ascii_Path(session_)) deconvolution::Write_Line_Curves(session_, state_, *path);
  });
  connect(add(file, "m41_1", "印刷・プレビュー", true), &QAction::triggered, this, &Line_Window::Print_Preview);
  connect(add(file, "m43", "ピークリストの印刷", true), &QAction::triggered, this, [this] {
    List_Form form(session_, page::List_Kind::Sim, this, [this](platform::Surface& surf, const page::List_Page& pg) {
      return page::Print_Sim_List(session_, state_.Peaks, surf, pg);
    });
    form.exec();
  });
  connect(add(file, "m42", "ﾌﾟﾘﾝﾀｰの設定", true), &QAction::triggered, this, [this] {
    Printer_Form form(session_, this);
    form.exec();
  });
  connect(add(file, "m51", "閉じる", true), &QAction::triggered, this, &QDialog::close);
  QMenu* calc = bar->addMenu("計算(&C)");
  connect(add(calc, "m21", "計算の開始", true), &QAction::triggered, this, &Line_Window::Start_Fit);
  QMenu* edit = bar->addMenu("編集(&E)");
  undo_ = add(edit, "m34", "UnDo", false);
  connect(undo_, &QAction::triggered, this, &Line_Window::Undo);
  // Toolbar1: the three click modes, delete all, manual setting, the list.
  auto* tools = new QHBoxLayout;
  const char* modes[] = {"ピークの追加・削除", "計算範囲右端の移動", "計算範囲左端の移動"};
  for (int m = 0; m < 3; ++m) {
    mode_buttons_[m] = Named_Tool(this, ("Button" + std::to_string(m + 1)).c_str(), modes[m], true);
    connect(mode_buttons_[m], &QToolButton::clicked, this, [this, m] { Set_Mode(static_cast<Click_Mode>(m)); });
    tools->addWidget(mode_buttons_[m]);
  }
  auto* all = Named_Tool(this, "Button10", "全ピーク削除", false);
  connect(all, &QToolButton::clicked, this, [this] {
    if (!fitting_ && deconvolution::Sim_Delete_All(session_, state_)) Refresh();
  });
  tools->addWidget(all);
  auto* manual = Named_Tool(this, "Button11", "手動設定", false);
  connect(manual, &QToolButton::clicked, this, [this] {
    if (fitting_) return;
    Manual_Dialog form(*this);
    form.exec();
  });
  tools->addWidget(manual);
  // The vertical zoom: typed, or stepped by 10 % while a button is held.
  auto* mag = Named_Field(this, "Text1");
  mag->setMaximumWidth(70);
  const auto zoom = [this, mag](float factor) {
    y_mag_ = std::clamp(y_mag_ * factor, 0.01f, 10000.0f);
    mag->setText(QString::number(static_cast<double>(y_mag_), 'g', 4));
    plot_->update();
    return y_mag_ > 0.01f && y_mag_ < 10000.0f;
  };
  auto* up = new Hold_Button("↑", [zoom] { zoom(1.1f); }, [zoom] { return zoom(1.1f); }, this);
  up->setObjectName("Command1");
  auto* down = new Hold_Button("↓", [zoom] { zoom(1 / 1.1f); }, [zoom] { return zoom(1 / 1.1f); }, this);
  down->setObjectName("Command2");
  On_Typed(mag, this, [this, mag, zoom] {
    const float v = mag->text().toFloat();
    if (v > 0) y_mag_ = 1.0f;
    zoom(v > 0 ? v : 1.0f);
  });
  mag->setText("1");
  up->setAutoDefault(false);
  down->setAutoDefault(false);
  for (QWidget* w : std::initializer_list<QWidget*>{up, down, mag}) tools->addWidget(w);
  auto* list = Named_Button(this, "Command3", "ﾋﾟｰｸの表示");
  list->setAutoDefault(false);
  connect(list, &QPushButton::clicked, this, &Line_Window::Show_List);
  tools->addWidget(list);
  tools->addStretch();
  layout->addLayout(tools);

  auto* labels = new QHBoxLayout;
  for (auto [label, name] : {std::pair{&count_, "Label_Count"}, std::pair{&start_, "Labelstart"},
                             std::pair{&end_, "Labelend"}, std::pair{&criterion_, "Labelcr"}}) {
    *label = new QLabel(this);
    (*label)->setObjectName(name);
    labels->addWidget(*label);
  }
  labels->addStretch();
  layout->addLayout(labels);
  plot_ = new Line_Plot(*this);
  layout->addWidget(plot_, 1);
  // The fonts, colours and lines of this window's plot and of its print.
  Add_Style_Items(bar->addMenu("設定(&S)"), session_, plot_, "m311", "SpecSim_Form3_0", "m312", "SpecSim_Form3_1",
                  [this] {
                    const page::Page_Content content = page::Line_Page(session_, state_, y_mag_);
                    return Page_Image(session_, Style_Preview_Dpi, &content);
                  });
  Set_Mode(Click_Mode::Peaks);
  Refresh();
}

QAction* Line_Window::Action(const char* id) const { return findChild<QAction*>(id); }

void Line_Window::Set_Mode(Click_Mode mode) {
  mode_ = mode;
  for (int m = 0; m < 3; ++m) mode_buttons_[m]->setChecked(m == static_cast<int>(mode));
}

void Line_Window::Refresh() {
  const deconvolution::Line_Plot_Bands b = Plot_Bands(*plot_);
  curve_ = deconvolution::Calc_Simulation(session_, state_, state_.Range_Left_Ppm, state_.Range_Right_Ppm,
                                          std::max(2, b.right - b.left));
  count_->setText(QString("No. of Peaks: %1").arg(state_.Peaks.Sim_Peak_Count));
  start_->setText(Q(deconvolution::Sim_Range_Text(session_, state_, true)));
  end_->setText(Q(deconvolution::Sim_Range_Text(session_, state_, false)));
  undo_->setText(Q(deconvolution::Sim_Undo_Caption(state_.Undo)));
  undo_->setEnabled(!fitting_ && state_.Undo[0].Code != 65535);
  plot_->update();
}

void Line_Window::Click(double ppm, bool left_button, double reach_ppm) {
  if (fitting_) return;  // the window refuses editing while a fit runs
  switch (mode_) {
    case Click_Mode::Peaks:
      if (left_button) {
        if (!deconvolution::Sim_Add_Peak(session_, state_, ppm)) session_.ui->Beep();
      } else if (!deconvolution::Sim_Delete_Near(session_, state_, ppm, reach_ppm)) {
        return;
      }
      break;
    case Click_Mode::Right_Edge:
    case Click_Mode::Left_Edge:
      if (!left_button) return;
      deconvolution::Sim_Set_Range_Edge(session_, state_, ppm, mode_ == Click_Mode::Right_Edge);
      break;
  }
  Refresh();
}

void Line_Window::Drag_Edge(double ppm) {
  if (fitting_ || mode_ == Click_Mode::Peaks) return;
  deconvolution::Sim_Set_Range_Edge(session_, state_, ppm, mode_ == Click_Mode::Right_Edge, false);
  Refresh();
}

void Line_Window::Start_Fit() {
  if (fitting_) return;
  if (state_.Peaks.Sim_Peak_Count == 0) {
    Show_Message(session_, "初期ピークを設定してください", Style_OK, "ピークの設定");
    return;
  }
  Line_Fit_Dialog form(*this);
  form.exec();
  Refresh();
}

void Line_Window::Undo() {
  if (!fitting_ && deconvolution::Sim_Undo(state_)) Refresh();
}

void Line_Window::Print_Preview() {
  Window_Page_Form form(session_, "SpecSim_Form8", "印刷プレビュー(ピーク分離)",
                        [this] { return page::Line_Page(session_, state_, y_mag_); }, this);
  form.exec();
}

void Line_Window::Show_List() {
  Line_List_Dialog form(*this);
  form.exec();
}

void Line_Window::Set_Criterion(float criterion) {
  criterion_->setText(Q("Criterion=" + Format_Number(criterion, "#.#####E+##")));
}

}  // namespace tevo::app
