// The layout of the FTP window: places in pixels at 96 dpi, in tab order.
#include "transfer/ftp_window.h"

namespace tarnvale {
namespace {

constexpr Rect kTaskPanel{0, 0, 224, 388};
// The three panels have the same size and the same place.
constexpr Rect kPanel{236, 12, 480, 228};
constexpr Rect kStatus{236, 252, 480, 124};

void LayOutTaskPanel(Main& w) {
  w.TaskPanel.Background = PictureBox::Ground::kTaskPanel;
  w.TasksHeading.Caption = "FTP Server Tasks";
  w.Label15.Caption = "FTP Upload Server Settings";
  w.Label49.Caption = "Upload A Compressed File";
  w.Label14.Caption = "Download A Compressed File";
  w.StatusHeading.Caption = "Connection Status";

  Control* panel = &w.TaskPanel;
  w.Place({
      {panel, nullptr, kTaskPanel},
      {&w.TasksHeading, panel, {16, 16, 192, 24}},
      {&w.Label15, panel, {24, 48, 192, 20}},
      {&w.Label49, panel, {24, 76, 192, 20}},
      {&w.Label14, panel, {24, 104, 192, 20}},
      // Beside the bars.
      {&w.StatusHeading, panel, {16, 256, 192, 24}},
      {&w.Label6, panel, {24, 288, 192, 20}},
  });
}

void LayOutSettings(Main& w) {
  w.GroupBox1.Caption = "FTP Upload Server Settings";
  w.ServerLabel.Caption = "FTP Server Address";
  w.txtServer.AccessibleName = "FTP Server Address";
  w.txtServer.Text = kExampleServer;
  w.UserLabel.Caption = "Username:";
  w.txtUserID.AccessibleName = "Username";
  w.PasswordLabel.Caption = "Password:";
  w.txtPassword.AccessibleName = "Password";
  w.chameleonButton2.Caption = "Save My Current FTP Server Upload Settings";
  w.chameleonButton4.Caption = "Establish Test Connection To Verify Settings";

  Control* panel = &w.GroupBox1;
  w.Place({
      {panel, nullptr, kPanel},
      {&w.ServerLabel, panel, {16, 34, 156, 20}},
      {&w.txtServer, panel, {176, 32, 288, 24}},
      {&w.UserLabel, panel, {16, 66, 156, 20}},
      {&w.txtUserID, panel, {176, 64, 288, 24}},
      {&w.PasswordLabel, panel, {16, 98, 156, 20}},
      {&w.txtPassword, panel, {176, 96, 288, 24}},
      {&w.chameleonButton2, panel, {176, 144, 288, 28}},
      {&w.chameleonButton4, panel, {176, 180, 288, 28}},
  });
}

void LayOutUpload(Main& w) {
  w.GroupBox2.Caption = "FTP Server File Upload";
  w.LocalLabel.Caption = "Compressed Backup File:";
  w.txtLocal.AccessibleName = "Compressed Backup File";
  w.cmdBrowse.Caption = "Browse For A Compressed File";
  w.RemoteLabel.Caption = "Remote File Name:";
  w.txtRemote.AccessibleName = "Remote File Name";
  w.SpacesNote.Caption = "No Spaces Allowed";
  w.chameleonButton1.Caption = "Upload File To FTP Server";

  Control* panel = &w.GroupBox2;
  w.Place({
      {panel, nullptr, kPanel},
      {&w.LocalLabel, panel, {16, 34, 156, 20}},
      {&w.txtLocal, panel, {176, 32, 288, 24}},
      {&w.cmdBrowse, panel, {176, 64, 288, 28}},
      {&w.RemoteLabel, panel, {16, 110, 156, 20}},
      {&w.txtRemote, panel, {176, 108, 288, 24}},
      {&w.SpacesNote, panel, {178, 136, 286, 18}},
      {&w.chameleonButton1, panel, {176, 180, 288, 28}},
  });
}

void LayOutDownload(Main& w) {
  w.GroupBox4.Caption = "FTP Server File Download";
  w.DownloadLabel.Caption = "Remote File Name:";
  w.Text22.AccessibleName = "Remote File Name";
  w.ExtensionLabel.Caption = "Extension:";
  w.Text23.AccessibleName = "Extension";
  w.ExtensionNote.Caption = "TVZ For Tarnvale Compressed File";
  w.chameleonButton3.Caption = "Download File From FTP Server";

  Control* panel = &w.GroupBox4;
  w.Place({
      {panel, nullptr, kPanel},
      {&w.DownloadLabel, panel, {16, 34, 156, 20}},
      {&w.Text22, panel, {176, 32, 288, 24}},
      {&w.ExtensionLabel, panel, {16, 66, 156, 20}},
      {&w.Text23, panel, {176, 64, 72, 24}},
      {&w.ExtensionNote, panel, {256, 67, 208, 18}},
      {&w.chameleonButton3, panel, {176, 180, 288, 28}},
  });
}

void LayOutStatus(Main& w) {
  w.GroupBox3.Caption = "Status";
  // They show that something moves, not how far it is.
  w.XP_ProgressBar1.AccessibleName = "Activity 1";
  w.XP_ProgressBar2.AccessibleName = "Activity 2";
  w.XP_ProgressBar3.AccessibleName = "Activity 3";
  w.XP_ProgressBar1.Scrolling = 2;
  w.XP_ProgressBar2.Scrolling = 9;
  w.XP_ProgressBar3.Scrolling = 9;

  Control* group = &w.GroupBox3;
  w.Place({
      {group, nullptr, kStatus},
      {&w.XP_ProgressBar1, group, {16, 28, 448, 22}},
      {&w.XP_ProgressBar2, group, {16, 58, 448, 22}},
      {&w.XP_ProgressBar3, group, {16, 88, 448, 22}},
  });
}

}  // namespace

void LayOut(Main& w) {
  w.Caption = "FTP Server Management";
  w.Frame = WindowFrame::kFixed;
  w.ClientSize = Size{728, 388};
  LayOutTaskPanel(w);
  LayOutSettings(w);
  LayOutUpload(w);
  LayOutDownload(w);
  LayOutStatus(w);
  for (chameleonButton* button : {&w.chameleonButton1, &w.chameleonButton2, &w.chameleonButton3,
                                  &w.chameleonButton4, &w.cmdBrowse}) {
    button->ButtonType = 3;
  }
  w.GroupBox2.Visible = false;
  w.GroupBox4.Visible = false;
}

}  // namespace tarnvale
