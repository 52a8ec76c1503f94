#include "shell/accept.h"

#include <utility>

#include "core/hooks.h"

namespace tarnvale {
namespace {

constexpr int kDisablingMs = 100;

constexpr const char* kAgreement =
    "Please read this before you use Tarnvale. It says what the program does with your files, and "
    "what it cannot promise.\r\n"
    "\r\n"
    "What it does\r\n"
    "Tarnvale copies the files and folders of your list to the place that you choose, when you ask "
    "for it and at the times that you set. In that place a copy replaces the older file of the "
    "same name without asking. Keeping two folders in step works in both directions: the newer "
    "file replaces the older one on either side. A file that was replaced is gone. A backup run "
    "deletes nothing else.\r\n"
    "\r\n"
    "What it does not do\r\n"
    "A run does not stop at a file that it cannot copy, and it does not report it: it ends with "
    "the word Success all the same, and the log says OK. Look at your copies now and then, and try "
    "to restore from them. One copy in one place is not enough for what you cannot lose.\r\n"
    "\r\n"
    "What it keeps and sends\r\n"
    "Your settings are kept in the file Tarnvale.ini in your data folder. A password that you "
    "enter is in it, and in every exported copy of it, as plain text that anybody who can open "
    "the file can read. The program sends nothing anywhere, except what you set up yourself: an "
    "upload to your server and a report by e-mail. The report goes over the network unprotected, "
    "and so does the upload with its password, on Windows always and on Linux unless your server "
    "offers encryption.\r\n"
    "\r\n"
    "License and warranty\r\n"
    "Tarnvale is free software under the MIT License: you may use, copy, change and pass it on, "
    "with the notice in its file LICENSE. The program comes as it is, without warranty of any "
    "kind. As far as the law allows, nobody but you is liable for loss of data or other damage "
    "that comes from its use.\r\n"
    "\r\n"
    "If you accept, your settings are saved and you are not asked again. If you decline, the "
    "program ends.\r\n";

}  // namespace

Accept::Accept(Machine& machine, AgreementHooks hooks)
    : Timer1(machine.loop.Timers(), kDisablingMs, true),
      machine_(machine),
      hooks_(std::move(hooks)) {
  LayOut();
  Timer1.Tick.Listen([this] { CallHook(hooks_.DisableMainWindow); });
  chameleonButton1.Click.Listen([this] { AcceptAgreement(); });
  chameleonButton2.Click.Listen([this] { AskToDecline(); });
  // Chosen: the close box is no third way. A main window left disabled, with
  // nothing in sight that could enable it, would be of no use to anybody.
  CloseAsked.Listen([this](CloseRequest& request) {
    if (is_accepted_) return;
    request.cancelled = true;
    AskToDecline();
  });
  Closed.Listen([this] { Timer1.Enabled = false; });
}

void Accept::LayOut() {
  Frame = WindowFrame::kDialog;
  ClientSize = {560, 420};
  Caption = "End User Liscence Agreement";
  RichTextBox1.Text = kAgreement;
  RichTextBox1.ReadOnly = true;
  RichTextBox1.AccessibleName = "Agreement";
  chameleonButton1.Caption = " Accept End User Liscence Agreement";
  chameleonButton2.Caption = "Decline";
  for (chameleonButton* button : {&chameleonButton1, &chameleonButton2}) button->ButtonType = 3;
  Place({
      {&RichTextBox1, nullptr, {16, 16, 528, 342}},
      {&chameleonButton1, nullptr, {16, 374, 280, 30}},
      {&chameleonButton2, nullptr, {424, 374, 120, 30}},
  });
}

void Accept::AcceptAgreement() {
  is_accepted_ = true;
  // Chosen: the timer stops first. What follows can yield, and a late tick would
  // leave the main window disabled for good.
  Timer1.Enabled = false;
  CallHook(hooks_.EnableMainWindow);
  CallHook(hooks_.ShowMainWindow);
  // Required: this save isn't examined. It is what marks the agreement accepted.
  CallHook(hooks_.SaveChanges);
  Close();
}

void Accept::AskToDecline() {
  const BoxAnswer answer =
      machine_.boxes.Show({.text = "Selecting Decline Will Close Tarnvale. Continue ?",
                           .icon = BoxIcon::kQuestion,
                           .buttons = BoxButtons::kYesNo,
                           .title = "Exit Tarnvale"});
  if (answer == BoxAnswer::kYes) {
    CallHook(hooks_.Decline);
  } else {
    Show();
  }
}

}  // namespace tarnvale
