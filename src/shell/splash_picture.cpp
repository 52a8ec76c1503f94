#include "shell/splash_picture.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "shell/program_icon.h"

namespace tarnvale {
namespace {

struct Tone {
  double red;
  double green;
  double blue;
};

constexpr Tone kSkyTop{246, 249, 254};
constexpr Tone kSkyLow{206, 222, 244};
constexpr Tone kFarRange{170, 194, 230};
constexpr Tone kMiddleRange{122, 157, 208};
constexpr Tone kNearHillTop{62, 108, 172};
constexpr Tone kNearHillLow{30, 68, 128};
constexpr Tone kLakeFar{176, 201, 234};
constexpr Tone kLakeNear{74, 124, 190};
constexpr Tone kGlint{214, 228, 246};
constexpr Tone kEdge{157, 178, 216};

// Where the far shore of the lake lies, from the top.
constexpr double kShore = 184;

Tone Mix(const Tone& a, const Tone& b, double part_of_b) {
  const double t = std::clamp(part_of_b, 0.0, 1.0);
  return {a.red + (b.red - a.red) * t, a.green + (b.green - a.green) * t,
          a.blue + (b.blue - a.blue) * t};
}

// The skylines: how far from the top each begins at `x`. Sums of two waves, so
// that nothing repeats within the picture.
double FarRange(double x) {
  return 142 - 16 * std::sin(x * 0.0171 + 0.4) - 6 * std::sin(x * 0.0473 + 2.0);
}

double MiddleRange(double x) {
  // Lowest in the middle: the valley.
  const double from_middle = (x - 236) / 220;
  return 176 - 34 * from_middle * from_middle - 5 * std::sin(x * 0.0391 + 1.1) -
         2 * std::sin(x * 0.093);
}

// Both fall away towards the middle, so that the lake comes up to the front.
double LeftHill(double x) {
  return 158 + 0.0026 * x * x + 4 * std::sin(x * 0.031 + 0.7);
}

double RightHill(double x) {
  const double from_right = 440 - x;
  return 150 + 0.0034 * from_right * from_right + 4 * std::sin(from_right * 0.027 + 2.2);
}

Tone LakeAt(double x, double y) {
  const Tone water = Mix(kLakeFar, kLakeNear, (y - kShore) / (kSplashSize.height_px - kShore));
  // Long, faint lines of light that grow wider apart towards the front.
  const double depth = std::log(std::max(1.0, y - kShore + 4));
  const double lines = std::sin(depth * 19 + 0.9 * std::sin(x * 0.021));
  const double middle = 1 - std::abs(x - 228) / 150;
  return Mix(water, kGlint, std::max(0.0, lines - 0.45) * std::clamp(middle, 0.0, 1.0));
}

Tone HillAt(double skyline, double y) {
  return Mix(kNearHillTop, kNearHillLow, (y - skyline) / 90);
}

// `unit` is the size of a device pixel: edges are as soft as one of them.
Tone SceneryAt(double x, double y, double unit) {
  const auto below = [&](double skyline) { return (y - skyline) / unit + 0.5; };
  Tone tone = Mix(kSkyTop, kSkyLow, y / kShore);
  tone = Mix(tone, kFarRange, below(FarRange(x)));
  tone = Mix(tone, kMiddleRange, below(MiddleRange(x)));
  if (y > kShore - unit) tone = Mix(tone, LakeAt(x, y), below(kShore));
  const double left = LeftHill(x);
  const double right = RightHill(x);
  tone = Mix(tone, HillAt(right, y), below(right));
  return Mix(tone, HillAt(left, y), below(left));
}

std::uint32_t Opaque(const Tone& tone) {
  const auto channel = [](double value) { return static_cast<std::uint32_t>(std::lround(value)); };
  return 0xFF000000U | channel(tone.blue) << 16U | channel(tone.green) << 8U | channel(tone.red);
}

std::uint32_t& PixelOf(Raster& picture, int x, int y) {
  return picture.pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(picture.width) +
                        static_cast<std::size_t>(x)];
}

Tone ToneOf(std::uint32_t pixel) {
  return {static_cast<double>(pixel & 0xFFU), static_cast<double>(pixel >> 8U & 0xFFU),
          static_cast<double>(pixel >> 16U & 0xFFU)};
}

void LayOver(Raster& ground, const Raster& picture, int left, int top) {
  for (int y = 0; y < picture.height; ++y) {
    for (int x = 0; x < picture.width; ++x) {
      const std::uint32_t over = picture.At(x, y);
      std::uint32_t& pixel = PixelOf(ground, left + x, top + y);
      pixel = Opaque(Mix(ToneOf(pixel), ToneOf(over), (over >> 24U) / 255.0));
    }
  }
}

void DrawEdge(Raster& picture, int width) {
  for (int y = 0; y < picture.height; ++y) {
    for (int x = 0; x < picture.width; ++x) {
      const bool is_edge =
          x < width || y < width || x >= picture.width - width || y >= picture.height - width;
      if (is_edge) PixelOf(picture, x, y) = Opaque(kEdge);
    }
  }
}

}  // namespace

Raster DrawSplashPicture(int scale) {
  Raster picture{kSplashSize.width_px * scale, kSplashSize.height_px * scale, {}};
  picture.pixels.reserve(static_cast<std::size_t>(picture.width) *
                         static_cast<std::size_t>(picture.height));
  const double unit = 1.0 / scale;
  for (int y = 0; y < picture.height; ++y) {
    for (int x = 0; x < picture.width; ++x) {
      picture.pixels.push_back(Opaque(SceneryAt((x + 0.5) * unit, (y + 0.5) * unit, unit)));
    }
  }
  LayOver(picture, DrawProgramIcon(kSplashEmblemPlace.width_px * scale),
          kSplashEmblemPlace.left_px * scale, kSplashEmblemPlace.top_px * scale);
  DrawEdge(picture, scale);
  return picture;
}

}  // namespace tarnvale
