// What the panels of the user data window differ in, in the order of their links
// and of the Tab key.
#include "userdata/user_data_window.h"

namespace tarnvale {

const std::array<userdata::Panel, userdata::kPanels>& userdata::Panels() {
  using W = userdata;
  static constexpr std::array<Panel, kPanels> kTable{
      {{&W::Label41, "Mozilla Firefox", &W::GroupBox1, "Mozilla Firefox", "browser",
        "This feature will automatically backup your Mozilla Firefox. This will backup up your "
        "general settings, cache, cookies, history, download list, extensions, bookmarks and "
        "certificates. You can later restore them by clicking on the restore button.",
        &W::Text2, &W::chameleonButton1, "Backup My Firefox Profiles", &W::BackUpFolder,
        &W::chameleonButton2, "Restore My Firefox Profiles", &W::RestoreFolder, &W::Text1,
        &W::Text2, "\\Firefox Backup"},
       {&W::Label42, "Internet Explorer", &W::GroupBox3, "Microsoft Internet Explorer", "browser",
        "This feature will backup your Microsoft Internet Explorer. These Include: Cookies, Temp "
        "Files, History, Favorites and Phishing Filter Settings. You can later restore them by "
        "clicking the restore button. Supported Versions are: IE 5.0, 6.0 and 7.0",
        &W::Text6, &W::chameleonButton5, "Backup My Internet Explorer", &W::BackUpExplorer,
        &W::chameleonButton6, "Restore My Internet Explorer", &W::RestoreExplorer},
       {&W::Label30, "Opera Browser", &W::GroupBox7, "Opera Browser", "browser",
        "This feature will automatically backup your Opera Browser. This will backup your general "
        "settings, cache, cookies, history, extensions, bookmarks, mail and certificates. You can "
        "later restore them by clicking on the restore button.",
        &W::Text19, &W::chameleonButton12, "Backup My Opera Profiles", &W::BackUpFolder,
        &W::chameleonButton13, "Restore My Opera Profiles", &W::RestoreFolder,
        // Required: the chosen folder isn't the field that the panel shows.
        &W::Text20, &W::Text21, "\\Opera Backup"},
       {&W::Label14, "Microsoft Outlook", &W::GroupBox4, "Microsoft Outlook", "mail",
        "This feature will automatically backup all your Microsoft Outlook Messages in a Personal "
        "Folder Format (.pst). You can later restore them by clicking the restore button. "
        "Supported Versions are: Microsoft Outlook 2000 and Above.",
        &W::Text8, &W::chameleonButton7, "Backup My Microsoft Outlook Messages", &W::BackUpFolder,
        &W::chameleonButton8, "Restore My Microsoft Outlook Messages", &W::RestoreFolder, &W::Text7,
        &W::Text8, "\\Outlook Settings"},
       {&W::Label15, "Microsoft Outlook Express", &W::GroupBox5, "Microsoft Outlook Express",
        "mail",
        "This feature will automatically backup your Microsoft Outlook Express. It will backup "
        "Emails Messages, Identities, Accounts and Settings. You can later restore them by "
        "clicking the restore button. Supported Versions 5.0 and Above.  ",
        &W::Text9, &W::chameleonButton9, "Backup My Outlook Express", &W::BackUpExpress,
        &W::chameleonButton10, "Restore My Outlook Express", &W::RestoreExpress},
       {&W::Label49, "Mozilla Thunderbird", &W::GroupBox2, "Mozilla Thunderbird", "mail",
        "This feature will automatically backup your Mozilla Thunderbird. This will backup your "
        "general settings, email messages, address book, saved passwords and certificates. You can "
        "later restore them clicking on the restore button.",
        &W::Text4, &W::chameleonButton4, "Backup My Thunderbird Profiles", &W::BackUpFolder,
        &W::chameleonButton3, "Restore My Thunderbird Profiles", &W::RestoreFolder, &W::Text3,
        &W::Text4, "\\Thunderbird Backup"},
       {&W::Label19, "Windows XP Files", &W::GroupBox6, "Windows XP Vital Files", "system",
        "This feature will automatically backup your Microsoft Windows XP Files. These include: "
        "Explorer.exe, boot.ini, config.sys, autoexec.bat, System.ini, Regedit.exe, Rundll32.exe, "
        "command.com, hal.dll, defrag.exe and winlogon.exe. Restore is not available. You can "
        "restore these files manually in case of system failure, viruses or corrupted files.",
        &W::Text14, &W::chameleonButton11, "Backup My Windows Vital Files",
        &W::BackUpSystemFiles}}};
  return kTable;
}

}  // namespace tarnvale
