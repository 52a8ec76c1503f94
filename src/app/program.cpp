#include "app/program.h"

#include "core/report.h"
#include "shell/program_icon.h"

namespace tarnvale {

Program::Program(Machine& machine)
    : engine(machine),
      form(engine),
      Splash(machine, engine.settings, HooksOfSplash()),
      Agreement(machine.windows,
                [this] {
                  auto window = std::make_unique<Accept>(machine_, HooksOfAgreement());
                  window->Icon = form.Icon.Get();
                  return window;
                }),
      popups(engine, DrawProgramIcon),
      Compressor(machine.windows,
                 [this] {
                   auto window = std::make_unique<compression>(machine_, engine.settings);
                   window->Icon = form.Icon.Get();
                   window->ShowTransfer = [this] { CallHook(form.Tools.ShowTransfer); };
                   window->ShowSplitter = [this] { CallHook(form.Tools.ShowSplitter); };
                   return window;
                 }),
      Splitter(machine.windows,
               [this] {
                 auto window = std::make_unique<frmMain>(machine_);
                 window->Icon = form.Icon.Get();
                 return window;
               }),
      RegistryBackup(machine.windows,
                     [this] {
                       auto window = std::make_unique<registry>(machine_);
                       window->Icon = form.Icon.Get();
                       return window;
                     }),
      UserData(machine.windows,
               [this] {
                 auto window = std::make_unique<userdata>(machine_);
                 window->Icon = form.Icon.Get();
                 return window;
               }),
      Mailer(machine.windows,
             [this] {
               auto window = std::make_unique<frmWinsock>(machine_, engine.settings, engine.mail,
                                                          last_reply_);
               window->Icon = form.Icon.Get();
               return window;
             }),
      Transfer(machine.windows,
               [this] {
                 auto window = std::make_unique<Main>(machine_, engine.settings);
                 window->Icon = form.Icon.Get();
                 window->SaveChanges = [this] { engine.SaveChanges(); };
                 return window;
               }),
      machine_(machine) {
  machine.windows.Adopt(form);
  Splash.Icon = IconResource("AAA");
  machine.windows.Adopt(Splash);
  // The companion program ends the process. Chosen: where it is missing, the
  // program doesn't go on without its window.
  form.Closed.Listen([this] { machine_.loop.Quit(0); });
  ConnectTools();
  ConnectStages();
}

SplashHooks Program::HooksOfSplash() {
  return {.ShowMainWindow = [this] { form.Visible = true; },
          .ShowAgreement = [this] { Agreement.Get().Visible = true; }};
}

AgreementHooks Program::HooksOfAgreement() {
  return {.DisableMainWindow = [this] { form.Enabled = false; },
          .EnableMainWindow = [this] { form.Enabled = true; },
          .ShowMainWindow = [this] { form.Show(); },
          .SaveChanges = [this] { engine.SaveChanges(); },
          .Decline = [this] { form.Decline(); }};
}

void Program::ConnectTools() {
  form.Tools.ShowUserData = [this] { UserData.Show(); };
  form.Tools.ShowSplitter = [this] { Splitter.Show(); };
  form.Tools.ShowRegistry = [this] { RegistryBackup.Show(); };
  form.Tools.ShowTransfer = [this] { Transfer.Show(); };
  form.Tools.ShowCompressor = [this] { Compressor.Show(); };
  form.Tools.ShowCompressorPanel = [this] {
    Compressor.Show();
    Compressor.Get().ShowCreatePanel();
  };
  form.Tools.SendTestReport = [this](const std::string& body) {
    Mailer.Show();
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
    engine.mail.Body = ReportText(machine_, engine.settings, facts);
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

}  // namespace tarnvale
