#include "page/bitmap_export.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <filesystem>

#include "platform/ui.h"
#include "session/file_replace.h"
#include "session/messages.h"
#include "session/session.h"

namespace tevo::page {

namespace fs = std::filesystem;

Page_Window Copy_Window(const Page_Setup& p, const Copy_Range& r) {
  return {std::min(r.Left, r.Right) * p.Paper_Width, std::max(r.Left, r.Right) * p.Paper_Width,
          std::min(r.Top, r.Bottom) * p.Paper_Height, std::max(r.Top, r.Bottom) * p.Paper_Height};
}

Bitmap_Size Open_Copy_Range(Session& s, int w, int h) {
  const Bitmap_Size size = Copy_Size(w, h);
  if (size.width == 0) {
    s.ui->Beep();
    Show_Message(s, "コピーする範囲を設定してください", Style_OK | Icon_Exclamation, "範囲エラー");
  }
  return size;
}

int Pixel_Limit(Export_Kind kind) { return kind == Export_Kind::Png ? Png_Limit : Bitmap_Limit; }

std::string Size_Estimate_Text(Bitmap_Size size) {
  char buf[48];
  std::snprintf(buf, sizeof buf, "%.2f", static_cast<double>(size.width) * size.height * 0.003);
  std::string t = buf;
  if (t.back() == '0') t.pop_back();  // "#####0.0#": a second decimal only when it counts
  return t + " Kbyte";
}

int Check_Export_Name(Session& s, std::string& path, Export_Kind kind) {
  const std::string ext = kind == Export_Kind::Png ? "png" : "bmp";
  std::string given = fs::path(path).extension().string();
  if (given.empty()) {
    path += "." + ext;
    return 0;
  }
  std::transform(given.begin(), given.end(), given.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  if (given == "." + ext) return 0;
  Show_Message(s, "ﾌｧｲﾙが不正です。または,\nﾌｧｲﾙ名の拡張子が " + ext + " でない", Style_OK | Icon_Exclamation,
               "ファイル名エラー");
  return 1;
}

int Save_Export(Session& s, Export_Kind kind, const std::string& given,
                const std::function<int(const std::string&)>& write) {
  std::string path = given;
  if (path.empty()) {
    platform::File_Request req;
    const bool png = kind == Export_Kind::Png;
    req.title = png ? "画面の保存(PNG)" : "画面の保存";
    req.filter = png ? "PNG形式(*.png)|*.png|" : "ﾋﾞｯﾄﾏｯﾌﾟ形式(*.bmp)|*.bmp|";
    req.default_ext = png ? "png" : "bmp";
    const auto answer = s.ui->Save_File(req);
    if (!answer || answer->path.empty()) return 1;
    path = answer->path;
  }
  if (Check_Export_Name(s, path, kind) != 0) return 1;
  const auto written = [&](const std::string& name) {
    const int status = write(name);
    if (status != 0)
      Show_Message(s, "画像を保存できませんでした\n" + path, Style_OK | Icon_Exclamation, "画面の保存");
    return status;
  };
  return session::Write_Keeping_Old(s, path, written, true, "PIC/SAV");
}

}  // namespace tevo::page
