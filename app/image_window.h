// Form110, "構造式・イメージの表示": the data set's structure picture (a
// metafile or an image file, kept whole in the data set and saved with it)
// stretched over the window, which stays above the others. Its menu reads a
// picture file, pastes one from the clipboard and copies the picture there.
// While it is open "STRUCTURE DISP" is 1, so the next start shows it again.
#pragma once

#include <QDialog>
#include <QWidget>
#include <string>

#include "session/session.h"

class QAction;

namespace tevo::app {

// Picture1: the picture stretched to the widget.
class Structure_Picture : public QWidget {
  Q_OBJECT
 public:
  explicit Structure_Picture(const Session& s, QWidget* parent);

 protected:
  void paintEvent(QPaintEvent*) override;

 private:
  const Session& session_;
};

class Image_Window : public QDialog {
  Q_OBJECT
 public:
  explicit Image_Window(Session& session, QWidget* parent = nullptr);
  // The menu items by name: "Menu_Load", "Menu_Paste", "Menu_Copy".
  QAction* Action(const char* name) const;
  Structure_Picture* Picture() const { return picture_; }

  // "メタファイルの読み込み": the picture file at path, or the one chosen in
  // the file dialog when path is empty. A file that is no picture leaves
  // the picture as it was and says so. Returns true when it was taken.
  bool Load_File(const std::string& path);
  // "クリップボードからの貼り付け": a metafile the clipboard holds, else
  // its image (kept as PNG). False when it holds neither.
  bool Paste();
  // "クリップボードへコピー": the picture as an image of the window's size,
  // and a metafile's own bytes beside it.
  void Copy() const;

 signals:
  // The picture was replaced.
  void changed();

 protected:
  void showEvent(QShowEvent* event) override;
  void done(int result) override;

 private:
  void Take(std::vector<uint8_t> bytes);

  Session& session_;
  Structure_Picture* picture_ = nullptr;
};

}  // namespace tevo::app
