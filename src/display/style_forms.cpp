#include "display/style_forms.h"

#include <algorithm>
#include <cmath>

#include "session/session.h"
#include "session/settings_files.h"

namespace tevo::display {

namespace {

using K = Style_Kind;

Style_Row Page(const char* caption) { return {caption, K::Page}; }
Style_Row Font(const char* caption, const char* face, const char* size, const char* bold, const char* italic) {
  return {caption, K::Font, {face, size, bold, italic}};
}
Style_Row Colour(const char* caption, const char* key) { return {caption, K::Colour, {key}}; }
Style_Row Width(const char* caption, const char* key, double lo, double hi) {
  return {caption, K::Width, {key}, lo, hi};
}
Style_Row Number(const char* caption, const char* key, double lo, double hi) {
  return {caption, K::Number, {key}, lo, hi};
}
Style_Row Switch(const char* caption, const char* key) { return {caption, K::Switch, {key}}; }
// The first caption stands for `first`, the next for first + 1, ...
Style_Row Choice(const char* caption, const char* key, const char* choices, double first = 0) {
  return {caption, K::Choice, {key}, first, 0, choices};
}
Style_Row Text(const char* caption, const char* key) { return {caption, K::Text, {key}}; }
Style_Row File(const char* caption, const char* key, const char* filter) { return {caption, K::File, {key}, 0, 0, filter}; }

// Screen widths are whole pixels; paper widths are 0.1 mm.
constexpr double Pixels_Max = 10, Paper_Width_Max = 50;
constexpr double Font_Size_Min = 1, Font_Size_Max = 200;

std::vector<Style_Form> Build_Forms() {
  std::vector<Style_Form> forms;
  forms.push_back({"NMR1D_Form7_0", "編集用表示  Font・色･線の変更",
                   {
                       Page("色"),
                       Colour("スペクトル", "MAIN SPECT COL"),
                       Colour("選択範囲のスペクトル", "SELECT SPECT COL"),
                       Colour("背景", "COL BACKGROUND"),
                       Colour("軸", "DISP X-AXIS COL"),
                       Colour("ピーク位置", "DISP PEAK COL"),
                       Colour("ピーク番号", "DISP PEAK NUMCOL"),
                       Colour("ピークトップマーク", "DISP PEAKTOP COL"),
                       Colour("積分曲線", "DISP INTEG COL"),
                       Colour("グリッド", "DISP GRID COL"),
                       Colour("拡大図の枠", "DISP MULTWAKUCOL"),
                       Page("線の幅"),
                       Width("スペクトル", "DISP SPEC WIDTH", 1, Pixels_Max),
                       Width("軸", "DISP AXIS WIDTH", 1, Pixels_Max),
                       Width("ピーク位置", "DISP PEAK WIDTH", 1, Pixels_Max),
                       Width("ピークトップマーク", "DISP PEAKTOPWIDT", 1, Pixels_Max),
                       Width("積分曲線", "DISP INTEG WIDTH", 1, Pixels_Max),
                       Width("グリッド", "DISP GRID WIDTH", 1, Pixels_Max),
                       Page("Font"),
                       Font("軸", "DISP AXFONT NAME", "DISP AXFONT SIZE", "DISP AXFONT BOLD", "DISP AXFONT ITAL"),
                       Font("積分値", "DISP INFONT NAME", "DISP INFONT SIZE", "DISP INFONT BOLD", "DISP INFONT ITAL"),
                       Font("ピーク位置", "DISP PFONT NAME", "DISP PFONT SIZE", "DISP PFONT BOLD", "DISP PFONT ITAL"),
                       Font("ピークデータ", "DISP PDFONT NAME", "DISP PDFONT SIZE", "DISP PDFONT BOLD",
                            "DISP PDFONT ITAL"),
                       Page("軸"),
                       Choice("目盛", "DISP AXIS MODE", "自動|固定"),
                       Number("目盛の間隔 (ppm)", "DISP TIC STEP", 0.001, 1000),
                       Number("細目盛の間隔 (ppm)", "DISP TIC INC", 0.0001, 1000),
                       Number("目盛の間隔 (Hz)", "DISP TIC STEP2", 0.01, 1e6),
                       Number("細目盛の間隔 (Hz)", "DISP TIC INC2", 0.001, 1e6),
                       Choice("単位の位置", "DISP UNIT POS", "表示しない|左|右|中央 (δ / ppm)"),
                       Number("ピーク位置の桁数", "DISP PEAK DIGIT", 0, 6),
                       Number("積分値の桁数", "DISP INTEG DIGIT", 0, 6),
                   }});
  forms.push_back({"NMR1D_Form7_1", "印刷用　Font・色･線の変更",
                   {
                       Page("描画"),
                       Switch("目盛", "DRAW SCALE ON"),
                       Switch("枠", "DRAW WAKU ON"),
                       Switch("積分曲線", "DRAW INTEG ON"),
                       Switch("パラメータ", "DRAW PARAM ON"),
                       Switch("パラメータの枠", "PARA WAKU"),
                       Switch("パラメータの背景を透明に", "PARA BGCOL TRANS"),
                       Switch("拡大図", "DRAW MULTI VIEW"),
                       Switch("重ね書き", "DRAW MULTI SPEC"),
                       Switch("ピーク位置", "DRAW PEAK PICK"),
                       Switch("ピークトップマーク", "DRAW PEAK TOP"),
                       Switch("コメント", "DRAW COMMENT"),
                       Switch("ピークリストの枠", "PEAK LIST WAKU"),
                       Switch("ピークリストの背景を透明に", "PEAK BGCOL TRANS"),
                       Page("色"),
                       Colour("スペクトル", "MAIN SPECT COL"),
                       Colour("用紙", "PAPER COLOR"),
                       Colour("スペクトルの背景", "COL BG PRINT"),
                       Colour("枠", "WAKU COL"),
                       Colour("パラメータ", "PARAMETER COL"),
                       Colour("パラメータの枠", "PARA WAKU COL"),
                       Colour("パラメータの背景", "PARAMETER BGCOL"),
                       Colour("ピークリストの枠", "PEAK WAKU COL"),
                       Colour("ピークリストの背景", "PEAK LIST BGCOL"),
                       Page("線の幅"),
                       Width("スペクトル (0.1 mm)", "DRAW WIDTH SPEC", 0, Paper_Width_Max),
                       Width("軸 (0.1 mm)", "DRAW WIDTH AXIS", 0, Paper_Width_Max),
                       Width("枠 (0.1 mm)", "DRAW WIDTH WAKU", 0, Paper_Width_Max),
                       Width("ピーク位置 (0.1 mm)", "DRAW WIDTH PEAK", 0, Paper_Width_Max),
                       Width("パラメータの枠 (0.1 mm)", "PARA WAKU WIDTH", 1, Paper_Width_Max),
                       Width("ピークリストの枠 (0.1 mm)", "PEAK WAKU WIDTH", 1, Paper_Width_Max),
                       Number("ピークトップマークの長さ (0.1 mm)", "PEAK TOP HEIGHT", 0, 200),
                       Page("Font"),
                       Font("軸", "AXIS FONT NAME", "AXIS FONT SIZE", "AXIS FONT BOLD", "AXIS FONT ITALIC"),
                       Font("パラメータ", "PARA FONT NAME", "PARA FONT SIZE", "PARA FONT BOLD", "PARA FONT ITALIC"),
                       Font("ピーク番号", "PEAK NUM FONT", "PEAK NUM SIZE", "PEAK NUM BOLD", "PEAK NUM ITALIC"),
                       Font("ピークデータ", "PEAK DATA FONT", "PEAK DATA SIZE", "PEAK DATA BOLD", "PEAK DATA ITALIC"),
                       Font("ピークリスト", "PEAKLIST FONT", "PEAKL FONT SIZE", "PEAKL FONT BOLD", "PEAKL FONT ITAL"),
                       Font("リスト", "LISTS FONT NAME", "LISTS FONT SIZE", "LISTS FONT BOLD", "LISTS FONT ITAL"),
                   }});
  forms.push_back({"NMR1D_Form3", "動作環境の設定",
                   {
                       Page("起動"),
                       Choice("使用者", "USER MODE", "起動時にUser名を聞く|常に共通設定を使用"),
                       Switch("起動時にこの画面を表示する", "START MODE"),
                       Choice("ログ", "LOG MODE", "記録しない|月ごと|日ごと", -1),
                       Text("ログのフォルダ", "LOG DIR"),
                       Page("表示"),
                       Number("表示の最小点数", "DISPLAY MIN", 65536, 524288),
                       Choice("ツールバーの位置", "TOOL BAR POSIT", "プロットの下|プロットの上"),
                       Choice("拡大", "ENLARGE MODE", "毎回拡大モードﾞをリセット|連続して拡大を行う"),
                       Number("FID画面のスペクトルの割合", "FFT GAMEN RATIO", 0.1, 0.9),
                       Page("処理"),
                       Switch("変換のときゼロフィリングする", "AUTO ZEROFILL"),
                       Number("ゼロフィリングの点数", "ZEROFILLSIZE", 65536, 524288),
                       Switch("変換の後 0 ppm 付近のピークに Reference を合わせる", "REF FINE SET"),
                       Switch("データ読込のとき装置IDを聞く", "INSTRUMENT ID IN"),
                       Switch("T1/T2個別ファイルの読込を使う", "T1 INDIV FILE"),
                       Page("ファイル"),
                       Choice("フォルダ", "DIR  ACCESS MODE", "読込と保存で共通|読込と保存で別々|固定のフォルダ"),
                       Text("読込のフォルダ", "ACCESS READ DIR"),
                       Text("保存のフォルダ", "ACCESS WRITE DIR"),
                       Text("パラメータファイルのフォルダ", "PRINT TABLE DIR"),
                       Switch("名前を付けて保存(*.ALS)を使う", "ALS SAVE OK"),
                       Choice("ピークリストファイルの形式", "PEAK REDUCT MODE", "簡易|Alice"),
                       Switch("システム既定のプリンターを変更しない(推奨)", "CHANGE PRINTER"),
                   }});
  forms.push_back({"SpecSim_Form3_0", "表示用　Font・色･線の変更(ピーク分離)",
                   {
                       Page("色"),
                       Colour("計算スペクトル", "SIM LINE COLOR"),
                       Colour("測定スペクトル", "SIM MEAS LINECOL"),
                       Colour("X軸", "SIM X AX COL"),
                       Colour("Y軸", "SIM Y AX COL"),
                       Colour("残差の軸", "SIM RES AX COL"),
                       Colour("スペクトルの背景", "SIM SPC BG COL"),
                       Colour("残差の背景", "SIM RES BG COL"),
                       Page("線の幅"),
                       Width("軸", "SIMDAX LINEWIDTH", 1, Pixels_Max),
                       Width("スペクトル", "SIMDSPCLINEWIDTH", 1, Pixels_Max),
                       Page("Font"),
                       Font("X軸の数値", "SIMDXNUMFONTNAME", "SIMDXNUMFONTSIZE", "SIMDXNUMFONTBOLD", "SIMDXNUMFONTITA"),
                       Font("Y軸の数値", "SIMDYNUMFONTNAME", "SIMDYNUMFONTSIZE", "SIMDYNUMFONTBOLD", "SIMDYNUMFONTITA"),
                       Font("X軸のラベル", "SIMDXLABFONTNAME", "SIMDXLABFONTSIZE", "SIMDXLABFONTBOLD", "SIMDXLABFONTITA"),
                       Font("Y軸のラベル", "SIMDYLABFONTNAME", "SIMDYLABFONTSIZE", "SIMDYLABFONTBOLD", "SIMDYLABFONTITA"),
                       Font("ピーク番号", "SIMDPNUMFONTNAME", "SIMDPNUMFONTSIZE", "SIMDPNUMFONTBOLD", "SIMDPNUMFONTITA"),
                   }});
  forms.push_back({"SpecSim_Form3_1", "印刷用　Font・色･線の変更(ピーク分離)",
                   {
                       Page("描画"),
                       Switch("残差", "SIM PRNT RESID"),
                       Switch("パラメータ", "SIM PRNT PARA"),
                       Switch("コメント", "SIM PRNT COMNT"),
                       Switch("Y軸", "SIM PRNT Y AX"),
                       Switch("枠", "SIM PRNT WAKU"),
                       Switch("ピーク番号", "SIM PRNT PEAKNO"),
                       Page("色"),
                       Colour("用紙", "SIM PAPER COL"),
                       Colour("スペクトルの枠", "SIM SPC WAKU COL"),
                       Colour("残差の枠", "SIM RES WAKU COL"),
                       Colour("パラメータの枠", "SIM PAR WAKU COL"),
                       Colour("パラメータ", "SIM PARA COL"),
                       Colour("パラメータの背景", "SIM PAR BG COL"),
                       Page("線の幅"),
                       Width("軸 (0.1 mm)", "SIM AX LINEWIDTH", 0, Paper_Width_Max),
                       Width("スペクトル (0.1 mm)", "SIM SPCLINEWIDTH", 0, Paper_Width_Max),
                       Page("Font"),
                       Font("X軸の数値", "SIM XNUMFONTNAME", "SIM XNUMFONTSIZE", "SIM XNUMFONTBOLD", "SIM XNUMFONTITA"),
                       Font("Y軸の数値", "SIM YNUMFONTNAME", "SIM YNUMFONTSIZE", "SIM YNUMFONTBOLD", "SIM YNUMFONTITA"),
                       Font("X軸のラベル", "SIM XLABFONTNAME", "SIM XLABFONTSIZE", "SIM XLABFONTBOLD", "SIM XLABFONTITA"),
                       Font("Y軸のラベル", "SIM YLABFONTNAME", "SIM YLABFONTSIZE", "SIM YLABFONTBOLD", "SIM YLABFONTITA"),
                       Font("ピーク番号", "SIM PNUMFONTNAME", "SIM PNUMFONTSIZE", "SIM PNUMFONTBOLD", "SIM PNUMFONTITA"),
                       Font("パラメータ", "SIM PAR FONTNAME", "SIM PAR FONTSIZE", "SIM PAR FONTBOLD", "SIM PAR FONTITA"),
                   }});
  forms.push_back({"T1Cal_Form3_0", "表示用　Font・色･線の変更(T1/T2)",
                   {
                       Page("色・線"),
                       Colour("計算曲線", "CAL SIM COL"),
                       Colour("測定値", "CAL MEAS COL"),
                       Colour("軸", "CAL AXIS COL"),
                       Colour("測定値の丸", "CAL CIRCLE COL"),
                       Width("軸", "CALDDRAW WIDTH 1", 1, Pixels_Max),
                       Width("曲線", "CALDDRAW WIDTH 2", 1, Pixels_Max),
                       Number("丸の半径", "CALDCIRCLE RADII", 1, 50),
                       Page("Font"),
                       Font("X軸の数値", "CALDFONT 1X", "CALDFONTSIZE 1X", "CALDFONTBLD 1X", "CALDFONTITA 1X"),
                       Font("X軸のラベル", "CALDFONT 2X", "CALDFONTSIZE 2X", "CALDFONTBLD 2X", "CALDFONTITA 2X"),
                       Font("Y軸の数値", "CALDFONT 1Y", "CALDFONTSIZE 1Y", "CALDFONTBLD 1Y", "CALDFONTITA 1Y"),
                       Font("Y軸のラベル", "CALDFONT 2Y", "CALDFONTSIZE 2Y", "CALDFONTBLD 2Y", "CALDFONTITA 2Y"),
                   }});
  forms.push_back({"T1Cal_Form3_1", "印刷用　Font・色･線の変更(T1/T2)",
                   {
                       Page("線・大きさ"),
                       Width("軸 (0.1 mm)", "CAL DRAW WIDTH 1", 0, Paper_Width_Max),
                       Width("曲線 (0.1 mm)", "CAL DRAW WIDTH 2", 0, Paper_Width_Max),
                       Number("丸の半径 (0.1 mm)", "CAL CIRCLE RADII", 1, 100),
                       Number("X軸の長さ (cm)", "CAL X LENGTH", 1, 100),
                       Number("Y軸の長さ (cm)", "CAL Y LENGTH", 1, 100),
                       Page("Font"),
                       Font("コメント", "CAL FONT COM", "CAL FONTSIZE COM", "CAL FONTBLD COM", "CAL FONTITA COM"),
                       Font("X軸の数値", "CAL FONT 1X", "CAL FONTSIZE 1X", "CAL FONTBLD 1X", "CAL FONTITA 1X"),
                       Font("X軸のラベル", "CAL FONT 2X", "CAL FONTSIZE 2X", "CAL FONTBLD 2X", "CAL FONTITA 2X"),
                       Font("Y軸の数値", "CAL FONT 1Y", "CAL FONTSIZE 1Y", "CAL FONTBLD 1Y", "CAL FONTITA 1Y"),
                       Font("Y軸のラベル", "CAL FONT 2Y", "CAL FONTSIZE 2Y", "CAL FONTBLD 2Y", "CAL FONTITA 2Y"),
                   }});
  forms.push_back({"NMR1D_Form84", "枠の大きさ・色",
                   {
                       Page("枠の大きさ"),
                       Number("横の長さ (cm)", "X-LENGTH", 1, 100),
                       Number("縦の長さ (cm)", "Y-LENGTH", 1, 100),
                       Number("左の余白 (cm)", "X-LEFT MARGIN", 0, 100),
                       Number("下の余白 (cm)", "Y-BOTTOM MARGIN", 0, 100),
                       Number("ベースラインの高さ (cm)", "Y-BIAS", -100, 100),
                       Number("軸の高さ (cm)", "Y-LEVEL", -100, 100),
                       Page("色"),
                       Colour("枠", "WAKU COL"),
                       Colour("枠の中", "COL BG PRINT"),
                       Colour("用紙", "PAPER COLOR"),
                   }});
  forms.push_back({"NMR1D_Form82", "ピークリストの設定",
                   {
                       Page("項目"),
                       Switch("ピークリストを印刷する", "PEAK LIST TABLE"),
                       Switch("見出し", "PRNT PEAK HEAD"),
                       Switch("番号", "PRNT PEAKLIST NO"),
                       Switch("ppm", "PRNT PAEK PPM"),
                       Switch("Hz", "PRNT PEAK HZ"),
                       Switch("実強度", "PRNT PEAK HEIGHT"),
                       Switch("強度", "PRNT PEAK INTENS"),
                       Switch("番号を逆順にする", "PEAK LIST DIRECT"),
                       Page("枠・背景"),
                       Switch("枠", "PEAK LIST WAKU"),
                       Width("枠の幅 (0.1 mm)", "PEAK WAKU WIDTH", 1, Paper_Width_Max),
                       Colour("枠の色", "PEAK WAKU COL"),
                       Colour("背景", "PEAK LIST BGCOL"),
                       Switch("背景を透明にする", "PEAK BGCOL TRANS"),
                       Page("引出線"),
                       Number("ピークの上の長さ", "PEAK LIST TOP HE", 0, 100),
                       Number("ピークの下の長さ", "PEAK BOTTOM HEIG", 0, 100),
                   }});
  forms.push_back({"NMR1D_Form88", "パラメータの設定",
                   {
                       Page("位置"),
                       Switch("パラメータを印刷する", "DRAW PARAM ON"),
                       Number("左 (cm)", "PARA LEFT", 0, 100),
                       Number("上 (cm)", "PARA TOP", 0, 100),
                       Number("幅 (cm)", "PARA WIDTH", 0.1, 100),
                       Number("高さ (cm)", "PARA HEIGHT", 0.1, 100),
                       Page("枠・背景"),
                       Switch("枠", "PARA WAKU"),
                       Width("枠の幅 (0.1 mm)", "PARA WAKU WIDTH", 1, Paper_Width_Max),
                       Colour("枠の色", "PARA WAKU COL"),
                       Colour("背景", "PARAMETER BGCOL"),
                       Switch("背景を透明にする", "PARA BGCOL TRANS"),
                       Page("パラメータ"),
                       Choice("パラメータの一覧", "PARAMETER TABLE", "Listを使う|Fileを使う"),
                       File("Parameter File", "PRINT TABLE DIR", "ﾊﾟﾗﾒｰﾀﾌｧｲﾙ(*.prt)|*.prt|全てのファイル|*.*|"),
                   }});
  return forms;
}

// The three values of the common file the environment window sets; they are
// fields of the session, not keys of the settings file.
bool Is_Common_Key(std::string_view key) { return key == "USER MODE" || key == "LOG MODE" || key == "LOG DIR"; }

}  // namespace

std::span<const Style_Form> Style_Forms() {
  static const std::vector<Style_Form> forms = Build_Forms();
  return forms;
}

const Style_Form* Find_Style_Form(std::string_view name) {
  for (const Style_Form& f : Style_Forms())
    if (name == f.name) return &f;
  return nullptr;
}

std::vector<std::string_view> Row_Keys(const Style_Row& row) {
  std::vector<std::string_view> keys;
  for (const char* k : row.keys)
    if (k != nullptr) keys.emplace_back(k);
  return keys;
}

std::vector<std::string> Row_Choices(const Style_Row& row) {
  std::vector<std::string> out;
  if (row.choices == nullptr) return out;
  std::string_view all = row.choices;
  for (std::size_t start = 0;;) {
    const std::size_t bar = all.find('|', start);
    out.emplace_back(all.substr(start, bar - start));
    if (bar == std::string_view::npos) break;
    start = bar + 1;
  }
  return out;
}

double Style_Number(const Session& s, std::string_view key) {
  if (key == "USER MODE") return s.User_Mode;
  if (key == "LOG MODE") return s.Log_Mode;
  return s.settings.Real(key);
}

std::string Style_Text(const Session& s, std::string_view key) {
  if (key == "LOG DIR") return s.Log_Dir;
  return s.settings.Text(key);
}

bool Style_Set_Number(Session& s, const Style_Row& row, std::string_view key, double value) {
  if (!std::isfinite(value)) return false;
  double lo = row.lo, hi = row.hi;
  switch (row.kind) {
    case K::Colour:
      lo = 0, hi = 0xFFFFFF;
      value = std::nearbyint(value);
      break;
    case K::Switch:
      lo = 0, hi = 1;
      value = std::nearbyint(value);
      break;
    case K::Choice:
      hi = row.lo + static_cast<double>(Row_Choices(row).size()) - 1;
      value = std::nearbyint(value);
      break;
    case K::Font:
      if (key == row.keys[1]) {
        lo = Font_Size_Min, hi = Font_Size_Max;
      } else {
        lo = 0, hi = 1;
        value = std::nearbyint(value);
      }
      break;
    case K::Width:
    case K::Number:
      break;
    default:
      return false;
  }
  value = std::clamp(value, lo, hi);
  if (key == "USER MODE") s.User_Mode = static_cast<int16_t>(value);
  else if (key == "LOG MODE") s.Log_Mode = static_cast<int16_t>(value);
  else s.settings.Set(key, value);
  return true;
}

bool Style_Set_Text(Session& s, const Style_Row& row, std::string_view key, std::string text) {
  // A font needs a face; a folder may be left empty.
  if (row.kind == K::Font && text.empty()) return false;
  if (row.kind != K::Font && row.kind != K::Text && row.kind != K::File) return false;
  if (key == "LOG DIR") s.Log_Dir = std::move(text);
  else s.settings.Set(key, std::move(text));
  // The parameter text follows the place of its file at once.
  if (key == "PRINT TABLE DIR") session::Read_Print_Text(s);
  return true;
}

Style_Saved Style_Open(const Session& s, const Style_Form& form) {
  Style_Saved saved;
  for (const Style_Row& row : form.rows)
    for (std::string_view key : Row_Keys(row)) {
      Style_Saved::Value v;
      v.key = std::string(key);
      const bool text = row.kind == K::Text || row.kind == K::File || (row.kind == K::Font && key == row.keys[0]);
      if (text) v.text = Style_Text(s, key);
      else v.num = Style_Number(s, key);
      saved.values.push_back(std::move(v));
    }
  return saved;
}

void Style_Cancel(Session& s, const Style_Saved& saved) {
  for (const Style_Saved::Value& v : saved.values) {
    if (v.key == "USER MODE") s.User_Mode = static_cast<int16_t>(v.num);
    else if (v.key == "LOG MODE") s.Log_Mode = static_cast<int16_t>(v.num);
    else if (v.key == "LOG DIR") s.Log_Dir = v.text;
    else if (session::Setting_Def_Of(session::Setting_Index(v.key)).type == session::Setting_Type::Text)
      s.settings.Set(v.key, v.text);
    else
      s.settings.Set(v.key, v.num);
    if (v.key == "PRINT TABLE DIR") session::Read_Print_Text(s);
  }
}

void Style_OK(Session& s, const Style_Form& form) {
  session::Write_Settings(s);
  for (const Style_Row& row : form.rows)
    for (std::string_view key : Row_Keys(row))
      if (Is_Common_Key(key)) return session::Write_Common(s);
}

}  // namespace tevo::display
