// The items of the その他 menu that belong to the person at the program:
// who runs it (user, settings file, how often the program was started) and
// a notes page kept between runs.
#pragma once

#include <string>

namespace tevo {
struct Session;
}

namespace tevo::session {

// The notes file: "Memo1D.txt" in App_Path, Shift-JIS, CR LF lines.
std::string Memo_File(const Session& s);
// Its text with lines joined by CR LF; empty when there is none yet.
std::string Read_Memo(const Session& s);
// Returns 0 saved, -1 after the disk message.
int Save_Memo(Session& s, const std::string& text);

// What "ユーザー情報" shows: the user ("共通" for the common settings), the
// settings file, the starts of the program on this installation and the
// starts under these settings.
std::string User_Info_Text(const Session& s);

}  // namespace tevo::session
