// Switching between the screens.
#include "shell/form1.h"

namespace tarnvale {

// Which screen a command shows, and which it hides, in that order. A screen
// that a row doesn't name keeps its state.
// Required: rows differ. Those of the general link and of the menu leave the
// restore screen standing.
struct SwitchRow {
  Screen shown;
  std::vector<Screen> hidden;
};

namespace {

using enum Screen;

const SwitchRow kStorageLink{kStorage,
                             {kList, kProgress, kSchedule, kGeneral, kAdvanced, kRestore}};
const SwitchRow kListLink{kList, {kStorage, kProgress, kSchedule, kGeneral, kAdvanced, kRestore}};
const SwitchRow kGeneralLink{kGeneral, {kStorage, kProgress, kSchedule, kList, kAdvanced}};
const SwitchRow kScheduleLink{kSchedule,
                              {kStorage, kProgress, kList, kGeneral, kAdvanced, kRestore}};

const SwitchRow kAdvancedLink{kAdvanced,
                              {kStorage, kProgress, kList, kGeneral, kSchedule, kRestore}};
const SwitchRow kRestoreLink{kRestore,
                             {kStorage, kProgress, kList, kGeneral, kAdvanced, kSchedule}};

const SwitchRow kGeneralMenu{kGeneral, {kStorage, kProgress, kSchedule, kList, kAdvanced}};
const SwitchRow kAdvancedMenu{kAdvanced, {kStorage, kProgress, kList, kGeneral, kSchedule}};
const SwitchRow kListMenu{kList, {kStorage, kProgress, kSchedule, kGeneral, kAdvanced}};
const SwitchRow kStorageMenu{kStorage, {kList, kProgress, kSchedule, kGeneral, kAdvanced}};
const SwitchRow kScheduleMenu{kSchedule, {kStorage, kProgress, kList, kGeneral, kAdvanced}};

const SwitchRow kWizardPage{kSchedule, {kStorage, kProgress, kList, kGeneral, kAdvanced}};

}  // namespace

void Form1::WireScreens() {
  engine_.screens.Show = [this](Screen screen) { FrameOf(screen).Visible = true; };
  engine_.screens.Hide = [this](Screen screen) { FrameOf(screen).Visible = false; };

  const auto switches = [this](Label& link, const SwitchRow& row) {
    link.Clicked.Listen([this, &row] { SwitchTo(row); });
  };
  switches(Label36, kStorageLink);
  switches(Label37, kListLink);
  switches(Label38, kGeneralLink);
  switches(Label39, kAdvancedLink);
  switches(Label44, kScheduleLink);
  switches(Label51, kRestoreLink);

  const auto menu_switches = [this](MenuItem& item, const SwitchRow& row) {
    item.Clicked.Listen([this, &row] { SwitchFromMenu(row); });
  };
  menu_switches(mnusettings, kGeneralMenu);
  menu_switches(mnucompauto, kAdvancedMenu);
  menu_switches(mnufiles, kListMenu);
  menu_switches(mnustorage, kStorageMenu);
  // Required: the whole sequence twice, first for the storage screen.
  menu_switches(mnuSchedule, kStorageMenu);
  menu_switches(mnuSchedule, kScheduleMenu);
}

GroupBox& Form1::FrameOf(Screen screen) {
  switch (screen) {
    case Screen::kList:
      return List.GroupBox1;
    case Screen::kStorage:
      return Storage.GroupBox2;
    case Screen::kProgress:
      return Progress.GroupBox3;
    case Screen::kSchedule:
      return Schedule.GroupBox4;
    case Screen::kGeneral:
      return General.GroupBox5;
    case Screen::kAdvanced:
      return Advanced.GroupBox6;
    case Screen::kRestore:
      break;
  }
  return Restore.GroupBox15;
}

void Form1::SwitchTo(const SwitchRow& row) {
  CallHook(engine_.screens.Show, row.shown);
  for (const Screen screen : row.hidden) CallHook(engine_.screens.Hide, screen);
}

// A menu command can come from the tray while the window is hidden.
void Form1::SwitchFromMenu(const SwitchRow& row) {
  // Chosen: a window that comes up is on the task bar, as after a double click.
  InTaskBar = true;
  State = WindowState::kNormal;
  Show();
  SwitchTo(row);
  Show();
}

void Form1::ShowWizardPage() {
  InTaskBar = true;
  State = WindowState::kNormal;
  Show();
  SwitchTo(kWizardPage);
  engine_.timers[EngineTimer::kWizardPage].Enabled = false;
}

}  // namespace tarnvale
