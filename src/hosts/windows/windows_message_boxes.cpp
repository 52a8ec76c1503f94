#include "hosts/windows/windows_message_boxes.h"

#include "hosts/windows/shown_text.h"
#include "hosts/windows/windows_window_host.h"

namespace tarnvale {
namespace {

UINT StyleOf(BoxIcon icon) {
  switch (icon) {
    case BoxIcon::kNone:
      return 0;
    case BoxIcon::kInformation:
      return MB_ICONINFORMATION;
    case BoxIcon::kQuestion:
      return MB_ICONQUESTION;
    case BoxIcon::kExclamation:
      return MB_ICONEXCLAMATION;
    case BoxIcon::kStop:
      return MB_ICONSTOP;
  }
  return 0;
}

UINT StyleOf(BoxButtons buttons) {
  switch (buttons) {
    case BoxButtons::kOk:
      return MB_OK;
    case BoxButtons::kOkCancel:
      return MB_OKCANCEL;
    case BoxButtons::kYesNo:
      return MB_YESNO;
  }
  return MB_OK;
}

// A box that the system ends gives any number, that of OK where there is no such button too.
BoxAnswer AnswerOf(int button, BoxButtons buttons) {
  switch (buttons) {
    case BoxButtons::kOk:
      return BoxAnswer::kOk;
    case BoxButtons::kOkCancel:
      return button == IDOK ? BoxAnswer::kOk : BoxAnswer::kCancel;
    case BoxButtons::kYesNo:
      return button == IDYES ? BoxAnswer::kYes : BoxAnswer::kNo;
  }
  return BoxAnswer::kOk;
}

// The message of the program's end stays until the outermost loop takes it.
bool IsProgramEnding() {
  MSG message;
  return ::PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_NOREMOVE) != 0;
}

}  // namespace

BoxAnswer WindowsMessageBoxes::Show(const BoxRequest& request) {
  const BoxAnswer no_answer = AnswerOf(0, request.buttons);
  if (IsProgramEnding()) return no_answer;
  const HWND owner = windows_.OwnerFor(nullptr);
  const WindowsWindowHost::Modal modal(windows_, owner);
  ::SetCursor(::LoadCursorW(nullptr, IDC_ARROW));
  const int button =
      ::MessageBoxW(owner, ToShown(request.text).c_str(), ToShown(request.title).c_str(),
                    StyleOf(request.icon) | StyleOf(request.buttons));
  return IsProgramEnding() ? no_answer : AnswerOf(button, request.buttons);
}

}  // namespace tarnvale
