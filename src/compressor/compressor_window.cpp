#include "compressor/compressor_window.h"

#include <cmath>
#include <initializer_list>

#include "base/failure.h"
#include "base/numbers.h"
#include "ui/file_dialog.h"

namespace tarnvale {
namespace {

constexpr int kFollowMs = 200;
constexpr int kIdleMs = 100;

// A dialog for archives, whose cancel is an error.
CommonDialog ArchiveDialog(Machine& machine) {
  CommonDialog dialog(machine);
  dialog.CancelError = true;
  dialog.Filter = "Tarnvale Compressed File (*.tvz)|*.tvz";
  return dialog;
}

void ShowRows(std::initializer_list<CheckBox*> rows) {
  for (CheckBox* row : rows) row->Visible = true;
}

void Tick(CheckBox& row, const std::string& caption) {
  row.Checked = true;
  row.Caption = caption;
}

std::string Percent(std::int16_t percent) {
  return ToText(percent) + "%";
}

}  // namespace

std::int64_t CompressionPower(std::int32_t container_bytes, std::int32_t archive_bytes) {
  if (container_bytes == 0) throw ProgramError(kDivisionByZero);
  // Required: the division comes first and the product is cut down, so that 29
  // of 100 leave 28.
  const double share = static_cast<double>(archive_bytes) / static_cast<double>(container_bytes);
  return 100 - static_cast<std::int64_t>(std::floor(share * 100));
}

compression::compression(Machine& machine, BackupSettings& settings, Workers& workers)
    : Timer1(machine.loop.Timers(), kFollowMs, true),
      Timer2(machine.loop.Timers(), kIdleMs, false),
      machine_(machine),
      settings_(settings) {
  LayOut(*this);
  archiver_.emplace(ArchiveParts(machine, workers),
                    [this](ArchiveStatus status) { ShowStatus(status); });
  WireTasks();
  WireArchiver();
  Timer1.Tick.Listen([this] { Text1.Text = settings_.DestinationDir; });
  Closed.Listen([this] {
    Timer1.Enabled = false;
    Timer2.Enabled = false;
  });
}

void compression::WireTasks() {
  Label41.Clicked.Listen([this] { ShowCreatePanel(); });
  Label42.Clicked.Listen([this] {
    GroupBox2.Visible = true;
    GroupBox1.Visible = false;
  });
  Label49.Clicked.Listen([this] {
    if (ShowTransfer) ShowTransfer();
  });
  Label1.Clicked.Listen([this] {
    if (ShowSplitter) ShowSplitter();
  });
  Label2.Clicked.Listen([this] { Close(); });
  Command1.Click.Listen([this] { CompressByHand(); });
  Command2.Click.Listen([this] { DecompressByHand(); });
  Command3.Click.Listen([this] { ListContents(); });
  Command4.Click.Listen([this] { ExtractEntry(); });
}

void compression::ShowCreatePanel() {
  GroupBox1.Visible = true;
  GroupBox2.Visible = false;
}

void compression::Compress() {
  ShowRows({&CheckBox1, &CheckBox2, &CheckBox3, &CheckBox4, &CheckBox5});
  // Required: DestinationDir as it was at the last tick, not as it is.
  const Path root = Text1.Text;
  archiver_->SaveFilesToArchiv(root, settings_.CompressDir.Get() + "\\Auto Compressed.tvz", true);
}

void compression::CompressByHand() {
  ShowRows({&CheckBox1, &CheckBox2, &CheckBox3, &CheckBox4, &CheckBox5});
  // Required: a cancel doesn't end the command; the folder chosen last is packed,
  // or the whole drive if there is none.
  const Path folder = PickFolder(machine_, "Select A Folder:");
  if (!folder.empty()) Text5.Text = folder;
  PassedOver pass;
  CommonDialog dialog = ArchiveDialog(machine_);
  dialog.DefaultExt = ".tvz";
  if (!pass.Step([&] { dialog.ShowSave(); })) return;
  pass.Step([&] { archiver_->SaveFilesToArchiv(Text5.Text, dialog.FileName, true); });
}

void compression::DecompressByHand() {
  ShowRows({&CheckBox6, &CheckBox7, &CheckBox8, &CheckBox9, &CheckBox10});
  PassedOver pass;
  CommonDialog dialog = ArchiveDialog(machine_);
  if (!pass.Step([&] { dialog.ShowOpen(); })) return;
  Path folder;
  pass.Step([&] { folder = PickFolder(machine_, "Please Select Directory To Extract To:"); });
  if (folder.empty()) return;
  pass.Step([&] { archiver_->ExtractFilesFromArchiv(dialog.FileName, folder, true); });
}

// Required: nothing guards it; a cancel is an error like any other.
void compression::ListContents() {
  CommonDialog dialog = ArchiveDialog(machine_);
  dialog.ShowOpen();
  archiver_->ReadFiles(dialog.FileName, true);
}

void compression::ExtractEntry() {
  PassedOver pass;
  CommonDialog dialog = ArchiveDialog(machine_);
  if (!pass.Step([&] { dialog.ShowOpen(); })) return;
  Path folder;
  pass.Step([&] { folder = PickFolder(machine_, "Please Select Directory To Rxtract To:"); });
  if (folder.empty()) return;
  const auto selected = List1.FirstSelected();
  const std::string entry = selected ? List1.Rows.At(*selected) : std::string();
  pass.Step([&] { archiver_->ExtractFile(dialog.FileName, entry, folder, true); });
}

void compression::WireArchiver() {
  usercontrol11& archiver = *archiver_;
  archiver.BuildArchiveProgress.Listen([this](std::int16_t percent) {
    CheckBox3.Caption = "Building Compressed File (" + Percent(percent) + ")";
    XP_ProgressBar1.Value = percent;
  });
  archiver.CompressArchiveProgress.Listen([this](std::int16_t percent) {
    CheckBox4.Caption = "Compressing Files (" + Percent(percent) + ")";
    XP_ProgressBar1.Value = percent;
  });
  archiver.DeCompressArchiveProgress.Listen([this](std::int16_t percent) {
    CheckBox9.Caption = "Decompressing Compressed Files (" + Percent(percent) + ")";
    XP_ProgressBar2.Value = percent;
  });
  archiver.ExtractArchiveProgress.Listen([this](std::int16_t percent) {
    CheckBox7.Caption = "Extracting Files (" + Percent(percent) + ")";
    XP_ProgressBar2.Value = percent;
  });
  archiver.AddingFile.Listen([this](const std::string&, const Path&, std::int32_t) {
    Text4.Text = "Please Wait While Compressing Your Backup File...";
  });
  // Required: the first file says already that all are done.
  archiver.ExtractingFileFromArchive.Listen([this](const std::string&, const Path&, std::int32_t) {
    Text6.Text = "All Files Have Been Sucessfully Decompressed";
  });
  archiver.CompressionDone.Listen([this](std::int32_t container_bytes, std::int32_t archive_bytes) {
    Text4.Text =
        "Compression Power Achieved: " + ToText(CompressionPower(container_bytes, archive_bytes)) +
        "%";
    XP_ProgressBar1.Value = 100;
  });
  // Required: the list isn't cleared before another archive is listed.
  archiver.ReturnContents.Listen(
      [this](const std::string& entry, std::int32_t) { List1.Rows.Append(entry); });
  const auto show_percent = [this](std::int16_t percent) { Text3.Text = Percent(percent); };
  archiver.ReturnContentsDecryptingProcess.Listen(show_percent);
  archiver.ExtractSingleDecompressProcess.Listen(show_percent);
}

// Each of the three looks after statuses of its own. Required: none ever clears
// a tick.
void compression::ShowStatus(ArchiveStatus status) {
  ShowBuilding(status);
  ShowExtraction(status);
  ShowEntries(status);
}

void compression::ShowBuilding(ArchiveStatus status) {
  switch (status) {
    case ArchiveStatus::kBuildStarts:
      CheckBox1.Caption = "Starting To Build";
      break;
    case ArchiveStatus::kEnumerating:
      Tick(CheckBox1, "Starting To Build... Done");
      CheckBox2.Caption = "Enumeration Files";
      break;
    case ArchiveStatus::kEnumerated:
      Tick(CheckBox2, CheckBox2.Caption.Get() + "... Done");
      break;
    case ArchiveStatus::kBuilding:
      CheckBox3.Caption = "Building (0%)";
      break;
    case ArchiveStatus::kBuilt:
      Tick(CheckBox3, "Building Compressed File... Done");
      break;
    case ArchiveStatus::kCompressing:
      CheckBox4.Caption = "Compressing (0%)";
      break;
    case ArchiveStatus::kCompressed:
      Tick(CheckBox4, "Compressing Files... Done");
      break;
    case ArchiveStatus::kDone:
      Tick(CheckBox5, "Successfully Done");
      break;
    default:
      break;
  }
}

void compression::ShowExtraction(ArchiveStatus status) {
  switch (status) {
    case ArchiveStatus::kExtractionStarts:
      CheckBox10.Caption = "Starting To Extract";
      break;
    case ArchiveStatus::kExtractionDecompresses:
      Tick(CheckBox10, "Starting To Extract... Done");
      CheckBox9.Caption = "Decompressing Archive (0%)";
      break;
    case ArchiveStatus::kExtractionDecompressed:
      Tick(CheckBox9, "Decompressing Compressed File... Done");
      break;
    case ArchiveStatus::kExtractionReads:
      CheckBox8.Caption = "Reading Compressed Backup File";
      break;
    case ArchiveStatus::kExtracting:
      CheckBox8.Checked = true;
      CheckBox7.Caption = "Extracting (0%)";
      break;
    case ArchiveStatus::kExtracted:
      Tick(CheckBox7, "Extracting Files... Done");
      Tick(CheckBox6, "Done");
      break;
    default:
      break;
  }
}

void compression::ShowEntries(ArchiveStatus status) {
  switch (status) {
    case ArchiveStatus::kReady:
      Text2.Text = "Ready";
      break;
    case ArchiveStatus::kListingStarts:
    case ArchiveStatus::kSingleStarts:
      Text2.Text = "Starting";
      break;
    case ArchiveStatus::kListingDecompresses:
    case ArchiveStatus::kSingleDecompresses:
      Text2.Text = "Decompressing";
      break;
    case ArchiveStatus::kListingReads:
    case ArchiveStatus::kSingleReads:
      Text2.Text = "Reading";
      break;
    case ArchiveStatus::kListed:
    case ArchiveStatus::kSingleDone:
      Text2.Text = "Done";
      break;
    default:
      break;
  }
}

}  // namespace tarnvale
