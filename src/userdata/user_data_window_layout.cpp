// The layout of the user data window: places in pixels at 96 dpi, in tab order.
#include "userdata/user_data_window.h"

namespace tarnvale {
namespace {

constexpr Size kClient{728, 358};
constexpr Rect kTaskPanel{0, 0, 224, 358};
// All panels have the same size and the same place.
constexpr Rect kPanel{236, 12, 480, 334};

}  // namespace

void userdata::LayOutTaskPanel() {
  TaskPanel.Background = PictureBox::Ground::kTaskPanel;
  BrowsersHeading.Caption = "Internet Browsers";
  MailHeading.Caption = "E-Mail Clients";
  SystemHeading.Caption = "Windows XP";
  for (const Panel& each : Panels()) (this->*each.link).Caption = each.link_caption;

  Control* panel = &TaskPanel;
  Place({
      {panel, nullptr, kTaskPanel},
      {&BrowsersHeading, panel, {16, 16, 192, 24}},
      {&Label41, panel, {24, 46, 192, 20}},
      {&Label42, panel, {24, 72, 192, 20}},
      {&Label30, panel, {24, 98, 192, 20}},
      {&MailHeading, panel, {16, 134, 192, 24}},
      {&Label14, panel, {24, 164, 192, 20}},
      {&Label15, panel, {24, 190, 192, 20}},
      {&Label49, panel, {24, 216, 192, 20}},
      {&SystemHeading, panel, {16, 252, 192, 24}},
      {&Label19, panel, {24, 282, 192, 20}},
  });
}

void userdata::LayOutPanel(const Panel& panel, PanelTexts& texts) {
  GroupBox& frame = this->*panel.frame;
  TextBox& location = this->*panel.location;
  chameleonButton& backup = this->*panel.backup;
  frame.Caption = panel.heading;
  texts.Picture.Picture = panel.picture;
  texts.WhatItDoes.Caption = "What It Does";
  texts.Description.Caption = panel.description;
  texts.Description.Wrap = true;
  texts.BackupLocation.Caption = "Backup Location";
  location.AccessibleName = "Backup Location";
  backup.Caption = panel.backup_caption;
  backup.ButtonType = 3;
  Place({
      {&frame, nullptr, kPanel},
      {&texts.Picture, &frame, {16, 32, 48, 48}},
      {&texts.WhatItDoes, &frame, {80, 30, 384, 18}},
      {&texts.Description, &frame, {80, 52, 384, 130}},
      {&texts.BackupLocation, &frame, {16, 186, 448, 18}},
      {&location, &frame, {16, 208, 448, 24}},
      {&backup, &frame, {16, 248, 300, 30}},
  });
  if (panel.restore == nullptr) return;
  chameleonButton& restore = this->*panel.restore;
  restore.Caption = panel.restore_caption;
  restore.ButtonType = 3;
  Place({{&restore, &frame, {16, 286, 300, 30}}});
}

void LayOut(userdata& w) {
  w.Caption = "User Data Applications";
  w.Frame = WindowFrame::kFixed;
  w.ClientSize = kClient;
  w.LayOutTaskPanel();
  for (std::size_t i = 0; i < userdata::kPanels; ++i) {
    w.LayOutPanel(userdata::Panels()[i], w.Texts[i]);
  }
  // Chosen: nobody can type into a field that nothing reads.
  w.Text19.ReadOnly = true;
  w.XP_ProgressBar1.AccessibleName = "Files Copied";
  w.XP_ProgressBar1.Scrolling = 9;
  w.Place({{&w.XP_ProgressBar1, &w.GroupBox6, {16, 294, 448, 22}}});
  w.ShowPanel(userdata::Panels().front());
}

}  // namespace tarnvale
