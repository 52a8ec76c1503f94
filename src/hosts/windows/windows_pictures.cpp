#include "hosts/windows/windows_pictures.h"

#include "hosts/windows/system_headers.h"

// Its headers name these without a name space.
#include <algorithm>
namespace Gdiplus {
using std::max;
using std::min;
}  // namespace Gdiplus
#include <objidl.h>

#include <gdiplus.h>

#include <map>
#include <memory>
#include <tuple>

#include "hosts/windows/wide.h"

namespace tarnvale {
namespace {

/// The library is there as long as the program is.
void StartLibrary() {
  static const bool kStarted = [] {
    ULONG_PTR token = 0;
    const Gdiplus::GdiplusStartupInput input;
    return Gdiplus::GdiplusStartup(&token, &input, nullptr) == Gdiplus::Ok;
  }();
  static_cast<void>(kStarted);
}

/// The file of a resource; null when there is none.
std::unique_ptr<Gdiplus::Bitmap> Load(const std::string& name, int scale) {
  const std::wstring resource = Wide(name + "_" + std::to_string(scale));
  HMODULE program = ::GetModuleHandleW(nullptr);
  HRSRC const found = ::FindResourceW(program, resource.c_str(), RT_RCDATA);
  if (found == nullptr) return nullptr;
  const DWORD size = ::SizeofResource(program, found);
  HGLOBAL const memory = ::GlobalAlloc(GMEM_MOVEABLE, size);
  if (memory == nullptr) return nullptr;
  const auto* bytes = static_cast<const char*>(::LockResource(::LoadResource(program, found)));
  std::copy_n(bytes, size, static_cast<char*>(::GlobalLock(memory)));
  ::GlobalUnlock(memory);
  IStream* stream = nullptr;
  if (::CreateStreamOnHGlobal(memory, TRUE, &stream) != S_OK) return nullptr;
  auto bitmap = std::make_unique<Gdiplus::Bitmap>(stream);
  stream->Release();
  if (bitmap->GetLastStatus() != Gdiplus::Ok) return nullptr;
  return bitmap;
}

/// The smallest one that isn't smaller than it is wanted, or the largest.
std::unique_ptr<Gdiplus::Bitmap> LoadFor(const std::string& name, int width) {
  std::unique_ptr<Gdiplus::Bitmap> best;
  for (int scale = 1; scale <= 3; ++scale) {
    if (auto next = Load(name, scale)) best = std::move(next);
    if (best && static_cast<int>(best->GetWidth()) >= width) break;
  }
  return best;
}

// Blue is in the system's low byte, red in ours.
std::uint32_t Turned(std::uint32_t pixel) {
  return (pixel & 0xFF00FF00U) | (pixel & 0xFFU) << 16U | (pixel >> 16U & 0xFFU);
}

Raster Render(Gdiplus::Bitmap& source, int width, int height) {
  const int source_width = static_cast<int>(source.GetWidth());
  const int source_height = static_cast<int>(source.GetHeight());
  if (source_width * height > source_height * width) {
    height = source_height * width / source_width;
  } else {
    width = source_width * height / source_height;
  }
  Raster raster{.width = width, .height = height, .pixels = {}};
  raster.pixels.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
  Gdiplus::Bitmap target(width, height, width * 4, PixelFormat32bppARGB,
                         reinterpret_cast<BYTE*>(raster.pixels.data()));
  {
    Gdiplus::Graphics graphics(&target);
    graphics.SetInterpolationMode(width == source_width
                                      ? Gdiplus::InterpolationModeNearestNeighbor
                                      : Gdiplus::InterpolationModeHighQualityBicubic);
    graphics.SetPixelOffsetMode(Gdiplus::PixelOffsetModeHalf);
    graphics.DrawImage(&source, Gdiplus::Rect(0, 0, width, height), 0, 0, source_width,
                       source_height, Gdiplus::UnitPixel);
  }
  std::transform(raster.pixels.begin(), raster.pixels.end(), raster.pixels.begin(), &Turned);
  return raster;
}

}  // namespace

const Raster& PictureNamed(const std::string& name, int width, int height) {
  static std::map<std::tuple<std::string, int, int>, Raster> rendered;
  const std::tuple key{name, width, height};
  const auto known = rendered.find(key);
  if (known != rendered.end()) return known->second;
  Raster& made = rendered[key];
  if (name.empty() || width <= 0 || height <= 0) return made;
  StartLibrary();
  if (const auto source = LoadFor(name, width)) made = Render(*source, width, height);
  return made;
}

HCURSOR PointerOf(const Raster& picture) {
  if (picture.Empty()) return nullptr;
  BITMAPV5HEADER format{};
  format.bV5Size = sizeof format;
  format.bV5Width = picture.width;
  format.bV5Height = -picture.height;  // from the top
  format.bV5Planes = 1;
  format.bV5BitCount = 32;
  format.bV5Compression = BI_BITFIELDS;
  format.bV5RedMask = 0x00FF0000;
  format.bV5GreenMask = 0x0000FF00;
  format.bV5BlueMask = 0x000000FF;
  format.bV5AlphaMask = 0xFF000000;
  HDC const screen = ::GetDC(nullptr);
  void* pixels = nullptr;
  HBITMAP const colors = ::CreateDIBSection(screen, reinterpret_cast<const BITMAPINFO*>(&format),
                                            DIB_RGB_COLORS, &pixels, nullptr, 0);
  ::ReleaseDC(nullptr, screen);
  if (colors == nullptr) return nullptr;
  std::transform(picture.pixels.begin(), picture.pixels.end(), static_cast<std::uint32_t*>(pixels),
                 &Turned);
  // The mask has no say where the colours have their own strength.
  HBITMAP const mask = ::CreateBitmap(picture.width, picture.height, 1, 1, nullptr);
  ICONINFO about{.fIcon = FALSE,
                 .xHotspot = static_cast<DWORD>(picture.width / 2),
                 .yHotspot = static_cast<DWORD>(picture.height / 2),
                 .hbmMask = mask,
                 .hbmColor = colors};
  HCURSOR const pointer = ::CreateIconIndirect(&about);
  ::DeleteObject(colors);
  ::DeleteObject(mask);
  return pointer;
}

HICON IconNamed(const std::string& name, int width_metric, int height_metric) {
  return static_cast<HICON>(::LoadImageW(::GetModuleHandleW(nullptr), Wide(name).c_str(),
                                         IMAGE_ICON, ::GetSystemMetrics(width_metric),
                                         ::GetSystemMetrics(height_metric), 0));
}

}  // namespace tarnvale
