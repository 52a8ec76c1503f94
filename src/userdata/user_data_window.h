// The window that backs up and restores the data of browsers and mail programs.
// What its panels differ in is a table in user_data_panels.cpp.
#pragma once

#include <array>
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
/// operation can be called off or reports a failure, and nothing locks the window
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
  static constexpr std::size_t kPanels = 7;
  std::array<PanelTexts, kPanels> Texts;  ///< In the order of the panels' links.

  // The panel of Firefox.
  GroupBox GroupBox1;
  TextBox Text2;                     ///< The chosen folder.
  chameleonButton chameleonButton1;  ///< Backs up.
  chameleonButton chameleonButton2;  ///< Restores.

  // The panel of Thunderbird.
  GroupBox GroupBox2;
  TextBox Text4;                     ///< The chosen folder.
  chameleonButton chameleonButton4;  ///< Backs up.
  chameleonButton chameleonButton3;  ///< Restores.

  // The panel of Internet Explorer.
  GroupBox GroupBox3;
  TextBox Text6;                     ///< The chosen folder; after a backup the one made in it.
  chameleonButton chameleonButton5;  ///< Backs up.
  chameleonButton chameleonButton6;  ///< Restores.

  // The panel of Outlook.
  GroupBox GroupBox4;
  TextBox Text8;                     ///< The chosen folder.
  chameleonButton chameleonButton7;  ///< Backs up.
  chameleonButton chameleonButton8;  ///< Restores.

  // The panel of Outlook Express.
  GroupBox GroupBox5;
  TextBox Text9;                      ///< The chosen folder; after a backup the one made in it.
  chameleonButton chameleonButton9;   ///< Backs up.
  chameleonButton chameleonButton10;  ///< Restores.

  // The panel of the system's files.
  GroupBox GroupBox6;
  TextBox Text14;                     ///< The chosen folder; after a backup the one made in it.
  chameleonButton chameleonButton11;  ///< Backs up.
  XP_ProgressBar XP_ProgressBar1;     ///< Files copied.

  // The panel of Opera.
  GroupBox GroupBox7;
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

  /// One panel: its controls, what they say, and what its buttons do.
  struct Panel {
    Label userdata::*link;
    const char* link_caption;
    GroupBox userdata::*frame;
    const char* heading;
    const char* picture;
    const char* description;
    TextBox userdata::*location;
    chameleonButton userdata::*backup;
    const char* backup_caption;
    void (userdata::*back_up)(const Panel& panel);
    /// None where nothing can be restored.
    chameleonButton userdata::*restore = nullptr;
    const char* restore_caption = nullptr;
    void (userdata::*restore_from)(const Panel& panel) = nullptr;
    /// Where an application has all its data in one folder: that folder, the chosen
    /// one, and what the copy in it is called.
    TextBox userdata::*profile = nullptr;
    TextBox userdata::*chosen = nullptr;
    const char* folder = nullptr;
  };
  static const std::array<Panel, kPanels>& Panels();

  void LayOutTaskPanel();
  void LayOutPanel(const Panel& panel, PanelTexts& texts);
  void WirePanels();
  void ShowPanel(const Panel& panel);

  // One tick.
  void FollowProfile();

  // The operations, and what they are made of.
  void BackUpFolder(const Panel& panel);
  void RestoreFolder(const Panel& panel);
  void BackUpExplorer(const Panel& panel);
  void RestoreExplorer(const Panel& panel);
  void BackUpExpress(const Panel& panel);
  void RestoreExpress(const Panel& panel);
  void BackUpSystemFiles(const Panel& panel);
  void AskForFolder(std::initializer_list<TextBox*> fields);
  void MakeFolder(const Path& folder);
  void CopyOver(const Path& source, const Path& target, Rights rights);
  void StartEditor(const std::string& line);
  void ShowBackedUp();
  void ShowRestored();

  Machine& machine_;
  FileControl control_;
};

/// Gives every control of the user data window its place and its texts.
void LayOut(userdata& window);

}  // namespace tarnvale
