// What the links and the rows of the menu do, beside showing a screen.
#include "shell/form1.h"

namespace tarnvale {

void Form1::WireMenu() {
  mnuMenu.Add(mnuBackup);
  mnuMenu.Add(mnuwizard);
  mnuwizard.Add(mnuSchedule);
  mnuwizard.Add(mnufiles);
  mnuwizard.Add(mnustorage);
  mnuwizard.Add(mnusave);
  mnuMenu.Add(mnuOptions);
  mnuOptions.Add(mnusettings);
  mnuOptions.Add(mnucompauto);
  mnuMenu.AddSeparator();
  mnuMenu.Add(mnutools);
  for (MenuItem* tool : {&mnudata, &mnusplitter, &mnuregistry, &mnuFTP, &mnuCompressor}) {
    mnutools.Add(*tool);
  }
  mnuMenu.AddSeparator();
  mnuMenu.Add(mnuQuit);
  MenuBar = {&mnuMenu};

  mnuBackup.IsDefault = true;
  mnuBackup.Clicked.Listen([this] {
    engine_.AskAndStart(
        "Tarnvale Will Now Perform A Backup For Your Files - Compression & FTP Upload Will Occur "
        "If Selected. Proceed?");
  });
  mnusave.Clicked.Listen(
      [this] { engine_.SaveAndAnnounce("Tarnvale Settings Saved To Your U3 Device"); });
  mnuQuit.Clicked.Listen([this] { Exit(); });
}

void Form1::WireTaskPanel() {
  Label49.Clicked.Listen([this] {
    engine_.AskAndStart("Tarnvale Will Now Perform A Backup On Your Files. Proceed?");
  });
  Label45.Clicked.Listen(
      [this] { engine_.SaveAndAnnounce("Your Tarnvale Settings Have Been Sucessfully Saved"); });

  const auto opens = [this](Signal<>& click, std::function<void()> ToolHooks::*hook) {
    click.Listen([this, hook] { CallHook(Tools.*hook); });
  };
  opens(Label34.Clicked, &ToolHooks::ShowUserData);
  opens(mnudata.Clicked, &ToolHooks::ShowUserData);
  opens(Label42.Clicked, &ToolHooks::ShowSplitter);
  opens(mnusplitter.Clicked, &ToolHooks::ShowSplitter);
  opens(Label56.Clicked, &ToolHooks::ShowRegistry);
  opens(mnuregistry.Clicked, &ToolHooks::ShowRegistry);
  opens(Label46.Clicked, &ToolHooks::ShowTransfer);
  opens(mnuFTP.Clicked, &ToolHooks::ShowTransfer);
  opens(mnuCompressor.Clicked, &ToolHooks::ShowCompressor);
  opens(Label41.Clicked, &ToolHooks::ShowCompressorPanel);
}

}  // namespace tarnvale
