#include "title_window.h"

#include <QLabel>
#include <QTimer>

#include "version.h"

namespace tevo::app {

std::string Version_Caption() {
  return "Ver." + std::to_string(Version_Major) + "." + std::to_string(Version_Minor) + "." +
         std::to_string(Version_Patch);
}

Title_Window::Title_Window(QWidget* parent) : QWidget(parent, Qt::SplashScreen) {
  setObjectName("NMR1D_Form0");
  // 11520 x 8730 twips at 15 twips per pixel; the version label sits at
  // top 1065, left 6990 twips.
  setFixedSize(768, 582);
  setStyleSheet("background-color: #102a4c; color: white;");
  auto* name = new QLabel(QStringLiteral("tevo1d"), this);
  QFont big = name->font();
  big.setPointSize(36);
  big.setBold(true);
  name->setFont(big);
  name->move(60, 220);
  auto* sub = new QLabel(QString::fromUtf8("1D NMR データ処理"), this);
  QFont mid = sub->font();
  mid.setPointSize(16);
  sub->setFont(mid);
  sub->move(64, 300);
  auto* version = new QLabel(QString::fromStdString(Version_Caption()), this);
  version->setObjectName("Label_Version");
  version->move(466, 71);
  QTimer::singleShot(1000, this, [this] { ready_ = true; });
}

}  // namespace tevo::app
