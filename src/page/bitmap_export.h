// A part of the sheet as a picture of chosen size: the range, the size
// offered and typed, the size estimate, and the save as PNG or BMP under a
// checked name. The picture itself is painted by Draw_Page with the paper
// window set to the range; encoding it is the platform's.
#pragma once

#include <functional>
#include <string>

#include "page/page_model.h"

namespace tevo {
struct Session;
}

namespace tevo::page {

// A rectangle of the sheet in fractions of its width and height, from its
// top left corner; the whole sheet by default.
struct Copy_Range {
  double Left = 0, Top = 0, Right = 1, Bottom = 1;
};

// The paper window (cm) that a range shows, with its sides in order.
Page_Window Copy_Window(const Page_Setup& p, const Copy_Range& r);

// The size first offered for a range of w x h preview pixels (Copy_Size);
// a range under 2 pixels either way beeps, shows "コピーする範囲を設定
// してください" ("範囲エラー") and gives 0 x 0.
Bitmap_Size Open_Copy_Range(Session& s, int w, int h);

enum class Export_Kind { Bmp, Png };

// The largest side a picture of the kind may have.
int Pixel_Limit(Export_Kind kind);

// The size estimate shown under the fields: w x h x 0.003 in Kbyte, one or
// two decimals ("1500.0 Kbyte").
std::string Size_Estimate_Text(Bitmap_Size size);

// Checks a chosen file name: without an extension it gets ".png" or ".bmp";
// the kind's extension in any case is taken; another one shows "ﾌｧｲﾙが不正
// です。または," / "ﾌｧｲﾙ名の拡張子が png でない" (or "bmp") titled
// "ファイル名エラー" and returns 1. Returns 0 with `path` completed.
int Check_Export_Name(Session& s, std::string& path, Export_Kind kind);

// The save of a picture: the name is asked ("画面の保存(PNG)" with
// "PNG形式(*.png)|*.png|", or "画面の保存" with "ﾋﾞｯﾄﾏｯﾌﾟ形式(*.bmp)|*.bmp|")
// unless `given`, checked, and written by `write(name)` (0 good) under the
// work name ".$$" so that an old file of that name survives a failed write,
// which shows "画像を保存できませんでした".
// Returns 0 written, 1 cancelled or refused, -1 the write failed.
int Save_Export(Session& s, Export_Kind kind, const std::string& given,
                const std::function<int(const std::string&)>& write);

}  // namespace tevo::page
