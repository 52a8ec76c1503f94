#include "app/program.h"

#include <utility>

#include "base/numbers.h"
#include "core/report.h"
#include "shell/program_icon.h"

namespace tarnvale {

namespace {

// Shows a window that the user asked for, also when it was minimised.
template <class W>
void BringUp(WindowSlot<W>& slot) {
  slot.Get().State = WindowState::kNormal;
  slot.Show();
}

}  // namespace

// A window with the icon of the main one.
template <class W, class... Args>
std::unique_ptr<W> Program::Make(Args&&... args) {
  auto window = std::make_unique<W>(machine_, std::forward<Args>(args)...);
  window->Icon = form.Icon.Get();
  return window;
}

Program::Program(Machine& machine, Workers& workers)
    : engine(machine),
      form(engine),
      Splash(machine, engine.settings, HooksOfSplash()),
      Agreement(machine.loop, machine.windows, [this] { return Make<Accept>(HooksOfAgreement()); }),
      popups(engine),
      Compressor(machine.loop, machine.windows, [this] { return MakeCompressor(); }),
      Splitter(machine.loop, machine.windows, [this] { return Make<frmMain>(); }),
      RegistryBackup(
          machine.loop, machine.windows, [this] { return Make<registry>(); }, WhenClosed::kHidden),
      UserData(
          machine.loop, machine.windows, [this] { return Make<userdata>(); }, WhenClosed::kHidden),
      Mailer(machine.loop, machine.windows,
             [this] { return Make<frmWinsock>(engine.settings, engine.mail, last_reply_); }),
      Transfer(machine.loop, machine.windows, [this] { return MakeTransfer(); }),
      machine_(machine),
      workers_(workers) {
  machine.windows.Adopt(form);
  SetWindowIcon(Splash, "AAA");
  machine.windows.Adopt(Splash);
  // The companion program ends the process. Chosen: where it is missing, the
  // program doesn't go on without its window.
  form.Closed.Listen([this] { machine_.loop.Quit(0); });
  ConnectTools();
  ConnectStages();
}

std::unique_ptr<compression> Program::MakeCompressor() {
  auto window = Make<compression>(engine.settings, workers_);
  window->ShowTransfer = [this] { CallHook(form.Tools.ShowTransfer); };
  window->ShowSplitter = [this] { CallHook(form.Tools.ShowSplitter); };
  return window;
}

std::unique_ptr<Main> Program::MakeTransfer() {
  auto window = Make<Main>(engine.settings);
  window->SaveChanges = [this] { engine.SaveChanges(); };
  return window;
}

SplashHooks Program::HooksOfSplash() {
  return {.ShowMainWindow =
              [this] {
                if (!form.IsDying()) form.Visible = true;
              },
          .ShowAgreement =
              [this] {
                if (!form.IsDying()) Agreement.Get().Visible = true;
              }};
}

AgreementHooks Program::HooksOfAgreement() {
  return {.DisableMainWindow = [this] { form.Enabled = false; },
          .EnableMainWindow = [this] { form.Enabled = true; },
          .ShowMainWindow = [this] { form.Show(); },
          .SaveChanges = [this] { engine.SaveChanges(); },
          .Decline = [this] { form.Decline(); }};
}

void Program::ConnectTools() {
  form.Tools.ShowUserData = [this] { BringUp(UserData); };
  form.Tools.ShowSplitter = [this] { BringUp(Splitter); };
  form.Tools.ShowRegistry = [this] { BringUp(RegistryBackup); };
  form.Tools.ShowTransfer = [this] { BringUp(Transfer); };
  form.Tools.ShowCompressor = [this] { BringUp(Compressor); };
  form.Tools.ShowCompressorPanel = [this] {
    BringUp(Compressor);
    Compressor.Get().ShowCreatePanel();
  };
  form.Tools.SendTestReport = [this](const std::string& body) {
    BringUp(Mailer);
    engine.mail.Body = body;
    Mailer.Get().StartSend();
  };
}

void Program::ConnectStages() {
  popups.ConnectStages();
  engine.stages.Compress = [this] { Compressor.Get().Compress(); };
  engine.stages.CompressionProgress = [this] {
    return Compressor.Get().XP_ProgressBar1.Value.Get();
  };
  engine.stages.SendReport = [this](const RunFacts& facts) {
    engine.mail.Body = ReportText(machine_.clock, machine_.formats, engine.settings, facts);
    Mailer.Get().StartSend();
  };
  engine.stages.ShowTransferWindow = [this] { Transfer.Show(); };
  engine.stages.Upload = [this] { Transfer.Get().CompressFTP(); };
  engine.stages.ConnectionStatus = [this] { return Transfer.Get().ConnectionStatus.Get(); };
}

bool Program::Start() {
  Splash.Start();
  form.Load();
  if (form.IsDying()) return false;
  Compressor.Get().XP_ProgressBar1.Value = 0;
  Transfer.Get().XP_ProgressBar1.Value = 0;
  return true;
}

int Program::Run() {
  return Start() ? machine_.loop.Run() : 0;
}

void ShowFaults(const Machine& machine) {
  machine.loop.Fault.Listen([&boxes = machine.boxes](const ProgramError& error) {
    boxes.Show(
        {.text = ToText(error.Number()) + "\n" + error.Description(), .icon = BoxIcon::kStop});
  });
}

}  // namespace tarnvale
