#include "shell/screens/advanced_screen.h"

#include "shell/screens/screen.h"
#include "ui/file_dialog.h"

namespace tarnvale {

AdvancedScreen::AdvancedScreen(Window& window, Engine& engine, const ToolHooks& tools)
    : Check6(engine.settings.AutoCompress),
      Check7(engine.settings.AutoUpload),
      Check12(engine.settings.AutoReport),
      Text5(engine.settings.CompressDir),
      txtServer(engine.settings.SmtpServer),
      txtTo(engine.settings.ReportTo),
      Text15(engine.mail.Sender),
      txtSubject(engine.mail.Subject),
      txtBody(engine.mail.Body),
      window_(window),
      settings_(engine.settings) {
  chameleonButton4.Click.Listen([this, &engine] {
    const std::string folder = PickFolder(engine.machine(), "Select a directory:");
    if (!folder.empty()) Text5.Text = folder;
  });
  chameleonButton5.Click.Listen(
      [&engine] { engine.SaveAndAnnounce("Tarnvale Settings Save To Your U3 Device"); });
  chameleonButton7.Click.Listen([&tools] { CallHook(tools.ShowTransfer); });
  chameleonButton6.Click.Listen([&tools] {
    CallHook(tools.SendTestReport,
             "This Is A Test E-Mail Report From Tarnvale : Your Settings Have Been Confirmed");
  });
  engine.timers.At(EngineTimer::kAutoSettingsLink, [this] { LinkAutoSettings(); });
  engine.timers.At(EngineTimer::kReport, [this] { AllowReport(); });
}

void AdvancedScreen::LayOut() {
  Caption();
  Control* screen = &GroupBox6;
  Control* automatic = &GroupBox14;
  Control* compression = &GroupBox11;
  Control* server = &GroupBox13;
  Control* reports = &GroupBox12;
  window_.Place({
      {screen, nullptr, kScreen},
      {automatic, screen, {16, 20, 616, 116}},
      {&Check6, automatic, {20, 28, 576, 22}},
      {&Check7, automatic, {20, 54, 576, 22}},
      {&Check12, automatic, {20, 80, 576, 22}},
      {compression, screen, {16, 150, 616, 126}},
      {&CompressDirLabel, compression, {20, 26, 576, 20}},
      {&Text5, compression, {20, 48, 576, 24}},
      {&chameleonButton4, compression, {20, 84, 346, 28}},
      {&chameleonButton5, compression, {376, 84, 220, 28}},
      {server, screen, {16, 290, 616, 72}},
      {&chameleonButton7, server, {20, 28, 260, 28}},
      {&ServerNote, server, {292, 33, 304, 18}},
      {reports, screen, {16, 376, 616, 154}},
      {&ServerLabel, reports, {20, 30, 180, 20}},
      {&txtServer, reports, {210, 28, 386, 24}},
      {&ToAddressLabel, reports, {20, 62, 180, 20}},
      {&txtTo, reports, {210, 60, 386, 24}},
      {&AddressesNote, reports, {210, 88, 386, 18}},
      {&chameleonButton6, reports, {210, 112, 250, 28}},
  });
}

void AdvancedScreen::Caption() {
  GroupBox14.Caption = "Advanced Auto Settings";
  Check6.Caption = "Automatically Compress Files After Backup (Requires Compression Settings)";
  Check7.Caption = "Automatically Upload Compressed File (Requires FTP Server Settings)";
  Check12.Caption = "Automatically Send An E-Mail Report (Requires E-Mail Reports Settings)";
  GroupBox11.Caption = "Compression Settings";
  CompressDirLabel.Caption = "Automatic Compression Storage Directory";
  Text5.AccessibleName = "Automatic Compression Storage Directory";
  chameleonButton4.Caption = "Browse For Automatic Compression Storage Directory";
  chameleonButton5.Caption = "Save My Advanced Auto Settings";
  GroupBox13.Caption = "FTP Server Settings";
  ServerNote.Caption = "Server, user name and password of the upload.";
  chameleonButton7.Caption = "Setup My FTP Server Upload Settings";
  GroupBox12.Caption = "E-Mail Reports Settings";
  ServerLabel.Caption = "Outgoing STMP Mail Server:";
  txtServer.AccessibleName = "Outgoing Mail Server";
  ToAddressLabel.Caption = "Send To: ";
  txtTo.AccessibleName = "Send To";
  AddressesNote.Caption = "(For Multiple Addresses Seperate By A Comma)";
  chameleonButton6.Caption = "Send Test E-Mail Report";
  for (chameleonButton* button :
       {&chameleonButton4, &chameleonButton5, &chameleonButton6, &chameleonButton7}) {
    button->ButtonType = kButtonType;
  }
}

void AdvancedScreen::LinkAutoSettings() {
  const bool has_folder = !settings_.CompressDir.Get().empty();
  if (!has_folder) settings_.AutoCompress = false;
  Check6.Enabled = has_folder;
  if (!settings_.AutoCompress) settings_.AutoUpload = false;
  Check7.Enabled = settings_.AutoCompress.Get();
}

void AdvancedScreen::AllowReport() {
  Check12.Enabled = !settings_.SmtpServer.Get().empty() && !settings_.ReportTo.Get().empty();
}

}  // namespace tarnvale
