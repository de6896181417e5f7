#pragma once

// The application's menu bar on the panel: the application's own items, editing for whatever
// text has the focus, and the windows. Its keys work in every window of the application.
// Main thread only; the menu lives in the panel's menu bar.

#include <functional>

class AppController;
class QMenuBar;

namespace MainMenu {

// `quit` is the "退出 Quillet" item's action.
void build(QMenuBar *bar, AppController &controller, std::function<void()> quit);

} // namespace MainMenu
