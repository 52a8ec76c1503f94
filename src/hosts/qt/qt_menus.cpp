#include "hosts/qt/qt_menus.h"

#include "hosts/qt/qt_text.h"
#include "ui/caption_text.h"

namespace tarnvale {
namespace {

void FollowItem(QAction& action, MenuItem& item, std::vector<Subscription>& follows) {
  action.setText(ToQt(item.Caption.Get()));
  action.setEnabled(item.Enabled);
  follows.push_back(item.Caption.Changed.Subscribe(
      [&action, &item] { action.setText(ToQt(item.Caption.Get())); }));
  follows.push_back(
      item.Enabled.Changed.Subscribe([&action, &item] { action.setEnabled(item.Enabled); }));
}

void AddRow(QMenu& menu, MenuItem& row, const MenuChoice& choice,
            std::vector<Subscription>& follows) {
  if (row.IsSeparator()) {
    menu.addSeparator();
    return;
  }
  if (!row.Rows().empty()) {
    QMenu* below = menu.addMenu(QString());
    FillMenu(*below, row, choice, follows);
    FollowItem(*below->menuAction(), row, follows);
    return;
  }
  QAction* action = menu.addAction(QString());
  QObject::connect(action, &QAction::triggered, action, [choice, &row] { choice(row); });
  FollowItem(*action, row, follows);
  const auto follow_default = [&menu, &row, action] {
    if (row.IsDefault) {
      menu.setDefaultAction(action);
    } else if (menu.defaultAction() == action) {
      menu.setDefaultAction(nullptr);
    }
  };
  follow_default();
  follows.push_back(row.IsDefault.Changed.Subscribe(follow_default));
}

}  // namespace

void FillMenu(QMenu& menu, MenuItem& item, const MenuChoice& choice,
              std::vector<Subscription>& follows) {
  menu.setAccessibleName(ToQt(ShownCaption(item.Caption)));
  for (MenuItem* row : item.Rows()) AddRow(menu, *row, choice, follows);
}

void FillMenuBar(QMenuBar& bar, const std::vector<MenuItem*>& items, const MenuChoice& choice,
                 std::vector<Subscription>& follows) {
  for (MenuItem* item : items) {
    QMenu* menu = bar.addMenu(QString());
    FillMenu(*menu, *item, choice, follows);
    // "Shown in bold where the menu pops up": a menu bar's menu drops down.
    menu->setDefaultAction(nullptr);
    FollowItem(*menu->menuAction(), *item, follows);
  }
}

}  // namespace tarnvale
