// Replacing a file so that a failed write never loses the old one.
#pragma once

#include <functional>
#include <string>

namespace tevo {
struct Session;
}

namespace tevo::session {

// Writes `path` through `write(name)` (0 good, else failure) keeping an
// existing file until the new one is complete: the old file is moved aside
// to path + ".$" first; the new one is written to `path` itself, or, with
// `via_work_name`, to path + ".$$" and then moved onto `path` (for writers
// that cannot replace a file in place or dislike the name). On success the
// ".$" file is deleted; on failure the half-written file goes and the old
// one is moved back. A move that fails shows the disk message with
// `location`. Returns the writer's status, or -1 when a move failed.
int Write_Keeping_Old(Session& s, const std::string& path, const std::function<int(const std::string&)>& write,
                      bool via_work_name, const std::string& location);

// A text edited in a window, kept in a Shift-JIS file of CR LF lines: read
// with its lines joined by CR LF (false when there is no file), and written
// keeping the old file until the new one is complete. The write returns 0,
// or -1 after the disk message with `location`.
bool Read_Text_File(const std::string& path, std::string& text);
int Save_Text_File(Session& s, const std::string& path, const std::string& text, const std::string& location);

}  // namespace tevo::session
