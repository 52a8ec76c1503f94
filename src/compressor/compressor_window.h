// The window that packs a folder into an archive and unpacks archives.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "codec/archive.h"
#include "kit/chameleon_button.h"
#include "kit/check_box.h"
#include "kit/group_box.h"
#include "kit/progress_bar.h"
#include "settings/backup_settings.h"
#include "ui/controls.h"
#include "ui/machine.h"
#include "ui/timer.h"
#include "ui/window.h"

namespace tarnvale {

/// What an archive saves, in percent of its container: 100 less the share that
/// is left, cut down to a whole number. Negative for an archive that is larger.
/// Raises 11 for a container of 0 bytes.
std::int64_t CompressionPower(std::int32_t container_bytes, std::int32_t archive_bytes);

/// The compressor. It is made hidden at the start of the program and stays, as
/// a backup run compresses by it, shown or not. Nothing locks it: a click during
/// an operation starts another one within it.
class compression : public Window {
 public:
  /// All must outlive the window.
  compression(Machine& machine, BackupSettings& settings, Workers& workers = ArchiveParts::nobody);

  /// Packs what Text1 names into "Auto Compressed.tvz" in CompressDir, replacing
  /// it. Returns when the archive is written. Yields; raises what the archiver
  /// raises.
  void Compress();

  /// Puts the panel for packing before the one for unpacking.
  void ShowCreatePanel();

  // What opens other windows; set by the composition root.
  std::function<void()> ShowTransfer;  ///< Opens the transfer window. Not set: nothing.
  std::function<void()> ShowSplitter;  ///< Opens the splitter. Not set: nothing.

  // The task panel.
  PictureBox TaskPanel;
  Label Label43{TextRole::kHeading};
  Label Label41{TextRole::kLink};  ///< Panel for packing.
  Label Label42{TextRole::kLink};  ///< Panel for unpacking.
  Label Label47{TextRole::kHeading};
  Label Label49{TextRole::kLink};  ///< Opens the transfer window.
  Label Label1{TextRole::kLink};   ///< Opens the splitter.
  Label Label2{TextRole::kLink};   ///< Closes this window.

  // The panel for packing.
  GroupBox GroupBox1;
  chameleonButton Command1;        ///< Packs a folder.
  CheckBox CheckBox1;              ///< Step: start.
  CheckBox CheckBox2;              ///< Step: collecting the names.
  CheckBox CheckBox3;              ///< Step: the container.
  CheckBox CheckBox4;              ///< Step: compression.
  CheckBox CheckBox5;              ///< Step: done.
  TextBox Text4;                   ///< What is going on, then the power.
  XP_ProgressBar XP_ProgressBar1;  ///< Progress that the engine and others read.

  // The panel for unpacking.
  GroupBox GroupBox2;
  chameleonButton Command2;        ///< Unpacks an archive.
  CheckBox CheckBox10;             ///< Step: start.
  CheckBox CheckBox9;              ///< Step: decompression.
  CheckBox CheckBox8;              ///< Step: reading.
  CheckBox CheckBox7;              ///< Step: writing the files.
  CheckBox CheckBox6;              ///< Step: done.
  TextBox Text6;                   ///< What is going on.
  XP_ProgressBar XP_ProgressBar2;  ///< Progress of the unpacking.

  // The panel for single entries, which is never seen.
  GroupBox Frame3;
  ListBox List1;             ///< Entries of the archives that were listed.
  chameleonButton Command3;  ///< Lists an archive.
  TextBox Text2;             ///< Status.
  TextBox Text3;             ///< Percent.
  chameleonButton Command4;  ///< Unpacks the selected entry.

  // State that no panel shows.
  TextBox Text1;  ///< What Compress packs: DestinationDir of the last tick.
  TextBox Text5;  ///< The folder chosen last for packing.

  // Timers.
  Timer Timer1;  ///< Fills Text1.
  Timer Timer2;  ///< Required: disabled, and without a handler.

 private:
  friend void LayOut(compression& window);

  void WireTasks();
  void WireArchiver();

  // Commands.
  void CompressByHand();
  void DecompressByHand();
  void ListContents();
  void ExtractEntry();

  // What the archiver reports.
  void ShowStatus(ArchiveStatus status);
  void ShowBuilding(ArchiveStatus status);
  void ShowExtraction(ArchiveStatus status);
  void ShowEntries(ArchiveStatus status);

  Machine& machine_;
  BackupSettings& settings_;
  // Made behind the design texts, one of which its first status replaces.
  std::optional<usercontrol11> archiver_;
};

/// Gives every control of the compressor its place and its texts.
void LayOut(compression& window);

}  // namespace tarnvale
