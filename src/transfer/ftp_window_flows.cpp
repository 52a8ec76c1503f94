// The flows of the window, each under a trap of its own. Required: what a
// failure path leaves as it was; no two are alike.
#include "base/failure.h"
#include "transfer/ftp_window.h"
#include "ui/file_dialog.h"

namespace tarnvale {
namespace {

constexpr const char* kTransferError =
    "Server Error: Check That All Data Is Correct And Make Sure That The Server Is Accessible.";
constexpr const char* kTransferErrorTitle = "FTP Error";
constexpr int kFull = 100;

std::string Quoted(const std::string& path) {
  return "\"" + path + "\"";
}

// A dialog for any file, whose cancel is an error.
CommonDialog AnyFileDialog(Machine& machine, const std::string& name, const char* title) {
  CommonDialog dialog(machine);
  dialog.CancelError = true;
  dialog.FileName = name;
  dialog.DialogTitle = title;
  dialog.Filter = "All Files (*.*)|*.*";
  return dialog;
}

}  // namespace

// Required: success for every server with which the listing could be started. The
// connection stays open.
void Main::Verify() {
  try {
    SetBars(0);
    ConfigureTransport();
    Inet1.Execute("DIR");
    if (!WaitUntilIdle()) return;
    ShowMessage("Your Settings Have Been Verified. Connection Established!");
    ConnectionStatus = "Connected To Server";
  } catch (const ProgramError&) {
    ShowFailure("Your Settings Have Not Been Verified. Connection Failed!", "Tarnvale");
    ConnectionStatus = "Not Connected To Server";
  }
}

void Main::SaveSettings() {
  CopyFields();
  PassedOver pass;
  pass.Step([&] {
    if (SaveChanges) SaveChanges();
  });
  // Required: shown after a save that failed too.
  ShowMessage("Your FTP Server Settings Have Been Successfully Saved!");
}

void Main::Browse() {
  try {
    CommonDialog dialog = AnyFileDialog(machine_, "*.*", "Select File To Upload To FTP Server");
    dialog.ShowOpen();
    txtLocal.Text = dialog.FileName;
    txtRemote.Text = dialog.FileTitle;
  } catch (const ProgramError&) {
    // A cancel, or nothing that could be chosen: both fields stay.
  }
}

void Main::Upload() {
  try {
    SetBars(0);
    ConfigureTransport();
    Inet1.Execute("DIR");
    if (!WaitForTransport()) return;
    ConnectionStatus = "Connected To Server";
    Start(Timer3);
    if (!SendFile()) return;
    EndTransfer();
    EnableUpload(true);
  } catch (const ProgramError&) {
    ShowFailure(kTransferError, kTransferErrorTitle);
    ConnectionStatus = "File Transfer Has Failed!";
    Timer3.Enabled = false;
    SetBars(kFull);
    // Required: Timer2 isn't started again.
    EnableUpload(true);
  }
}

void Main::Download() {
  try {
    SetBars(0);
    chameleonButton3.Enabled = false;
    EnableUpload(false);
    ConfigureTransport();
    Inet1.Execute("DIR");
    if (!WaitUntilIdle()) return;
    ConnectionStatus = "Connected To Server";
    Text20.Text = Text22.Text.Get() + "." + Text23.Text.Get();
    Text21.Text = AskForTarget();
    Start(Timer3);
    if (!FetchFile()) return;
    EndTransfer();
    ConnectionStatus = "Action Completed";
    EnableUpload(true);
    if (WaitForTransport()) Inet1.Execute("CLOSE");
  } catch (const ProgramError&) {
    // Required: after a cancel of the dialog too.
    ShowFailure(kTransferError, kTransferErrorTitle);
    ConnectionStatus = "File Download Has Failed!";
    Timer3.Enabled = false;
    SetBars(kFull);
    // Required: what uploads isn't enabled, and Timer2 isn't started again.
    chameleonButton3.Enabled = true;
  }
}

// Raises for a cancel.
Path Main::AskForTarget() {
  CommonDialog dialog = AnyFileDialog(machine_, Text22.Text.Get() + "." + Text23.Text.Get(),
                                      "Select Where To Download The File From FTP Server");
  dialog.ShowSave();
  return dialog.FileName;
}

void Main::CompressFTP() {
  try {
    SetBars(0);
    Start(Timer3);
    txtLocal.Text = settings_.CompressDir.Get() + "\\Auto Compressed.tvz";
    txtRemote.Text = "AutoCompressed.tvz";
    ConfigureTransport();
    XP_ProgressBar1.Value = 0;
    Start(Timer3);
    Inet1.Execute("DIR");
    if (!WaitForTransport()) return;
    ConnectionStatus = "Connected To Server";
    Start(Timer3);
    if (!SendFile()) return;
    EndTransfer();
    EnableUpload(true);
  } catch (const ProgramError&) {
    ConnectionStatus = "File Transfer Has Failed!";
    SetBars(kFull);
    // Required: Timer3 goes on, so that its next tick replaces the text and
    // disables the two buttons again; and no box, as nobody may be there.
    EnableUpload(true);
  }
}

bool Main::SendFile() {
  Inet1.Execute("PUT " + Quoted(txtLocal.Text) + " " + Quoted(txtRemote.Text));
  if (!WaitForTransport()) return false;
  // Required: nobody waits for its end.
  Inet1.Execute("CLOSE");
  return true;
}

bool Main::FetchFile() {
  Inet1.Execute("GET " + Quoted(Text20.Text) + " " + Quoted(Text21.Text));
  return WaitUntilIdle();
}

void Main::EndTransfer() {
  Timer3.Enabled = false;
  SetBars(kFull);
  Start(Timer2);
}

void Main::SetBars(int value) {
  for (XP_ProgressBar* bar : {&XP_ProgressBar1, &XP_ProgressBar2, &XP_ProgressBar3}) {
    bar->Value = value;
  }
}

void Main::EnableUpload(bool enabled) {
  chameleonButton1.Enabled = enabled;
  cmdBrowse.Enabled = enabled;
}

void Main::ShowMessage(const char* text) {
  machine_.boxes.Show({.text = text, .icon = BoxIcon::kInformation});
}

void Main::ShowFailure(const char* text, const char* title) {
  machine_.boxes.Show({.text = text, .icon = BoxIcon::kStop, .title = title});
}

}  // namespace tarnvale
