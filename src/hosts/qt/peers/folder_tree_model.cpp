#include "hosts/qt/peers/folder_tree_model.h"

#include <algorithm>
#include <unordered_set>

#include "base/failure.h"
#include "base/text.h"
#include "hosts/qt/qt_pictures.h"
#include "hosts/qt/qt_text.h"

namespace tarnvale {
namespace {

constexpr const char* kDriveRoot = "C:\\";
constexpr const char* kDriveLabel = "Computer";

/// The names of a path below the drive's root. A path on another drive has a
/// first name that no folder has.
std::vector<std::string> NamesOf(const Path& folder) {
  std::string_view rest = folder;
  if (rest.size() >= 2 && EqualIgnoringCase(rest.substr(0, 2), "C:")) rest.remove_prefix(2);
  std::vector<std::string> names;
  while (!rest.empty()) {
    const std::size_t end = std::min(rest.find('\\'), rest.size());
    if (end > 0) names.emplace_back(rest.substr(0, end));
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  return names;
}

}  // namespace

struct FolderTreeModel::Node {
  std::string name;
  Node* parent = nullptr;
  std::size_t row = 0;
  bool is_read = false;
  bool is_fresh = false;  ///< read since it was last opened
  std::vector<std::unique_ptr<Node>> children;

  void Renumber(std::size_t from) {
    for (std::size_t i = from; i < children.size(); ++i) children[i]->row = i;
  }
};

FolderTreeModel::FolderTreeModel(FileSystem& files)
    : files_(files),
      root_(std::make_unique<Node>()),
      folder_icon_(PictureNamed("folder")),
      computer_icon_(PictureNamed("computer")) {
  root_->is_read = true;
  root_->children.push_back(std::make_unique<Node>());
  root_->children[0]->parent = root_.get();
}

FolderTreeModel::~FolderTreeModel() = default;

FolderTreeModel::Node* FolderTreeModel::NodeOf(const QModelIndex& index) const {
  return index.isValid() ? static_cast<Node*>(index.internalPointer()) : root_.get();
}

QModelIndex FolderTreeModel::IndexOf(const Node& node) const {
  if (&node == root_.get()) return {};
  return createIndex(static_cast<int>(node.row), 0, &node);
}

Path FolderTreeModel::PathOf(const Node& node) const {
  if (node.parent == root_.get() || node.parent == nullptr) return kDriveRoot;
  return WithBackslash(PathOf(*node.parent)) + node.name;
}

Path FolderTreeModel::PathOf(const QModelIndex& index) const {
  return index.isValid() ? PathOf(*NodeOf(index)) : Path();
}

std::vector<std::string> FolderTreeModel::List(const Node& node) const {
  std::vector<std::string> names;
  PassedOver pass;
  pass.Step([&] { names = files_.ListFolders(PathOf(node), {.hidden = true, .system = true}); });
  return names;
}

void FolderTreeModel::Insert(Node& node, std::size_t at, const std::vector<std::string>& names) {
  if (names.empty()) return;
  beginInsertRows(IndexOf(node), static_cast<int>(at), static_cast<int>(at + names.size()) - 1);
  std::vector<std::unique_ptr<Node>> made;
  made.reserve(names.size());
  for (const std::string& name : names) {
    made.push_back(std::make_unique<Node>());
    made.back()->name = name;
    made.back()->parent = &node;
  }
  node.children.insert(node.children.begin() + static_cast<std::ptrdiff_t>(at),
                       std::make_move_iterator(made.begin()), std::make_move_iterator(made.end()));
  node.Renumber(at);
  endInsertRows();
}

void FolderTreeModel::Remove(Node& node, std::size_t from, std::size_t count) {
  if (count == 0) return;
  beginRemoveRows(IndexOf(node), static_cast<int>(from), static_cast<int>(from + count) - 1);
  const auto first = node.children.begin() + static_cast<std::ptrdiff_t>(from);
  node.children.erase(first, first + static_cast<std::ptrdiff_t>(count));
  node.Renumber(from);
  endRemoveRows();
}

void FolderTreeModel::Read(Node& node) {
  if (node.is_read) return;
  node.is_read = true;
  Insert(node, 0, List(node));
}

void FolderTreeModel::Update(Node& node, const std::vector<std::string>& names) {
  const std::unordered_set<std::string> wanted(names.begin(), names.end());
  for (std::size_t end = node.children.size(); end > 0;) {
    if (wanted.count(node.children[end - 1]->name) != 0) {
      --end;
      continue;
    }
    std::size_t from = end - 1;
    while (from > 0 && wanted.count(node.children[from - 1]->name) == 0) --from;
    Remove(node, from, end - from);
    end = from;
  }
  // What is left stands in the order of `names`; the gaps are new.
  for (std::size_t at = 0; at < names.size();) {
    const auto stands = [&](std::size_t i, std::size_t row) {
      return row < node.children.size() && node.children[row]->name == names[i];
    };
    std::size_t end = at;
    while (end < names.size() && !stands(end, at)) ++end;
    Insert(node, at,
           {names.begin() + static_cast<std::ptrdiff_t>(at),
            names.begin() + static_cast<std::ptrdiff_t>(end)});
    at = end + 1;
  }
}

void FolderTreeModel::Refresh(const QModelIndex& index) {
  Node& node = *NodeOf(index);
  if (node.parent != root_.get() && !files_.FolderExists(PathOf(node))) {
    Remove(*node.parent, node.row, 1);
    return;
  }
  if (!node.is_read) return;
  if (node.is_fresh) {
    node.is_fresh = false;
    return;
  }
  Update(node, List(node));
}

bool FolderTreeModel::Peek(const QModelIndex& index) {
  Node& node = *NodeOf(index);
  if (node.is_read) return false;
  Read(node);
  return true;
}

FolderTreeModel::Node* FolderTreeModel::Child(Node& node, const std::string& name) {
  Read(node);
  Node* alike = nullptr;
  for (const auto& child : node.children) {
    if (child->name == name) return child.get();
    if (alike == nullptr && EqualIgnoringCase(child->name, name)) alike = child.get();
  }
  if (alike != nullptr) return alike;
  if (!files_.FolderExists(WithBackslash(PathOf(node)) + name)) return nullptr;
  const auto place = std::find_if(node.children.begin(), node.children.end(),
                                  [&](const auto& c) { return ToLower(c->name) > ToLower(name); });
  const auto at = static_cast<std::size_t>(place - node.children.begin());
  Insert(node, at, {name});
  return node.children[at].get();
}

QModelIndex FolderTreeModel::Find(const Path& folder) {
  if (folder.empty()) return {};
  Node* node = root_->children[0].get();
  for (const std::string& name : NamesOf(folder)) {
    node = Child(*node, name);
    if (node == nullptr) return {};
  }
  return IndexOf(*node);
}

QModelIndex FolderTreeModel::index(int row, int column, const QModelIndex& parent) const {
  const Node& node = *NodeOf(parent);
  if (column != 0 || row < 0 || static_cast<std::size_t>(row) >= node.children.size()) return {};
  return createIndex(row, 0, node.children[static_cast<std::size_t>(row)].get());
}

QModelIndex FolderTreeModel::parent(const QModelIndex& index) const {
  return index.isValid() ? IndexOf(*NodeOf(index)->parent) : QModelIndex();
}

int FolderTreeModel::rowCount(const QModelIndex& parent) const {
  return static_cast<int>(NodeOf(parent)->children.size());
}

int FolderTreeModel::columnCount(const QModelIndex&) const {
  return 1;
}

bool FolderTreeModel::hasChildren(const QModelIndex& parent) const {
  const Node& node = *NodeOf(parent);
  return !node.is_read || !node.children.empty();
}

bool FolderTreeModel::canFetchMore(const QModelIndex& parent) const {
  return !NodeOf(parent)->is_read;
}

void FolderTreeModel::fetchMore(const QModelIndex& parent) {
  Node& node = *NodeOf(parent);
  node.is_fresh = true;
  Read(node);
}

QVariant FolderTreeModel::data(const QModelIndex& index, int role) const {
  const Node& node = *NodeOf(index);
  const bool is_drive = node.parent == root_.get();
  switch (role) {
    case Qt::DisplayRole:
      return is_drive ? QString::fromLatin1(kDriveLabel) : ToShown(node.name);
    case Qt::DecorationRole:
      return is_drive ? computer_icon_ : folder_icon_;
    default:
      return {};
  }
}

}  // namespace tarnvale
