// A session whose questions are answered from a script and whose messages
// are kept for the test instead of printed.
#pragma once

#include <string>

#include "platform/ui.h"
#include "session/session.h"

namespace tevo::test {

struct Quiet_Session {
  platform::Scripted_Ui ui;
  Session s;
  Quiet_Session() {
    ui.quiet = true;
    s.ui = &ui;
  }
  std::string Last_Message() const { return ui.shown.empty() ? "" : ui.shown.back().text; }
};

}  // namespace tevo::test
