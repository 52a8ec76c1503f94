// Menus of records as Qt's.
#pragma once

#include <QMenu>
#include <QMenuBar>

#include <functional>
#include <vector>

#include "base/signal.h"
#include "ui/menu.h"

namespace tarnvale {

/// Called with the row that the user chose.
using MenuChoice = std::function<void(MenuItem& row)>;

/// Fills a menu with the rows of an item, and those that open from them. Captions
/// and states follow the records as long as `follows` lives.
void FillMenu(QMenu& menu, MenuItem& item, const MenuChoice& choice,
              std::vector<Subscription>& follows);

/// A menu bar with one menu for each item.
void FillMenuBar(QMenuBar& bar, const std::vector<MenuItem*>& items, const MenuChoice& choice,
                 std::vector<Subscription>& follows);

}  // namespace tarnvale
