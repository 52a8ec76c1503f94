// The timers that keep the fields in order and move the bars.
#include <algorithm>
#include <initializer_list>

#include "transfer/ftp_window.h"

namespace tarnvale {
namespace {

bool AreFilled(std::initializer_list<const TextBox*> fields) {
  return std::none_of(fields.begin(), fields.end(),
                      [](const TextBox* field) { return field->Text.Get().empty(); });
}

std::string WithoutBlanks(std::string text) {
  std::erase(text, ' ');
  return text;
}

// Starts over when it comes out at the maximum exactly; the bar itself cuts what
// would be above.
void StepBar(XP_ProgressBar& bar, int step) {
  bar.Value = bar.Value + step;
  if (bar.Value == bar.Max) bar.Value = bar.Min;
}

}  // namespace

// Required: blanks only, no other white space.
void Main::StripRemoteName() {
  const std::string text = txtRemote.Text;
  const std::string before_caret = text.substr(0, txtRemote.Selection.Get().start);
  txtRemote.Text = WithoutBlanks(text);
  if (txtRemote.Text.Get() == text) return;
  // Chosen: a new text puts the caret to its start; a user who is typing goes on where
  // they were.
  txtRemote.Selection = TextSelection{};
  txtRemote.Selection = TextSelection{.start = WithoutBlanks(before_caret).size()};
}

void Main::EnableByFields() {
  SetIfOther(chameleonButton1.Enabled,
             AreFilled({&txtServer, &txtPassword, &txtLocal, &txtRemote, &txtUserID}));
  SetIfOther(chameleonButton3.Enabled,
             AreFilled({&txtServer, &txtPassword, &txtUserID, &Text22, &Text23}));
}

// Required: this is what disables the buttons during a transfer, and what the
// status says then, whatever the transport reports.
void Main::Animate() {
  ConnectionStatus = "File Transferring...";
  StepBar(XP_ProgressBar1, 2);
  StepBar(XP_ProgressBar2, 10);
  StepBar(XP_ProgressBar3, 7);
  EnableUpload(false);
  Timer2.Enabled = false;
}

// Required: the order.
void Main::CopyFields() {
  settings_.FtpServer = txtServer.Text;
  settings_.FtpUsername = txtUserID.Text;
  settings_.FtpPassword = txtPassword.Text;
}

// Required: a field that was emptied is stored empty once before it fills itself.
void Main::StoreFields() {
  CopyFields();
  if (txtServer.Text.Get().empty()) txtServer.Text = kExampleServer;
}

}  // namespace tarnvale
