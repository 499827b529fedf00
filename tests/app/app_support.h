// The one QApplication of the window tests, made on first use.
#pragma once

#include <QApplication>
#include <QRegularExpression>
#include <QSizeF>
#include <QTimer>
#include <QWidget>
#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>

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

// The size in mm of the first page of a PDF file, from its MediaBox; empty
// when the file is no PDF or names no page size.
inline QSizeF Pdf_Page_Mm(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  std::stringstream bytes;
  bytes << in.rdbuf();
  const std::string raw = bytes.str();
  const QString text = QString::fromLatin1(raw.data(), static_cast<qsizetype>(raw.size()));
  if (!text.startsWith("%PDF-")) return {};
  const QRegularExpressionMatch m =
      QRegularExpression(R"(/MediaBox\s*\[\s*0\s+0\s+([\d.]+)\s+([\d.]+)\s*\])").match(text);
  if (!m.hasMatch()) return {};
  return {m.captured(1).toDouble() * 25.4 / 72, m.captured(2).toDouble() * 25.4 / 72};
}

}  // namespace tevo::test
