#include "hosts/windows/windows_tray.h"

#include <shellapi.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

#include "hosts/windows/shown_text.h"
#include "ui/controls.h"
#include "ui/geometry.h"

namespace tarnvale {
namespace {

constexpr UINT kMouseMessage = MessageWindow::kFirstMessage;
constexpr UINT_PTR kLook = 1;
/// How often the host looks whether the desktop has a notification area.
constexpr UINT kLookIntervalMs = 2000;

bool HasArea() {
  return ::FindWindowW(L"Shell_TrayWnd", nullptr) != nullptr;
}

// As much of it as fits, no half of a surrogate pair, and a NUL.
void FillTip(WCHAR (&field)[128], const std::string& tip) {
  std::wstring text = ToShown(tip.substr(0, tip.find('\0')));
  if (text.size() >= std::size(field)) {
    text.resize(std::size(field) - 1);
    if (IS_HIGH_SURROGATE(text.back())) text.pop_back();
  }
  std::copy(text.begin(), text.end(), std::begin(field));
}

}  // namespace

WindowsTray::WindowsTray(EventLoop& loop, IconSource icon)
    : loop_(loop), icon_(std::move(icon)), area_made_(::RegisterWindowMessageW(L"TaskbarCreated")) {
  IsPresent = HasArea();
  ::SetTimer(messages_.Get(), kLook, kLookIntervalMs, nullptr);
}

WindowsTray::~WindowsTray() {
  if (shown_) Send(NIM_DELETE);
}

bool WindowsTray::Notify(TrayCommand command, const TrayRecord& record) {
  const bool adds = command == TrayCommand::kAdd;
  if (adds == shown_.has_value()) return false;
  if (command == TrayCommand::kDelete) {
    Send(NIM_DELETE);
    shown_.reset();
    return true;
  }
  // What is changed while there is no shell comes back with the icon.
  shown_ = record;
  const bool done = adds ? Add() : Send(NIM_MODIFY);
  if (adds && !done) shown_.reset();
  return done;
}

// A shell that is busy, as when a session begins, lets the caller wait in vain and adds it
// all the same.
bool WindowsTray::Add() const {
  return Send(NIM_ADD) || Send(NIM_MODIFY);
}

bool WindowsTray::Send(DWORD command) const {
  NOTIFYICONDATAW data{};
  data.cbSize = NOTIFYICONDATAW_V2_SIZE;
  data.hWnd = messages_.Get();
  data.uID = shown_->id;
  data.uFlags = NIF_MESSAGE | NIF_ICON | NIF_TIP;
  data.uCallbackMessage = kMouseMessage;
  if (command != NIM_DELETE) data.hIcon = icon_(shown_->icon);
  FillTip(data.szTip, shown_->tip);
  return ::Shell_NotifyIconW(command, &data) != 0;
}

std::optional<LRESULT> WindowsTray::OnMessage(UINT message, LPARAM second) {
  if (message != kMouseMessage && message != area_made_ && message != WM_TIMER) return std::nullopt;
  loop_.Deliver([&] {
    if (message == kMouseMessage) {
      ReportMouse(static_cast<UINT>(second));
    } else if (message == area_made_) {
      Return();
    } else {
      LookForArea();
    }
  });
  return 0;
}

void WindowsTray::ReportMouse(UINT message) {
  const bool is_button = message >= kTrayLeftDown && message <= kTrayRightDouble;
  if (!is_button || !shown_ || shown_->hook == nullptr) return;
  shown_->hook->MouseMove.Emit(static_cast<double>(message) * kTwipsPerPixel, 0);
}

void WindowsTray::Return() {
  if (shown_) Add();
  was_missed_ = false;
  IsPresent = true;
}

// A shell that is started anew comes back within a look: nobody need know that it was gone.
void WindowsTray::LookForArea() {
  const bool is_there = HasArea();
  if (is_there || was_missed_) IsPresent = is_there;
  was_missed_ = !is_there;
}

}  // namespace tarnvale
