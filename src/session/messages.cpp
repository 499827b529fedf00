#include "session/messages.h"

#include <cctype>
#include <cerrno>

#include "session/session.h"

namespace tevo {

namespace {

const std::vector<std::string>& Captions(int kind) {
  static const std::vector<std::string> table[] = {
      {"OK"},
      {"OK", "キャンセル"},
      {"中止(A)", "再試行(R)", "無視(I)"},
      {"はい(Y)", "いいえ(N)", "Cancel"},
      {"はい(Y)", "いいえ(N)"},
      {"再試行(R)", "キャンセル"},
  };
  return table[kind >= 0 && kind <= 5 ? kind : 0];
}

}  // namespace

platform::Message_Box_Request Message_Layout(const std::string& text, int32_t style,
                                          const std::string& title) {
  platform::Message_Box_Request box;
  box.title = title.empty() ? "メッセージ" : title;
  box.text = text;
  box.style = style;
  const int kind = style & 15;
  box.buttons = Captions(kind);
  // Icon: (style / 16) mod 4 gives 1..3; the value 64 alone gives 4.
  const int icon_bits = (style / 16) % 8;
  box.icon = icon_bits % 4 != 0 ? icon_bits % 4 : (icon_bits == 4 ? 4 : 0);
  // Default button: style / 256 picks Command1..3, where the style has it.
  const int def = (style / 256) % 4;
  box.default_button = 1;
  if (def == 1 && kind >= 1 && kind <= 5) box.default_button = 2;
  if (def == 2 && (kind == 2 || kind == 3)) box.default_button = 3;
  return box;
}

int16_t Message_Button_Result(int32_t style, int button) {
  switch (style & 15) {
    case 0:
      return button == 1 ? Msg_OK : 0;
    case 1:
      return button == 1 ? Msg_OK : button == 2 ? Msg_Cancel : 0;
    case 2:
      return button == 1 ? Msg_Abort : button == 2 ? Msg_Retry : button == 3 ? Msg_Ignore : 0;
    case 3:
      return button == 1 ? Msg_Yes : button == 2 ? Msg_No : button == 3 ? Msg_Cancel : 0;
    case 4:
      return button == 1 ? Msg_Yes : button == 2 ? Msg_No : 0;
    case 5:
      return button == 1 ? Msg_Retry : button == 2 ? Msg_Cancel : 0;
    default:
      return 0;
  }
}

std::optional<int16_t> Message_Key_Result(int32_t style, char key) {
  const char k = static_cast<char>(std::toupper(static_cast<unsigned char>(key)));
  switch (style & 15) {
    case 2:
      if (k == 'A') return Msg_Abort;
      if (k == 'I') return Msg_Ignore;
      if (k == 'R') return Msg_Retry;
      break;
    case 3:
    case 4:
      if (k == 'N') return Msg_No;
      if (k == 'Y') return Msg_Yes;
      break;
    case 5:
      if (k == 'R') return Msg_Retry;
      break;
    default:
      break;
  }
  return std::nullopt;
}

int16_t Show_Message(Session& s, const std::string& text, int32_t style, const std::string& title) {
  s.Msg_Text = text;
  s.Msg_Title = title;
  s.Msg_Style = style;
  const int button = s.ui->Message_Box(Message_Layout(text, style, title));
  const int16_t result = Message_Button_Result(style, button);
  s.Msg_Result = std::to_string(result);
  return result;
}

std::string Error_Text(int n) {
  switch (n) {
    case 6: return "オーバーフローしました";
    case 7: return "メモリーが不足しています";
    case 9: return "インデックスが有効範囲にありません";
    case 11: return "0 で除算しました";
    case 14: return "文字列領域が不足しています";
    case 52:
    case 64: return "ファイル名が正しくありません";
    case 53: return "ファイルが見つかりません";
    case 54: return "このモードではファイルをオープンできません";
    case 55: return "ファイルはすでにオープンされています";
    case 57: return "内部ディスクエラーが発生しました";
    case 61: return "ディスクがいっぱいです";
    case 62:
      return "ファイルの EOF 記号が標準と異なります"
             "または、EOF 記号を越えてデータを読み込もうとしました";
    case 68: return "デバイスが準備されていません";
    case 71: return "ディスクをドライブに入れてドアを閉じて下さい";
    case 75: return "パス名またはファイル名が無効です";
    case 76: return "指定したパスが存在しません";
    default: return "アプリケーション定義のエラーまたはオブジェクト定義のエラーです (" + std::to_string(n) + ")";
  }
}

int16_t Disk_Error_Text(Session& s, int error_number, const std::string& location) {
  if (error_number == 0) return 0;
  s.ui->Beep();
  const int32_t style = error_number == 71 ? 49 : 48;
  std::string text = Error_Text(error_number);
  if (!location.empty()) text += "(" + location + ")";
  const int16_t r = Show_Message(s, text, style, "ディスク エラー");
  switch (r) {
    case Msg_OK:
    case Msg_Retry:
      return style == 48 ? 2 : 0;
    case Msg_Ignore:
      return 1;
    case Msg_Cancel:
    case Msg_Abort:
      return 2;
    default:
      return 3;
  }
}

int Error_Number_From_Errno(int err) {
  switch (err) {
    case ENOENT: return 53;
    case ENOTDIR: return 76;
    case ENOSPC: return 61;
    case EACCES:
    case EPERM: return 75;
    case ENAMETOOLONG: return 52;
    case ENOMEM: return 7;
    default: return 57;
  }
}

}  // namespace tevo
