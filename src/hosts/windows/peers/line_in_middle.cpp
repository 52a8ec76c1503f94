#include "hosts/windows/peers/line_in_middle.h"

#include <algorithm>

#include "hosts/windows/surface.h"

namespace tarnvale {

void LineInMiddle::Begin(HWND field) {
  field_ = field;
  RECT text{};
  ::SendMessageW(field_, EM_GETRECT, 0, reinterpret_cast<LPARAM>(&text));
  text_inset_ = text.top;
  ::SetWindowPos(field_, nullptr, 0, 0, 0, 0,
                 SWP_FRAMECHANGED | SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

std::optional<LRESULT> LineInMiddle::Serve(UINT message, LPARAM second,
                                           const std::function<LRESULT()>& pass_on) const {
  if (field_ == nullptr) return std::nullopt;
  switch (message) {
    case WM_NCCALCSIZE: {
      const LRESULT result = pass_on();
      // The first of what either kind of question brings.
      auto& client = *reinterpret_cast<RECT*>(second);
      const LONG middle = (client.bottom - client.top - LineHeight()) / 2;
      client.top += std::max<LONG>(middle - text_inset_, 0);
      return result;
    }
    case WM_NCPAINT: {
      const LRESULT result = pass_on();
      PaintBand();
      return result;
    }
    case WM_NCHITTEST:
      return HTCLIENT;
    case WM_ENABLE:
    case EM_SETREADONLY: {
      const LRESULT result = pass_on();
      ::RedrawWindow(field_, nullptr, nullptr, RDW_FRAME | RDW_INVALIDATE);
      return result;
    }
    default:
      return std::nullopt;
  }
}

LONG LineInMiddle::LineHeight() const {
  HDC const dc = ::GetDC(field_);
  TEXTMETRICW metrics{};
  {
    const Selected font(dc, reinterpret_cast<HGDIOBJ>(::SendMessageW(field_, WM_GETFONT, 0, 0)));
    ::GetTextMetricsW(dc, &metrics);
  }
  ::ReleaseDC(field_, dc);
  return metrics.tmHeight;
}

void LineInMiddle::PaintBand() const {
  RECT whole{};
  RECT client{};
  ::GetWindowRect(field_, &whole);
  ::GetClientRect(field_, &client);
  ::MapWindowPoints(field_, nullptr, reinterpret_cast<POINT*>(&client), 2);
  ::OffsetRect(&client, -whole.left, -whole.top);
  // The frame of the system's is as wide below as above.
  const RECT band{client.left, whole.bottom - whole.top - client.bottom, client.right, client.top};
  const bool is_static = (::GetWindowLongW(field_, GWL_STYLE) & (ES_READONLY | WS_DISABLED)) != 0;
  HDC const dc = ::GetWindowDC(field_);
  const LRESULT brush =
      ::SendMessageW(::GetParent(field_), is_static ? WM_CTLCOLORSTATIC : WM_CTLCOLOREDIT,
                     reinterpret_cast<WPARAM>(dc), reinterpret_cast<LPARAM>(field_));
  ::FillRect(dc, &band, reinterpret_cast<HBRUSH>(brush));
  ::ReleaseDC(field_, dc);
}

}  // namespace tarnvale
