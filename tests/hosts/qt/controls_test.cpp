#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QCursor>
#include <QHelpEvent>
#include <QLabel>
#include <QListView>
#include <QRadioButton>
#include <QToolTip>

#include "tests/hosts/qt/qt_fixture.h"

namespace tarnvale {
namespace {

class QtControls : public QtFixture {};

/// The first column behind the mark of a control in which its caption has ink.
int CaptionsEdge(QWidget& widget) {
  const QImage picture = widget.grab().toImage();
  const int scale = static_cast<int>(picture.devicePixelRatio());
  for (int x = 15 * scale; x < picture.width(); ++x) {
    for (int y = 0; y < picture.height(); ++y) {
      if (qGray(picture.pixel(x, y)) < 110) return x;
    }
  }
  return -1;
}

TEST_F(QtControls, TheCaptionsOfTicksAndOptionsBeginAtOneEdge) {
  TextBox focused;
  OptionButton option;
  CheckButton check;
  option.Caption = "Every Day";
  check.Caption = "Every Sunday";
  Place(focused);  // and no frame of the focus around a caption
  Place(option);
  Place(check);
  Show();
  EXPECT_GT(CaptionsEdge(WidgetOf(option)), 0);
  EXPECT_EQ(CaptionsEdge(WidgetOf(option)), CaptionsEdge(WidgetOf(check)));
}

TEST_F(QtControls, AnAccessKeyTogglesItsCheckButton) {
  TextBox box;
  CheckButton check;
  check.Caption = "Show &Hidden";
  Place(box);
  Place(check);
  Show();
  QTest::keyClick(&Native(), Qt::Key_H, Qt::AltModifier);
  EXPECT_TRUE(WaitFor([&] { return check.Value.Get(); }));
}

TEST_F(QtControls, AComboBoxFollowsBothWays) {
  ComboBox combo;
  combo.Rows.Assign({"one", "two", "three"});
  combo.Text = std::string("two");
  Place(combo);
  Show();
  auto& widget = WidgetOf<QComboBox>(combo);
  EXPECT_EQ(widget.currentText(), "two");
  combo.Text = std::string("no row");
  EXPECT_EQ(widget.currentText(), "no row");
  widget.setCurrentIndex(2);
  EXPECT_EQ(combo.Text.Get(), "three");
}

TEST_F(QtControls, RowsThatComeAndGoLeaveAComboBoxItsText) {
  ComboBox combo;
  combo.Editable = false;
  combo.Text = std::string("two");
  Place(combo);
  Show();
  combo.Rows.Append("one");
  combo.Rows.Append("two");
  combo.Rows.RemoveAt(0);
  EXPECT_EQ(combo.Text.Get(), "two");
  EXPECT_EQ(WidgetOf<QComboBox>(combo).currentText(), "two");
}

TEST_F(QtControls, ALinkIsOneForThePointerAndForReaders) {
  Label link{TextRole::kLink};
  Place(link);
  Show();
  EXPECT_EQ(WidgetOf(link).cursor().shape(), Qt::PointingHandCursor);
  EXPECT_EQ(Accessible(link)->role(), QAccessible::Link);
}

TEST_F(QtControls, NamesAreShownAsPlainTextWithoutControls) {
  const std::string name = "<b>a</b>\xE2\x80\xAEtxt.exe";
  Label fact{TextRole::kValue};
  fact.Caption = name;
  ListBox list;
  list.Rows.Append(name);
  fact.ToolTip = name;
  Place(fact);
  Place(list);
  window.Caption = name;
  Show();
  const QString shown = "<b>a</b>?txt.exe";
  EXPECT_EQ(NameOf(fact), FromQt(shown));
  EXPECT_EQ(WidgetOf<QAbstractItemView>(list).model()->index(0, 0).data().toString(), shown);
  EXPECT_EQ(Native().windowTitle(), shown);
  QHelpEvent help(QEvent::ToolTip, {5, 5}, WidgetOf(fact).mapToGlobal(QPoint(5, 5)));
  QApplication::sendEvent(&WidgetOf(fact), &help);
  const QLabel* tip = nullptr;
  for (QWidget* widget : QApplication::topLevelWidgets()) {
    if (widget->inherits("QTipLabel")) tip = qobject_cast<QLabel*>(widget);
  }
  ASSERT_NE(tip, nullptr);
  EXPECT_EQ(tip->text(), shown);
  EXPECT_EQ(tip->textFormat(), Qt::PlainText);
  QToolTip::hideText();
}

TEST_F(QtControls, TheCaptionOfALabelComesToTheScreenWithItsName) {
  Label label;
  label.Caption = std::string("before");
  Place(label);
  Show();
  EXPECT_EQ(NameOf(label), "before");
  label.Caption = std::string("after");
  EXPECT_TRUE(WaitFor([&] { return NameOf(label) == "after"; }));
}

TEST_F(QtControls, AFieldIsNamedByTheLabelBeforeIt) {
  Label label;
  label.Caption = std::string("Send To: ");
  TextBox named;
  TextBox own;
  own.AccessibleName = "Server";
  Place(label);
  Place(named);
  Place(own);
  Show();
  EXPECT_EQ(NameOf(named), "Send To:");
  EXPECT_EQ(NameOf(own), "Server");
}

TEST_F(QtControls, EveryControlHasAName) {
  TextBox box;
  TextBox memo{TextKind::kMemo};
  ListBox list;
  ComboBox combo;
  FileList file_list{files};
  FolderTree tree;
  OptionButton option;
  option.Caption = "&One";
  CheckButton check;
  check.Caption = "Two && Three";
  const std::vector<Control*> controls{&box,       &memo, &list,   &combo,
                                       &file_list, &tree, &option, &check};
  for (Control* control : controls) Place(*control);
  Show();
  for (Control* control : controls) EXPECT_NE(NameOf(*control), "");
  EXPECT_EQ(NameOf(option), "One");
  EXPECT_EQ(NameOf(check), "Two & Three");
}

TEST_F(QtControls, VisibleAndEnabledAndToolTipFollowTheRecord) {
  TextBox box;
  Place(box);
  Show();
  box.Visible = false;
  EXPECT_TRUE(WidgetOf(box).isHidden());
  box.Visible = true;
  box.Enabled = false;
  EXPECT_TRUE(WidgetOf(box).isVisible());
  EXPECT_FALSE(WidgetOf(box).isEnabled());
  box.ToolTip = "Text field for file name";
  EXPECT_EQ(WidgetOf(box).toolTip(), "Text field for file name");
}

TEST_F(QtControls, AControlInAHiddenContainerIsUnseen) {
  PictureBox panel;
  Label label;
  window.Place({{&panel, nullptr, {0, 0, 100, 100}}, {&label, &panel, {10, 10, 50, 20}}});
  Show();
  EXPECT_EQ(WidgetOf(label).parentWidget(), &WidgetOf(panel));
  panel.Visible = false;
  EXPECT_FALSE(WidgetOf(label).isVisible());
  EXPECT_TRUE(label.Visible);
}

TEST_F(QtControls, APictureIsShownPixelByPixel) {
  PictureBox picture;
  picture.Picture = "cross";
  int clicks = 0;
  picture.Clicked.Listen([&] { ++clicks; });
  window.Place({{&picture, nullptr, {0, 0, 20, 20}}});
  Show();
  const QImage shown = WidgetOf(picture).grab().toImage();
  const int scale = static_cast<int>(shown.devicePixelRatio());
  const QImage rendered(QString(":/pictures/cross/%1.png").arg(scale));
  ASSERT_EQ(shown.size(), rendered.size());
  int solid = 0;
  for (int y = 0; y < shown.height(); ++y) {
    for (int x = 0; x < shown.width(); ++x) {
      if (qAlpha(rendered.pixel(x, y)) != 255) continue;
      ASSERT_EQ(shown.pixel(x, y), rendered.pixel(x, y)) << x << "," << y;
      ++solid;
    }
  }
  EXPECT_GT(solid, 300 * scale * scale);
  QTest::mouseClick(&WidgetOf(picture), Qt::LeftButton);
  EXPECT_EQ(clicks, 1);
}

}  // namespace
}  // namespace tarnvale
