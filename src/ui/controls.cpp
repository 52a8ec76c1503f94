#include "ui/controls.h"

#include <algorithm>

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
  selected_.assign(Rows.Count(), false);
  follows_.push_back(Rows.Appended.Subscribe([this] { selected_.resize(Rows.Count(), false); }));
  follows_.push_back(Rows.Removed.Subscribe([this](std::size_t index) {
    if (index < selected_.size()) {
      selected_.erase(selected_.begin() + static_cast<std::ptrdiff_t>(index));
    }
  }));
  follows_.push_back(Rows.Reset.Subscribe([this] { selected_.assign(Rows.Count(), false); }));
}

void ListBox::Select(std::size_t index, bool selected) {
  if (index >= selected_.size() || selected_[index] == selected) return;
  if (selected && !MultiSelect) selected_.assign(selected_.size(), false);
  selected_[index] = selected;
  SelectionChanged.Emit();
}

void ListBox::SelectNone() {
  if (!FirstSelected()) return;
  selected_.assign(selected_.size(), false);
  SelectionChanged.Emit();
}

std::optional<std::size_t> ListBox::FirstSelected() const {
  const auto first = std::find(selected_.begin(), selected_.end(), true);
  if (first == selected_.end()) return std::nullopt;
  return static_cast<std::size_t>(first - selected_.begin());
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
  selected_.assign(rows_.size(), false);
  current_.clear();
  RowsChanged.Emit();
}

void FileList::Select(std::size_t index, bool selected) {
  if (index >= rows_.size() || selected_[index] == selected) return;
  selected_[index] = selected;
  if (selected) current_ = rows_[index];
  SelectionChanged.Emit();
}

void FileList::SelectNone() {
  if (std::find(selected_.begin(), selected_.end(), true) == selected_.end()) return;
  selected_.assign(selected_.size(), false);
  SelectionChanged.Emit();
}

}  // namespace tarnvale
