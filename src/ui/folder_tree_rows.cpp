#include "ui/folder_tree_rows.h"

#include <algorithm>
#include <iterator>
#include <unordered_set>

#include "base/failure.h"
#include "base/text.h"
#include "platform/names.h"
#include "platform/path_text.h"

namespace tarnvale {
namespace {

void Renumber(FolderRow& row, std::size_t from) {
  for (std::size_t i = from; i < row.children.size(); ++i) row.children[i]->place = i;
}

auto At(FolderRow& row, std::size_t place) {
  return row.children.begin() + static_cast<std::ptrdiff_t>(place);
}

}  // namespace

FolderTreeRows::FolderTreeRows(FileSystem& files) : files_(files) {
  root_.is_read = true;
  RefreshDrives();
}

void FolderTreeRows::RefreshDrives() {
  drives_ = files_.Drives();
  std::vector<std::string> roots;
  for (const Drive& drive : drives_) roots.push_back(drive.root);
  Update(root_, roots);
}

bool FolderTreeRows::AnswersAtOnce(const FolderRow& row) const {
  return !row.IsDrive() || std::find(drives_.begin(), drives_.end(),
                                     Drive{row.name, DriveKind::kFixed}) != drives_.end();
}

Path FolderTreeRows::PathOf(const FolderRow& row) const {
  if (row.parent == nullptr || row.IsDrive()) return row.name;
  return WithBackslash(PathOf(*row.parent)) + row.name;
}

std::vector<std::string> FolderTreeRows::List(const FolderRow& row) const {
  std::vector<std::string> names;
  PassedOver pass;
  pass.Step([&] { names = files_.ListFolders(PathOf(row), {.hidden = true, .system = true}); });
  return names;
}

void FolderTreeRows::Insert(FolderRow& row, std::size_t at, const std::vector<std::string>& names) {
  if (names.empty()) return;
  Inserting.Emit({row, at, names.size()});
  std::vector<std::unique_ptr<FolderRow>> made;
  made.reserve(names.size());
  for (const std::string& name : names) {
    made.push_back(std::make_unique<FolderRow>());
    made.back()->name = name;
    made.back()->parent = &row;
  }
  row.children.insert(At(row, at), std::make_move_iterator(made.begin()),
                      std::make_move_iterator(made.end()));
  Renumber(row, at);
  Inserted.Emit();
}

void FolderTreeRows::Remove(FolderRow& row, std::size_t from, std::size_t count) {
  if (count == 0) return;
  Removing.Emit({row, from, count});
  row.children.erase(At(row, from), At(row, from + count));
  Renumber(row, from);
  Removed.Emit();
}

void FolderTreeRows::Read(FolderRow& row) {
  if (row.is_read) return;
  row.is_read = true;
  Insert(row, 0, List(row));
}

void FolderTreeRows::Update(FolderRow& row, const std::vector<std::string>& names) {
  const std::unordered_set<std::string> wanted(names.begin(), names.end());
  const auto is_gone = [&](std::size_t place) {
    return wanted.count(row.children[place]->name) == 0;
  };
  for (std::size_t end = row.children.size(); end > 0;) {
    std::size_t from = end;
    while (from > 0 && is_gone(from - 1)) --from;
    Remove(row, from, end - from);
    end = from > 0 ? from - 1 : 0;
  }
  // What is left is in the order of `names`; the gaps are new.
  for (std::size_t at = 0; at < names.size();) {
    std::size_t end = at;
    while (end < names.size() &&
           (at >= row.children.size() || row.children[at]->name != names[end])) {
      ++end;
    }
    Insert(row, at,
           {names.begin() + static_cast<std::ptrdiff_t>(at),
            names.begin() + static_cast<std::ptrdiff_t>(end)});
    at = end + 1;
  }
}

void FolderTreeRows::Open(FolderRow& row) {
  row.is_fresh = true;
  Read(row);
}

void FolderTreeRows::Refresh(FolderRow& row) {
  if (!row.IsDrive() && !files_.FolderExists(PathOf(row))) {
    Remove(*row.parent, row.place, 1);
    return;
  }
  if (!row.is_read) return;
  if (row.is_fresh) {
    row.is_fresh = false;
    return;
  }
  Update(row, List(row));
  for (const auto& child : row.children) {
    if (child->children.empty()) child->is_read = false;
  }
}

bool FolderTreeRows::Peek(FolderRow& row) {
  if (row.is_read || !AnswersAtOnce(row)) return false;
  Read(row);
  return true;
}

FolderRow* FolderTreeRows::Child(FolderRow& row, const std::string& name) {
  Read(row);
  const std::string folded = files_.FoldCase(name);
  FolderRow* alike = nullptr;
  for (const auto& child : row.children) {
    if (child->name == name) return child.get();
    if (alike == nullptr && files_.FoldCase(child->name) == folded) alike = child.get();
  }
  if (alike != nullptr) return alike;
  if (!files_.FolderExists(WithBackslash(PathOf(row)) + name)) return nullptr;
  const auto place = std::find_if(row.children.begin(), row.children.end(), [&](const auto& child) {
    return ComesBefore(name, child->name);
  });
  const auto at = static_cast<std::size_t>(place - row.children.begin());
  Insert(row, at, {name});
  return row.children[at].get();
}

FolderRow* FolderTreeRows::Find(const Path& folder) {
  const auto path = TakeApart(folder);
  if (!path) return nullptr;
  const auto drive =
      std::find_if(root_.children.begin(), root_.children.end(), [&](const auto& row) {
        return path->drive == 0 || EqualIgnoringCase(row->name.substr(0, 1), {&path->drive, 1});
      });
  if (drive == root_.children.end()) return nullptr;
  FolderRow* row = drive->get();
  for (const std::string_view name : path->names) {
    row = Child(*row, std::string(name));
    if (row == nullptr) return nullptr;
  }
  return row;
}

}  // namespace tarnvale
