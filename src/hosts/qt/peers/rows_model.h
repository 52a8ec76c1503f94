// Rows of a RowList for Qt's views.
#pragma once

#include <QAbstractListModel>

#include <functional>
#include <vector>

#include "base/signal.h"
#include "hosts/qt/qt_text.h"
#include "ui/row_list.h"

namespace tarnvale {

/// Follows a list row by row, so that a view needn't look at all of them again.
class RowsModel final : public QAbstractListModel {
 public:
  /// `ending` becomes true when the list may be gone.
  RowsModel(RowList& rows, const bool& ending)
      : rows_(rows), ending_(ending), count_(static_cast<int>(rows.Count())) {
    subscriptions_.push_back(rows.Appended.Subscribe([this] { Append(); }));
    subscriptions_.push_back(rows.Removed.Subscribe([this](std::size_t at) { Remove(at); }));
    subscriptions_.push_back(rows.Reset.Subscribe([this] { Reset(); }));
  }

  /// Called before and after each change of the rows.
  std::function<void()> before_change = [] {};
  std::function<void()> after_change = [] {};

  int rowCount(const QModelIndex& parent = {}) const override {
    return parent.isValid() ? 0 : count_;
  }
  QVariant data(const QModelIndex& index, int role) const override {
    if (ending_ || (role != Qt::DisplayRole && role != Qt::EditRole)) return {};
    const std::string& row = rows_.At(static_cast<std::size_t>(index.row()));
    return role == Qt::DisplayRole ? ToShown(row) : ToQt(row);
  }

 private:
  void Append() {
    before_change();
    beginInsertRows({}, count_, count_);
    ++count_;
    endInsertRows();
    after_change();
  }
  void Remove(std::size_t at) {
    before_change();
    beginRemoveRows({}, static_cast<int>(at), static_cast<int>(at));
    --count_;
    endRemoveRows();
    after_change();
  }
  void Reset() {
    before_change();
    beginResetModel();
    count_ = static_cast<int>(rows_.Count());
    endResetModel();
    after_change();
  }

  RowList& rows_;
  const bool& ending_;
  int count_;
  std::vector<Subscription> subscriptions_;
};

}  // namespace tarnvale
