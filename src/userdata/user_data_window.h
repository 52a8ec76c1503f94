// The window that backs up and restores the data of browsers and mail programs.
// What its buttons do lies in user_data_window_operations.cpp, where things stand
// in user_data_window_layout.cpp.
#pragma once

#include <initializer_list>
#include <string>

#include "core/file_control.h"
#include "kit/chameleon_button.h"
#include "kit/group_box.h"
#include "kit/progress_bar.h"
#include "ui/controls.h"
#include "ui/machine.h"
#include "ui/timer.h"
#include "ui/window.h"

namespace tarnvale {

/// One of it is made (WindowSlot); closing it hides it, and it stays as it is. No
/// operation can be called off or tells a failure, and nothing locks the window
/// while one runs.
class userdata : public Window {
 public:
  explicit userdata(Machine& machine);

  /// The content of a registry value, as Registry::Read; raises what that does.
  std::string Reg_Read(const std::string& path);

  // The navigation column.
  PictureBox TaskPanel;
  Label BrowsersHeading{TextRole::kHeading};
  Label Label41{TextRole::kLink};  ///< Shows Firefox.
  Label Label42{TextRole::kLink};  ///< Shows Internet Explorer.
  Label Label30{TextRole::kLink};  ///< Shows Opera.
  Label MailHeading{TextRole::kHeading};
  Label Label14{TextRole::kLink};  ///< Shows Outlook.
  Label Label15{TextRole::kLink};  ///< Shows Outlook Express.
  Label Label49{TextRole::kLink};  ///< Shows Thunderbird.
  Label SystemHeading{TextRole::kHeading};
  Label Label19{TextRole::kLink};  ///< Shows the system's files.

  /// What each panel shows and says.
  struct PanelTexts {
    PictureBox Picture;
    Label WhatItDoes{TextRole::kStrong};
    Label Description;
    Label BackupLocation{TextRole::kStrong};
  };

  // The panel of Firefox.
  GroupBox GroupBox1;
  PanelTexts FirefoxTexts;           ///< Its picture, headings and description.
  TextBox Text2;                     ///< The chosen folder.
  chameleonButton chameleonButton1;  ///< Backs up.
  chameleonButton chameleonButton2;  ///< Restores.

  // The panel of Thunderbird.
  GroupBox GroupBox2;
  PanelTexts ThunderbirdTexts;       ///< Its picture, headings and description.
  TextBox Text4;                     ///< The chosen folder.
  chameleonButton chameleonButton4;  ///< Backs up.
  chameleonButton chameleonButton3;  ///< Restores.

  // The panel of Internet Explorer.
  GroupBox GroupBox3;
  PanelTexts ExplorerTexts;          ///< Its picture, headings and description.
  TextBox Text6;                     ///< The chosen folder; after a backup the one made in it.
  chameleonButton chameleonButton5;  ///< Backs up.
  chameleonButton chameleonButton6;  ///< Restores.

  // The panel of Outlook.
  GroupBox GroupBox4;
  PanelTexts OutlookTexts;           ///< Its picture, headings and description.
  TextBox Text8;                     ///< The chosen folder.
  chameleonButton chameleonButton7;  ///< Backs up.
  chameleonButton chameleonButton8;  ///< Restores.

  // The panel of Outlook Express.
  GroupBox GroupBox5;
  PanelTexts ExpressTexts;            ///< Its picture, headings and description.
  TextBox Text9;                      ///< The chosen folder; after a backup the one made in it.
  chameleonButton chameleonButton9;   ///< Backs up.
  chameleonButton chameleonButton10;  ///< Restores.

  // The panel of the system's files.
  GroupBox GroupBox6;
  PanelTexts SystemTexts;             ///< Its picture, headings and description.
  TextBox Text14;                     ///< The chosen folder; after a backup the one made in it.
  chameleonButton chameleonButton11;  ///< Backs up.
  XP_ProgressBar XP_ProgressBar1;     ///< Files copied.

  // The panel of Opera.
  GroupBox GroupBox7;
  PanelTexts OperaTexts;              ///< Its picture, headings and description.
  TextBox Text19;                     ///< Stays empty; the chosen folder is in Text21.
  chameleonButton chameleonButton12;  ///< Backs up.
  chameleonButton chameleonButton13;  ///< Restores.

  // State that isn't shown; it isn't laid out. First where applications have their data.
  TextBox Text10;  ///< Outlook Express: the identity.
  TextBox Text11;  ///< Outlook Express: the mail store.
  TextBox Text1;   ///< Firefox.
  TextBox Text20;  ///< Opera.
  TextBox Text3;   ///< Thunderbird.
  TextBox Text5;   ///< Internet Explorer: favorites.
  TextBox Text7;   ///< Outlook.
  TextBox Text16;  ///< Internet Explorer: cookies.
  TextBox Text17;  ///< Internet Explorer: history.
  TextBox Text18;  ///< Internet Explorer: temporary files.
  TextBox Text21;  ///< Opera: the chosen folder.
  TextBox Text15;  ///< Internet Explorer: the folder chosen for a backup.
  TextBox Text12;  ///< Outlook Express: the folder chosen for a backup.
  TextBox Text13;  ///< Outlook Express: what a restore takes the mail store from.

  // Timers.
  Timer Timer1;  ///< Fills in where applications have their data.

 private:
  friend void LayOut(userdata& window);

  void WirePanels();
  void WireOperations();
  void ShowPanel(const GroupBox& panel);

  // One tick.
  void FollowProfile();

  // The operations, and what they are made of.
  void BackUp(const TextBox& profile, TextBox& chosen, const char* name);
  void Restore(TextBox& chosen, const TextBox& profile);
  void BackUpExplorer();
  void RestoreExplorer();
  void BackUpExpress();
  void RestoreExpress();
  void BackUpSystemFiles();
  void AskForFolder(std::initializer_list<TextBox*> fields);
  void MakeFolder(const Path& folder);
  void CopyOver(const Path& source, const Path& target, Rights rights);
  void StartEditor(const std::string& line);
  void TellBackedUp();
  void TellRestored();

  Machine& machine_;
  FileControl control_;
};

/// Gives every control of the user data window its place and its texts.
void LayOut(userdata& window);

}  // namespace tarnvale
