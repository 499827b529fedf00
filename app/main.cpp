// tevo1d: the desktop application.
//
// Usage: tevo1d [--home DIR] [--screenshot FILE.png] [PATH]
// PATH follows the command-line rules of the program (quotes, "$" prefix).
// --home sets the program folder; --screenshot paints the main window into a
// picture once the start is done and ends (used without a display). A FID
// opened there is photographed in its processing window (FILE-fid.png) and
// committed with the window's defaults, as if 完 了 were pressed.
#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>
#include <QPushButton>
#include <QTimer>
#include <cstdio>
#include <string>

#include "main_window.h"
#include "platform/qt/qt_output.h"
#include "title_window.h"

int main(int argc, char** argv) {
  QApplication qapp(argc, argv);
  // The platform's own dialog texts (file dialog, standard buttons) in
  // Japanese, as the rest of the program.
  QTranslator qt_texts;
  if (qt_texts.load(QLocale(QLocale::Japanese, QLocale::Japan), "qtbase", "_",
                    QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
    QApplication::installTranslator(&qt_texts);
  // The faces of the system, for the markup's font checks and Symbol face.
  tevo::platform::Probe_Font_Table();
  std::string home, screenshot, command_line;
  for (int i = 1; i < argc; ++i) {
    const std::string arg = argv[i];
    if (arg == "--home" && i + 1 < argc) {
      home = argv[++i];
    } else if (arg == "--screenshot" && i + 1 < argc) {
      screenshot = argv[++i];
    } else {
      if (!command_line.empty()) command_line += ' ';
      command_line += arg;
    }
  }

  tevo::Session session;
  tevo::app::Title_Window title;
  if (screenshot.empty()) title.show();
  QApplication::processEvents();

  // Nobody is there to answer a modal window in screenshot mode. The FID's
  // processing window is photographed and committed with its defaults; any
  // other window is accepted as it stands, and named on stderr.
  QTimer answer_modal;
  if (!screenshot.empty()) {
    QObject::connect(&answer_modal, &QTimer::timeout, [&screenshot] {
      auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
      if (dialog == nullptr) return;
      if (dialog->objectName() != "NMR1D_Form11") {
        std::fprintf(stderr, "screenshot: accepted \"%s\"\n", dialog->windowTitle().toUtf8().constData());
        dialog->accept();
        return;
      }
      const QFileInfo shot(QString::fromStdString(screenshot));
      dialog->grab().save(shot.dir().filePath(shot.completeBaseName() + "-fid." + shot.suffix()));
      auto* commit = dialog->findChild<QPushButton*>("Command3");
      if (commit != nullptr && !commit->isEnabled()) dialog->findChild<QPushButton*>("Command2")->click();
      if (commit != nullptr) commit->click();
    });
    answer_modal.start(50);
  }

  tevo::app::Main_Window window(session);
  window.Start(home, argv[0], command_line, /*interactive=*/screenshot.empty());
  if (!window.Started()) return 0;

  // Wait for the title window (its timer), at most 30 seconds.
  QElapsedTimer waited;
  waited.start();
  while (screenshot.empty() && !title.Ready() && waited.elapsed() < 30000) QApplication::processEvents();
  title.close();
  window.show();
  window.Open_Command_Line();

  if (!screenshot.empty()) {
    QApplication::processEvents();
    const bool ok = window.grab().save(QString::fromStdString(screenshot));
    window.Shut_Down();
    return ok ? 0 : 3;
  }
  return qapp.exec();
}
