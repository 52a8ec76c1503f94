// Places and captions of the general, the advanced and the restore screen.
#include "shell/form1.h"
#include "shell/form1_layout.h"

namespace tarnvale {
namespace {

void CaptionAdvancedScreen(Form1& f) {
  f.GroupBox6.Caption = "";
  f.GroupBox14.Caption = "Advanced Auto Settings";
  f.Check6.Caption = "Automatically Compress Files After Backup (Requires Compression Settings)";
  f.Check7.Caption = "Automatically Upload Compressed File (Requires FTP Server Settings)";
  f.Check12.Caption = "Automatically Send An E-Mail Report (Requires E-Mail Reports Settings)";
  f.GroupBox11.Caption = "Compression Settings";
  f.CompressDirLabel.Caption = "Automatic Compression Storage Directory";
  f.Text5.AccessibleName = "Automatic Compression Storage Directory";
  f.chameleonButton4.Caption = "Browse For Automatic Compression Storage Directory";
  f.chameleonButton5.Caption = "Save My Advanced Auto Settings";
  f.GroupBox13.Caption = "FTP Server Settings";
  f.ServerNote.Caption = "Server, user name and password of the upload.";
  f.chameleonButton7.Caption = "Setup My FTP Server Upload Settings";
  f.GroupBox12.Caption = "E-Mail Reports Settings";
  f.ServerLabel.Caption = "Outgoing STMP Mail Server:";
  f.txtServer.AccessibleName = "Outgoing Mail Server";
  f.ToAddressLabel.Caption = "Send To: ";
  f.txtTo.AccessibleName = "Send To";
  f.AddressesNote.Caption = "(For Multiple Addresses Seperate By A Comma)";
  f.chameleonButton6.Caption = "Send Test E-Mail Report";
}

}  // namespace

void LayOutGeneralScreen(Form1& f) {
  f.GroupBox5.Caption = "General && Backup Settings";
  f.ModeHeading.Caption = "Select A Backup Mode";
  f.Option1.Caption = "Brenlow Mode";
  f.CompleteNote.Caption = "Copies every file of the list at each backup.";
  f.Option2.Caption = "Fennick Mode";
  f.IncrementalNote.Caption =
      "Copies a single file only when it has changed since its last backup.";
  f.Option3.Caption = "Tolvern Mode";
  f.SyncNote.Caption =
      "Keeps one folder and the storage location in step, both ways. Needs a list of one item.";
  f.OptionsHeading.Caption = "General Options";
  f.Check5.Caption = "Show Visual Notification Upon Backup";
  f.Checkbox1.Caption = "Automatically Save A Backup Log File";

  f.ExchangeHeading.Caption = "Export && Import My Backup Settings";
  f.chameleonButton2.Caption = "Export My Current Settings";
  f.chameleonButton3.Caption = "Import My Saved Settings";
  for (CheckBox* mark : {&f.CheckBox5, &f.CheckBox6, &f.CheckBox7, &f.CheckBox8}) {
    mark->Caption = "";
    // Chosen: a mark is a display; nobody can tick it.
    mark->Enabled = false;
  }
  f.CheckBox5.AccessibleName = "File To Export To";
  f.CheckBox6.AccessibleName = "Settings Exported";
  f.CheckBox7.AccessibleName = "File To Import";
  f.CheckBox8.AccessibleName = "Settings Imported";
  // Keep what was chosen, and are never seen.
  for (TextBox* field : {&f.Text8, &f.Text9}) field->Visible = false;

  Control* screen = &f.GroupBox5;
  f.Place({
      {screen, nullptr, kScreen},
      {&f.ModeHeading, screen, {16, 32, 616, 20}},
      {&f.Option1, screen, {24, 60, 300, 22}},
      {&f.CompleteNote, screen, {42, 84, 590, 18}},
      {&f.Option2, screen, {24, 112, 300, 22}},
      {&f.IncrementalNote, screen, {42, 136, 590, 18}},
      {&f.Option3, screen, {24, 164, 300, 22}},
      {&f.SyncNote, screen, {42, 188, 590, 18}},
      {&f.OptionsHeading, screen, {16, 232, 616, 20}},
      {&f.Check5, screen, {24, 260, 400, 22}},
      {&f.Checkbox1, screen, {24, 288, 400, 22}},
      {&f.ExchangeHeading, screen, {16, 346, 616, 20}},
      {&f.chameleonButton2, screen, {24, 376, 250, 30}},
      {&f.CheckBox5, screen, {292, 374, 20, 20}},
      {&f.Label30, screen, {318, 374, 314, 20}},
      {&f.CheckBox6, screen, {292, 398, 20, 20}},
      {&f.Label61, screen, {318, 398, 314, 20}},
      {&f.chameleonButton3, screen, {24, 442, 250, 30}},
      {&f.CheckBox7, screen, {292, 440, 20, 20}},
      {&f.Label63, screen, {318, 440, 314, 20}},
      {&f.CheckBox8, screen, {292, 464, 20, 20}},
      {&f.Label62, screen, {318, 464, 314, 20}},
      {&f.Text8, screen, {16, 500, 100, 24}},
      {&f.Text9, screen, {124, 500, 100, 24}},
  });
}

void LayOutAdvancedScreen(Form1& f) {
  CaptionAdvancedScreen(f);
  Control* screen = &f.GroupBox6;
  Control* automatic = &f.GroupBox14;
  Control* compression = &f.GroupBox11;
  Control* server = &f.GroupBox13;
  Control* reports = &f.GroupBox12;
  f.Place({
      {screen, nullptr, kScreen},
      {automatic, screen, {16, 20, 616, 116}},
      {&f.Check6, automatic, {20, 28, 576, 22}},
      {&f.Check7, automatic, {20, 54, 576, 22}},
      {&f.Check12, automatic, {20, 80, 576, 22}},
      {compression, screen, {16, 150, 616, 126}},
      {&f.CompressDirLabel, compression, {20, 26, 576, 20}},
      {&f.Text5, compression, {20, 48, 576, 24}},
      {&f.chameleonButton4, compression, {20, 84, 346, 28}},
      {&f.chameleonButton5, compression, {376, 84, 220, 28}},
      {server, screen, {16, 290, 616, 72}},
      {&f.chameleonButton7, server, {20, 28, 260, 28}},
      {&f.ServerNote, server, {292, 33, 304, 18}},
      {reports, screen, {16, 376, 616, 154}},
      {&f.ServerLabel, reports, {20, 30, 180, 20}},
      {&f.txtServer, reports, {210, 28, 386, 24}},
      {&f.ToAddressLabel, reports, {20, 62, 180, 20}},
      {&f.txtTo, reports, {210, 60, 386, 24}},
      {&f.AddressesNote, reports, {210, 88, 386, 18}},
      {&f.chameleonButton6, reports, {210, 112, 250, 28}},
  });
}

void LayOutRestoreScreen(Form1& f) {
  f.GroupBox15.Caption = "Restore A Backup";
  f.RestoreSourceLabel.Caption = "Choose A Backup To Restore";
  f.RestoreSourceTree.AccessibleName = "Folders Of Backups";
  f.Text27.AccessibleName = "Backup To Restore";
  f.RestoreTargetLabel.Caption = "Choose A Location For Restore";
  f.RestoreTargetTree.AccessibleName = "Folders For Restore";
  f.Text28.AccessibleName = "Location For Restore";
  f.DeviceNote.Caption = "If U3 Device Restore Please Select System Or Documents";
  f.RestoreStatusLabel.Caption = "Restore Status";
  f.XP_ProgressBar3.AccessibleName = "Restore Status";
  f.XP_ProgressBar3.Scrolling = 9;
  f.chameleonButton8.Caption = "Restore My Backup Now";
  // They follow the trees.
  for (TextBox* field : {&f.Text27, &f.Text28}) field->ReadOnly = true;

  Control* screen = &f.GroupBox15;
  f.Place({
      {screen, nullptr, kScreen},
      {&f.RestoreSourceLabel, screen, {16, 28, 300, 20}},
      {&f.Picture2, screen, {16, 54, 300, 278}},
      {&f.RestoreSourceTree, &f.Picture2, {0, 0, 300, 278}},
      {&f.Text27, screen, {16, 342, 300, 24}},
      {&f.RestoreTargetLabel, screen, {332, 28, 300, 20}},
      {&f.Picture3, screen, {332, 54, 300, 278}},
      {&f.RestoreTargetTree, &f.Picture3, {0, 0, 300, 278}},
      {&f.Text28, screen, {332, 342, 300, 24}},
      {&f.DeviceNote, screen, {16, 382, 616, 20}},
      {&f.RestoreStatusLabel, screen, {16, 418, 616, 20}},
      {&f.XP_ProgressBar3, screen, {16, 444, 616, 22}},
      {&f.chameleonButton8, screen, {16, 486, 250, 30}},
  });
}

}  // namespace tarnvale
