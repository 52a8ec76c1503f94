// The split command.
#include "base/numbers.h"
#include "splitter/frm_main.h"
#include "ui/file_dialog.h"

namespace tarnvale {

// Required: 2048 MB and more, as both rows for DVDs give, raise 6. Nobody catches
// it: the command ends here and the person sees the error.
std::int32_t SegmentBytes(const std::string& megabytes) {
  constexpr double kBytesPerMegabyte = 1048576;
  return RoundToInt32(LeadingNumber(megabytes) * kBytesPerMegabyte);
}

void frmMain::SplitChosenFile() {
  chameleonButton2.Enabled = false;
  const std::string folder = PickFolder(machine_, "Select A Folder:");
  // Required: a cancel doesn't end the command; the last folder stays.
  if (!folder.empty()) Text3.Text = folder;
  const Path source = txtSFName.Text;
  const std::int32_t segment_bytes = SegmentBytes(txtSegSize.Text);
  std::int16_t part_count = 0;
  const PartsCode code = parts_.SplitFile(source, segment_bytes, part_count);
  if (code != PartsCode::kDone) {
    machine_.boxes.Show({.text = "An Error Has Occured!\n"
                                 "Try Using A New Segment Value Or Check That File Name Exists.",
                         .icon = BoxIcon::kExclamation,
                         .title = "Error"});
  } else {
    machine_.boxes.Show({.text = "The Splitting Was Completed. The File Was Split Into " +
                                 ToText(part_count) + " Parts.",
                         .icon = BoxIcon::kInformation,
                         .title = "Successfully Done"});
  }
  chameleonButton2.Enabled = true;
}

}  // namespace tarnvale
