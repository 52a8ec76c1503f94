#pragma once

#include <functional>
#include <optional>

#include "hosts/windows/system_headers.h"

namespace tarnvale {

/// Puts the text of a field of one line into its middle, which the system keeps at the top:
/// what is above the middle becomes part of the field's frame, in the field's own colour.
class LineInMiddle {
 public:
  /// When the field has its font, and its messages come to Serve.
  void Begin(HWND field);
  /// The answer to a message, which `pass_on` gives to the system; none for one of no interest.
  std::optional<LRESULT> Serve(UINT message, LPARAM second,
                               const std::function<LRESULT()>& pass_on) const;

 private:
  LONG LineHeight() const;
  void PaintBand() const;

  HWND field_ = nullptr;
  LONG text_inset_ = 0;  ///< what the system itself leaves free above a line
};

}  // namespace tarnvale
