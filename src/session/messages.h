// The one message window and the text of file errors.
//
// Show_Message decodes a style word (buttons in the low four bits, the icon
// in bits 4..6, the default button in style / 256) into what the window
// shows, asks platform::Ui, and turns the pressed button into the program's
// result code: 1 OK, 2 cancel, 3 abort, 4 retry, 5 ignore, 6 yes, 7 no, 0
// anything else.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/ui.h"

namespace tevo {

struct Session;

// Result codes of the message window.
inline constexpr int16_t Msg_OK = 1, Msg_Cancel = 2, Msg_Abort = 3, Msg_Retry = 4,
                         Msg_Ignore = 5, Msg_Yes = 6, Msg_No = 7;

// Common style words.
inline constexpr int32_t Style_OK = 0, Style_OK_Cancel = 1, Style_Abort_Retry_Ignore = 2,
                         Style_Yes_No_Cancel = 3, Style_Yes_No = 4, Style_Retry_Cancel = 5;
inline constexpr int32_t Icon_Critical = 16, Icon_Question = 32, Icon_Exclamation = 48,
                         Icon_Information = 64;
inline constexpr int32_t Default_Button2 = 256, Default_Button3 = 512;

// What the window shows for a style: captions, icon and default button.
platform::Message_Box_Request Message_Layout(const std::string& text, int32_t style,
                                          const std::string& title);

// Result code of button 1..3 under a style; 0 for any other.
int16_t Message_Button_Result(int32_t style, int button);

// Result code of a key pressed while the window is up, or nullopt when the
// key does nothing under that style (A/R/I for style 2, Y/N for 3 and 4,
// R for 5; case-insensitive).
std::optional<int16_t> Message_Key_Result(int32_t style, char key);

// Sets Msg_Text, Msg_Title, Msg_Style, shows the window through the
// session's Ui and returns the result code (also kept in Msg_Result).
int16_t Show_Message(Session& s, const std::string& text, int32_t style, const std::string& title);

// Shows the text of a file error (style 48, or 49 for error 71) under
// "ディスク エラー", with "(" location ")" behind it when a location is given,
// and returns what the caller does next: 0 repeat, 1 go on, 2 give up,
// 3 not handled. Error 0 returns 0 without a message.
int16_t Disk_Error_Text(Session& s, int error_number, const std::string& location);

// The text of an error number as Disk_Error_Text shows it (without location).
std::string Error_Text(int error_number);

// The program's error number for a C errno value (53 file not found,
// 76 path not found, 61 disk full, 75 access denied, 57 other I/O).
int Error_Number_From_Errno(int err);

}  // namespace tevo
