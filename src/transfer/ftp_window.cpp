#include "transfer/ftp_window.h"

namespace tarnvale {
namespace {

constexpr int kStripMs = 500;
constexpr int kEnableMs = 200;
constexpr int kAnimateMs = 200;
constexpr int kStoreMs = 1000;

}  // namespace

Main::Main(Machine& machine, BackupSettings& settings)
    : Inet1(machine.ftp),
      Timer1(machine.loop.Timers(), kStripMs, true),
      Timer2(machine.loop.Timers(), kEnableMs, true),
      Timer3(machine.loop.Timers(), kAnimateMs, false),
      Timer4(machine.loop.Timers(), kStoreMs, true),
      machine_(machine),
      settings_(settings) {
  LayOut(*this);
  WireCommands();
  WireTimers();
  notifications_ = Inet1.StateChanged.Subscribe([this](TransportState state) { ShowState(state); });
  Closed.Listen([this] { Unload(); });
  Load();
}

void Main::Load() {
  txtServer.Text = settings_.FtpServer;
  txtUserID.Text = settings_.FtpUsername;
  txtPassword.Text = settings_.FtpPassword;
}

void Main::Unload() {
  is_loaded_ = false;
  // The record outlives its window: nothing may go on ticking in it. What the
  // transport reports belongs to the next window.
  for (Timer* timer : {&Timer1, &Timer2, &Timer3, &Timer4}) timer->Enabled = false;
  notifications_.Cancel();
  // Required: what was typed here is saved too, that of the last second included.
  CopyFields();
  if (SaveChanges) SaveChanges();
}

void Main::WireCommands() {
  Label15.Clicked.Listen([this] { ShowPanel(GroupBox1); });
  Label49.Clicked.Listen([this] { ShowPanel(GroupBox2); });
  Label14.Clicked.Listen([this] { ShowPanel(GroupBox4); });
  chameleonButton4.Click.Listen([this] { Verify(); });
  chameleonButton2.Click.Listen([this] { SaveSettings(); });
  cmdBrowse.Click.Listen([this] { Browse(); });
  chameleonButton1.Click.Listen([this] { Upload(); });
  chameleonButton3.Click.Listen([this] { Download(); });
}

void Main::WireTimers() {
  Timer1.Tick.Listen([this] { StripRemoteName(); });
  Timer2.Tick.Listen([this] { EnableByFields(); });
  Timer3.Tick.Listen([this] { Animate(); });
  Timer4.Tick.Listen([this] { StoreFields(); });
  // What these two do can be seen in the window only: they don't wake a program
  // that has it hidden. The other two change what the engine reads.
  const auto wake_while_seen = [this] {
    for (Timer* timer : {&Timer1, &Timer2}) timer->WakesLoop = Visible.Get();
  };
  wake_while_seen();
  Visible.Changed.Listen(wake_while_seen);
}

void Main::ShowPanel(const GroupBox& panel) {
  for (GroupBox* each : {&GroupBox1, &GroupBox2, &GroupBox4}) each->Visible = each == &panel;
}

}  // namespace tarnvale
