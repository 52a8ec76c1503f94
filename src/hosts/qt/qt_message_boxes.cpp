#include "hosts/qt/qt_message_boxes.h"

#include <QApplication>
#include <QLayout>
#include <QMessageBox>

#include <string>

#include "hosts/qt/qt_pictures.h"
#include "hosts/qt/qt_text.h"

namespace tarnvale {
namespace {

QMessageBox::StandardButtons ButtonsOf(BoxButtons buttons) {
  switch (buttons) {
    case BoxButtons::kOk:
      return QMessageBox::Ok;
    case BoxButtons::kOkCancel:
      return QMessageBox::Ok | QMessageBox::Cancel;
    case BoxButtons::kYesNo:
      return QMessageBox::Yes | QMessageBox::No;
  }
  return QMessageBox::Ok;
}

/// The button that closing the box by other means counts as.
QMessageBox::StandardButton EscapeOf(BoxButtons buttons) {
  switch (buttons) {
    case BoxButtons::kOk:
      return QMessageBox::Ok;
    case BoxButtons::kOkCancel:
      return QMessageBox::Cancel;
    case BoxButtons::kYesNo:
      return QMessageBox::No;
  }
  return QMessageBox::Ok;
}

BoxAnswer AnswerOf(QMessageBox::StandardButton button) {
  switch (button) {
    case QMessageBox::Yes:
      return BoxAnswer::kYes;
    case QMessageBox::No:
      return BoxAnswer::kNo;
    case QMessageBox::Cancel:
      return BoxAnswer::kCancel;
    default:
      return BoxAnswer::kOk;
  }
}

std::string NameOf(BoxIcon icon) {
  switch (icon) {
    case BoxIcon::kNone:
      break;
    case BoxIcon::kInformation:
      return "information";
    case BoxIcon::kQuestion:
      return "question";
    case BoxIcon::kExclamation:
      return "exclamation";
    case BoxIcon::kStop:
      return "stop";
  }
  return {};
}

/// The plain arrow while a box is open, whatever the pointer was.
class PlainPointer {
 public:
  PlainPointer() { QGuiApplication::setOverrideCursor(Qt::ArrowCursor); }
  ~PlainPointer() { QGuiApplication::restoreOverrideCursor(); }
  PlainPointer(const PlainPointer&) = delete;
  PlainPointer& operator=(const PlainPointer&) = delete;
};

}  // namespace

BoxAnswer QtMessageBoxes::Show(const BoxRequest& request) {
  QWidget* owner = QApplication::activeWindow();
  QMessageBox box(owner);
  box.setWindowTitle(ToShown(request.title));
  box.setText(ToShown(request.text));
  box.setStandardButtons(ButtonsOf(request.buttons));
  box.setEscapeButton(EscapeOf(request.buttons));
  box.setWindowModality(Qt::ApplicationModal);
  box.setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                     Qt::WindowCloseButtonHint);
  box.layout()->setContentsMargins(18, 16, 18, 14);
  const QIcon picture = PictureNamed(NameOf(request.icon));
  box.setIconPixmap(picture.pixmap(QSize(32, 32), box.devicePixelRatioF()));
  const PlainPointer pointer;
  box.exec();
  QAbstractButton* clicked = box.clickedButton();
  if (clicked == nullptr) return AnswerOf(EscapeOf(request.buttons));
  return AnswerOf(box.standardButton(clicked));
}

}  // namespace tarnvale
