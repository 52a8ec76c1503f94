#include "ui/accessible_names.h"

#include "base/text.h"
#include "ui/caption_text.h"
#include "ui/owner_drawn.h"

namespace tarnvale {
namespace {

template <class Record>
const Record* As(const Control& control) {
  return dynamic_cast<const Record*>(&control);
}

std::string CaptionOf(const Control& control) {
  if (const auto* label = As<Label>(control)) return label->Shown();
  if (const auto* drawn = As<OwnerDrawn>(control)) return drawn->AccessibleText();
  if (const auto* option = As<OptionButton>(control)) return ShownCaption(option->Caption);
  if (const auto* check = As<CheckButton>(control)) return ShownCaption(check->Caption);
  return {};
}

std::string KindOf(const Control& control) {
  if (const auto* box = As<TextBox>(control)) {
    return box->Kind == TextKind::kMemo ? "Text" : "Text field";
  }
  if (As<ListBox>(control) != nullptr) return "List";
  if (As<ComboBox>(control) != nullptr) return "Choice";
  if (As<FileList>(control) != nullptr) return "Files";
  if (As<FolderTree>(control) != nullptr) return "Folders";
  return {};
}

}  // namespace

std::map<const Control*, const Label*> LabelsOf(const Window& window) {
  std::map<const Control*, const Label*> labels;
  const Label* label = nullptr;
  const Control* container = nullptr;
  for (const Placement& placement : window.Placements()) {
    if (placement.container != container) label = nullptr;
    container = placement.container;
    if (const auto* next = dynamic_cast<const Label*>(placement.control)) {
      if (next->Role != TextRole::kValue) label = next;
    } else if (label != nullptr) {
      labels[placement.control] = label;
    }
  }
  return labels;
}

std::string NameForReaders(const Control& control, const Label* label) {
  for (const std::string& name :
       {control.AccessibleName.Get(), CaptionOf(control), control.ToolTip.Get(),
        label == nullptr ? std::string() : std::string(Trimmed(label->Shown()))}) {
    if (!name.empty()) return name;
  }
  return KindOf(control);
}

}  // namespace tarnvale
