// Where the controls of the user data window stand, and what they say. Places
// are pixels at 96 dpi from the container's upper left corner; the order of the
// rows is the tab order.
#include "userdata/user_data_window.h"

namespace tarnvale {
namespace {

constexpr Size kClient{728, 348};
constexpr Rect kTaskPanel{0, 0, 224, 348};
// All panels have the same size and the same place.
constexpr Rect kPanel{236, 12, 480, 324};

void LayOutTaskPanel(userdata& w) {
  w.TaskPanel.Background = PictureBox::Ground::kTaskPanel;
  w.BrowsersHeading.Caption = "Internet Browsers";
  w.Label41.Caption = "Mozilla Firefox";
  w.Label42.Caption = "Internet Explorer";
  w.Label30.Caption = "Opera Browser";
  w.MailHeading.Caption = "E-Mail Clients";
  w.Label14.Caption = "Microsoft Outlook";
  w.Label15.Caption = "Microsoft Outlook Express";
  w.Label49.Caption = "Mozilla Thunderbird";
  w.SystemHeading.Caption = "Windows XP";
  w.Label19.Caption = "Windows XP Files";

  Control* panel = &w.TaskPanel;
  w.Place({
      {panel, nullptr, kTaskPanel},
      {&w.BrowsersHeading, panel, {16, 16, 192, 24}},
      {&w.Label41, panel, {24, 46, 192, 20}},
      {&w.Label42, panel, {24, 72, 192, 20}},
      {&w.Label30, panel, {24, 98, 192, 20}},
      {&w.MailHeading, panel, {16, 134, 192, 24}},
      {&w.Label14, panel, {24, 164, 192, 20}},
      {&w.Label15, panel, {24, 190, 192, 20}},
      {&w.Label49, panel, {24, 216, 192, 20}},
      {&w.SystemHeading, panel, {16, 252, 192, 24}},
      {&w.Label19, panel, {24, 282, 192, 20}},
  });
}

struct PanelParts {
  const char* picture;
  GroupBox& frame;
  userdata::PanelTexts& texts;
  TextBox& location;
  chameleonButton& backup;
  chameleonButton* restore;  ///< null where nothing can be restored
};

struct PanelCaptions {
  const char* heading;
  const char* description;
  const char* backup;
  const char* restore;
};

void LayOutPanel(userdata& w, const PanelParts& parts, const PanelCaptions& captions) {
  parts.frame.Caption = captions.heading;
  parts.texts.Picture.Picture = parts.picture;
  parts.texts.WhatItDoes.Caption = "What It Does";
  parts.texts.Description.Caption = captions.description;
  parts.texts.Description.Wrap = true;
  parts.texts.BackupLocation.Caption = "Backup Location";
  parts.location.AccessibleName = "Backup Location";
  parts.backup.Caption = captions.backup;
  parts.backup.ButtonType = 3;

  Control* frame = &parts.frame;
  w.Place({
      {frame, nullptr, kPanel},
      {&parts.texts.Picture, frame, {16, 32, 48, 48}},
      {&parts.texts.WhatItDoes, frame, {80, 30, 384, 18}},
      {&parts.texts.Description, frame, {80, 52, 384, 112}},
      {&parts.texts.BackupLocation, frame, {16, 176, 448, 18}},
      {&parts.location, frame, {16, 198, 448, 24}},
      {&parts.backup, frame, {16, 238, 300, 30}},
  });
  if (parts.restore == nullptr) return;
  parts.restore->Caption = captions.restore;
  parts.restore->ButtonType = 3;
  w.Place({{parts.restore, frame, {16, 276, 300, 30}}});
}

void LayOutBrowsers(userdata& w) {
  LayOutPanel(
      w, {"browser", w.GroupBox1, w.FirefoxTexts, w.Text2, w.chameleonButton1, &w.chameleonButton2},
      {"Mozilla Firefox",
       "This feature will automatically backup your Mozilla Firefox. This will backup up your "
       "general settings, cache, cookies, history, download list, extensions, bookmarks and "
       "certificates. You can later restore them by clicking on the restore button.",
       "Backup My Firefox Profiles", "Restore My Firefox Profiles"});
  LayOutPanel(
      w,
      {"browser", w.GroupBox3, w.ExplorerTexts, w.Text6, w.chameleonButton5, &w.chameleonButton6},
      {"Microsoft Internet Explorer",
       "This feature will backup your Microsoft Internet Explorer. These Include: Cookies, Temp "
       "Files, History, Favorites and Phishing Filter Settings. You can later restore them by "
       "clicking the restore button. Supported Versions are: IE 5.0, 6.0 and 7.0",
       "Backup My Internet Explorer", "Restore My Internet Explorer"});
  LayOutPanel(
      w,
      {"browser", w.GroupBox7, w.OperaTexts, w.Text19, w.chameleonButton12, &w.chameleonButton13},
      {"Opera Browser",
       "This feature will automatically backup your Opera Browser. This will backup your "
       "general settings, cache, cookies, history, extensions, bookmarks, mail and "
       "certificates. You can later restore them by clicking on the restore button.",
       "Backup My Opera Profiles", "Restore My Opera Profiles"});
  // Chosen: nobody can type into a field that nothing reads.
  w.Text19.ReadOnly = true;
}

void LayOutMail(userdata& w) {
  LayOutPanel(
      w, {"mail", w.GroupBox4, w.OutlookTexts, w.Text8, w.chameleonButton7, &w.chameleonButton8},
      {"Microsoft Outlook",
       "This feature will automatically backup all your Microsoft Outlook Messages in a Personal "
       "Folder Format (.pst). You can later restore them by clicking the restore button. "
       "Supported Versions are: Microsoft Outlook 2000 and Above.",
       "Backup My Microsoft Outlook Messages", "Restore My Microsoft Outlook Messages"});
  LayOutPanel(
      w, {"mail", w.GroupBox5, w.ExpressTexts, w.Text9, w.chameleonButton9, &w.chameleonButton10},
      {"Microsoft Outlook Express",
       "This feature will automatically backup your Microsoft Outlook Express. It will backup "
       "Emails Messages, Identities, Accounts and Settings. You can later restore them by "
       "clicking the restore button. Supported Versions 5.0 and Above.  ",
       "Backup My Outlook Express", "Restore My Outlook Express"});
  LayOutPanel(
      w,
      {"mail", w.GroupBox2, w.ThunderbirdTexts, w.Text4, w.chameleonButton4, &w.chameleonButton3},
      {"Mozilla Thunderbird",
       "This feature will automatically backup your Mozilla Thunderbird. This will backup your "
       "general settings, email messages, address book, saved passwords and certificates. You "
       "can later restore them clicking on the restore button.",
       "Backup My Thunderbird Profiles", "Restore My Thunderbird Profiles"});
}

void LayOutSystem(userdata& w) {
  LayOutPanel(
      w, {"system", w.GroupBox6, w.SystemTexts, w.Text14, w.chameleonButton11, nullptr},
      {"Windows XP Vital Files",
       "This feature will automatically backup your Microsoft Windows XP Files. These "
       "include: Explorer.exe, boot.ini, config.sys, autoexec.bat, System.ini, Regedit.exe, "
       "Rundll32.exe, command.com, hal.dll, defrag.exe and winlogon.exe. Restore is not "
       "available. You can restore these files manually in case of system failure, viruses "
       "or corrupted files.",
       "Backup My Windows Vital Files", ""});
  w.XP_ProgressBar1.AccessibleName = "Files Copied";
  w.XP_ProgressBar1.Scrolling = 9;
  w.Place({{&w.XP_ProgressBar1, &w.GroupBox6, {16, 284, 448, 22}}});
}

}  // namespace

void LayOut(userdata& w) {
  w.Caption = "User Data Applications";
  w.Frame = WindowFrame::kFixed;
  w.ClientSize = kClient;
  LayOutTaskPanel(w);
  LayOutBrowsers(w);
  LayOutMail(w);
  LayOutSystem(w);
  w.ShowPanel(w.GroupBox1);
}

}  // namespace tarnvale
