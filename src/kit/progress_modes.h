// The drawing functions behind DrawProgress.
#pragma once

#include "kit/progress_drawing.h"

namespace tarnvale {

struct ProgressDrawing {
  const ProgressLook& look;
  Canvas& canvas;
  Color color;  ///< the look's, translated
  int w;
  int h;

  /// `percent` / `whole` of `length`, rounded half to even; 0 to `length`.
  int Share(int length, double whole) const;
};

/// The frame of modes 0 to 2 and 9: lines, then rounded corners pixel by pixel.
void DrawRoundedFrame(ProgressDrawing& d);

void DrawChunks(ProgressDrawing& d);          // 0
void DrawUnbrokenChunks(ProgressDrawing& d);  // 1, 2
void DrawPlain(ProgressDrawing& d);           // 3
void DrawEtchedFade(ProgressDrawing& d);      // 4
void DrawTube(ProgressDrawing& d);            // 5
void DrawDark(ProgressDrawing& d);            // 6
void DrawHatched(ProgressDrawing& d);         // 7
void DrawPatterned(ProgressDrawing& d);       // 8
void DrawPolished(ProgressDrawing& d);        // 9

}  // namespace tarnvale
