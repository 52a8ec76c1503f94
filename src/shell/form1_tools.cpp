// The links and commands that open other windows, and the advanced screen.
#include "dialogs/file_dialog.h"
#include "shell/form1.h"

namespace tarnvale {

void Form1::WireTools() {
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
  opens(chameleonButton7.Click, &ToolHooks::ShowTransfer);
  opens(Label47.Clicked, &ToolHooks::ShowCompressor);
  opens(mnuCompressor.Clicked, &ToolHooks::ShowCompressor);
  opens(Label41.Clicked, &ToolHooks::ShowCompressorPanel);
}

void Form1::WireAdvanced() {
  chameleonButton4.Click.Listen([this] {
    const std::string folder = PickFolder(engine_.machine(), "Select a directory:");
    if (!folder.empty()) Text5.Text = folder;
  });
  chameleonButton5.Click.Listen(
      [this] { SaveSettings("Tarnvale Settings Save To Your U3 Device"); });
  chameleonButton6.Click.Listen([this] {
    CallHook(Tools.SendTestReport,
             "This Is A Test E-Mail Report From Tarnvale : Your Settings Have Been Confirmed");
  });
}

}  // namespace tarnvale
