// The menu tree of the main window: item names, captions and nesting, as
// one table, so the window builds its menu bar from it and tests can check
// it without a window.
#pragma once

#include <map>
#include <string>
#include <vector>

class QMenuBar;
class QAction;
class QMenu;

namespace tevo::app {

struct Menu_Item {
  const char* id;  // the item name used by the command handlers
  const char* parent;  // the item name of the menu that holds it; "" for the bar
  const char* caption;  // as shown ("-" for a separator)
  bool checkable = false;
};

// Every item in display order, menus before their items.
const std::vector<Menu_Item>& Menu_Tree();

// Builds the menus on `bar` and returns the actions by item name (a menu's
// own action is stored under its name too).
std::map<std::string, QAction*> Build_Menus(QMenuBar* bar);

}  // namespace tevo::app
