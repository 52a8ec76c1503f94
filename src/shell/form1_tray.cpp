// The tray icon, and every way out of the program.
#include "shell/form1.h"

namespace tarnvale {

void Form1::WireTray() {
  gSysTray.RButtonUp.Listen([this] { gSysTray_RButtonUP(); });
  gSysTray.Menu(&mnuMenu);
  engine_.display.TrayTip.Changed.Listen(
      [this] { gSysTray.ToolTip(engine_.display.TrayTip.Get()); });
  engine_.stages.RemoveTrayIcon = [this] { gSysTray.RemoveFromSysTray(); };
  Resized.Listen([this] {
    if (State.Get() == WindowState::kMinimized && !dying_) gSysTray.MinToSysTray();
  });
  CloseAsked.Listen([this](CloseRequest& request) { AskBeforeClosing(request); });
}

void Form1::gSysTray_RButtonUP() {
  engine_.machine().windows.PopUp(mnuMenu);
}

void Form1::AskBeforeClosing(CloseRequest& request) {
  // Chosen: a second instance has said why it ends. It asks nothing, and leaves
  // the first one alone, which the companion program would end.
  if (dying_) return;
  const BoxAnswer answer =
      engine_.machine().boxes.Show({.text = "Are You Sure You Want You Exit Tarnvale Now?",
                                    .icon = BoxIcon::kQuestion,
                                    .buttons = BoxButtons::kYesNo,
                                    .title = "Exit Tarnvale"});
  if (answer == BoxAnswer::kYes) {
    Exit();
  } else {
    request.cancelled = true;
    InTaskBar = true;
    Show();
  }
}

void Form1::Decline() {
  Exit();
}

// The program doesn't end by its own hand: the companion program ends it.
void Form1::Exit() {
  gSysTray.RemoveFromSysTray();
  Machine& machine = engine_.machine();
  machine.processes.StartProgram(machine.files.ProgramFolder() + "\\Quit.exe");
}

}  // namespace tarnvale
