#include "ui/controls.h"

#include "base/failure.h"
#include "base/text.h"

namespace tarnvale {

std::string Label::Shown() const {
  std::string shown = Caption.Get();
  if (Role == TextRole::kValue) return shown;
  for (std::size_t at = 0; (at = shown.find("&&", at)) != std::string::npos; ++at) {
    shown.erase(at, 1);
  }
  return shown;
}

void TextBox::Append(const std::string& text) {
  Text.Target().ModifyQuietly([&](std::string& whole) { whole += text; });
  const TextSelection caret{Text.Get().size(), 0};
  Selection.ModifyQuietly([&](TextSelection& selection) { selection = caret; });
  Appended.Emit(text);
}

void ListBox::FollowRows() {
  StartRows(Rows.Count());
  follows_.push_back(Rows.Appended.Subscribe([this] { AddRow(); }));
  follows_.push_back(Rows.Removed.Subscribe([this](std::size_t index) { RemoveRow(index); }));
  follows_.push_back(Rows.Reset.Subscribe([this] { StartRows(Rows.Count()); }));
}

OptionGroup::OptionGroup(std::vector<Property<bool>*> members) : members_(std::move(members)) {
  for (Property<bool>* member : members_) {
    follows_.push_back(member->Changed.Subscribe([this, member] {
      if (!member->Get()) return;
      for (Property<bool>* other : members_) {
        if (other != member) *other = false;
      }
    }));
  }
}

FileList::FileList(FileSystem& files) : files_(files) {
  MultiSelect = true;
  Folder.Changed.Listen([this] { Refresh(); });
  Pattern.Changed.Listen([this] { Refresh(); });
  ShowHidden.Changed.Listen([this] { Refresh(); });
  ShowSystem.Changed.Listen([this] { Refresh(); });
  ShowReadOnly.Changed.Listen([this] { Refresh(); });
}

bool FileList::Shows(const std::string& name) const {
  if (ShowReadOnly) return true;
  PassedOver pass;
  int attributes = 0;
  pass.Step([&] { attributes = files_.Attributes(WithBackslash(Folder.Get()) + name); });
  return (attributes & attribute::kReadOnly) == 0;
}

void FileList::Refresh() {
  std::vector<std::string> names;
  PassedOver pass;
  if (!Folder.Get().empty()) {
    pass.Step([&] {
      names = files_.List(WithBackslash(Folder.Get()) + Pattern.Get(),
                          {.hidden = ShowHidden, .system = ShowSystem});
    });
  }
  std::erase_if(names, [&](const std::string& name) { return !Shows(name); });
  rows_ = std::move(names);
  StartRows(rows_.size());
  RowsChanged.Emit();
}

}  // namespace tarnvale
