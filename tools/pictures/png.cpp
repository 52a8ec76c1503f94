#include "tools/pictures/png.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <fstream>
#include <iterator>
#include <string_view>

#include "tools/pictures/deflate.h"

namespace tarnvale {
namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::array<std::uint8_t, 8> kSignature = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
// 8 bits, red green blue alpha, deflate, no filter choice of our own, no
// interlace: the last five bytes of the header.
constexpr std::array<std::uint8_t, 5> kFormat = {8, 6, 0, 0, 0};
constexpr std::size_t kPixelBytes = 4;

void PutNumber(Bytes& bytes, std::uint32_t value) {
  for (const unsigned shift : {24U, 16U, 8U, 0U}) {
    bytes.push_back(static_cast<std::uint8_t>(value >> shift));
  }
}

std::uint32_t NumberAt(const Bytes& bytes, std::size_t at) {
  std::uint32_t value = 0;
  for (std::size_t i = 0; i < 4; ++i) value = value << 8U | bytes[at + i];
  return value;
}

std::uint32_t Crc(const std::uint8_t* bytes, std::size_t size) {
  std::uint32_t crc = 0xFFFFFFFFU;
  for (std::size_t i = 0; i < size; ++i) {
    crc ^= bytes[i];
    for (int bit = 0; bit < 8; ++bit) crc = crc >> 1U ^ ((crc & 1U) != 0 ? 0xEDB88320U : 0U);
  }
  return ~crc;
}

std::uint32_t Adler(const Bytes& bytes) {
  std::uint32_t a = 1;
  std::uint32_t b = 0;
  for (const std::uint8_t byte : bytes) {
    a = (a + byte) % 65521;
    b = (b + a) % 65521;
  }
  return b << 16U | a;
}

void PutChunk(Bytes& file, std::string_view type, const Bytes& data) {
  PutNumber(file, static_cast<std::uint32_t>(data.size()));
  const std::size_t start = file.size();
  file.insert(file.end(), type.begin(), type.end());
  file.insert(file.end(), data.begin(), data.end());
  PutNumber(file, Crc(file.data() + start, file.size() - start));
}

// The data of a chunk of that type at `at`, which moves behind it.
std::optional<Bytes> TakeChunk(const Bytes& file, std::size_t& at, std::string_view type) {
  constexpr std::size_t kAround = 12;  // length, type, check sum
  if (file.size() < at + kAround) return std::nullopt;
  const std::size_t length = NumberAt(file, at);
  if (file.size() - at - kAround < length) return std::nullopt;
  const auto name = file.begin() + static_cast<std::ptrdiff_t>(at) + 4;
  if (!std::equal(type.begin(), type.end(), name)) return std::nullopt;
  const std::size_t end = at + 8 + length;
  if (NumberAt(file, end) != Crc(file.data() + at + 4, length + 4)) return std::nullopt;
  Bytes data(name + 4, name + 4 + static_cast<std::ptrdiff_t>(length));
  at = end + 4;
  return data;
}

// Rows from the top, each after the number of its filter, 0.
Bytes RowsOf(const Raster& picture) {
  Bytes rows;
  for (int y = 0; y < picture.height; ++y) {
    rows.push_back(0);
    for (int x = 0; x < picture.width; ++x) {
      const std::uint32_t pixel = picture.At(x, y);
      for (const unsigned shift : {0U, 8U, 16U, 24U}) {
        rows.push_back(static_cast<std::uint8_t>(pixel >> shift));
      }
    }
  }
  return rows;
}

std::optional<Raster> FromRows(const Bytes& rows, std::size_t width, std::size_t height) {
  const std::size_t stride = width * kPixelBytes + 1;
  if (rows.size() != stride * height) return std::nullopt;
  Raster picture{static_cast<int>(width), static_cast<int>(height), {}};
  picture.pixels.reserve(width * height);
  for (std::size_t y = 0; y < height; ++y) {
    if (rows[y * stride] != 0) return std::nullopt;
    for (std::size_t x = 0; x < width; ++x) {
      const std::uint8_t* p = rows.data() + y * stride + 1 + x * kPixelBytes;
      picture.pixels.push_back(std::uint32_t{p[0]} | std::uint32_t{p[1]} << 8U |
                               std::uint32_t{p[2]} << 16U | std::uint32_t{p[3]} << 24U);
    }
  }
  return picture;
}

}  // namespace

std::vector<std::uint8_t> EncodePng(const Raster& picture) {
  Bytes header;
  PutNumber(header, static_cast<std::uint32_t>(picture.width));
  PutNumber(header, static_cast<std::uint32_t>(picture.height));
  header.insert(header.end(), kFormat.begin(), kFormat.end());

  const Bytes rows = RowsOf(picture);
  const std::size_t stride = static_cast<std::size_t>(picture.width) * kPixelBytes + 1;
  Bytes data = {0x78, 0x01};
  const Bytes packed = DeflateFixed(rows, {kPixelBytes, stride});
  data.insert(data.end(), packed.begin(), packed.end());
  PutNumber(data, Adler(rows));

  Bytes file(kSignature.begin(), kSignature.end());
  PutChunk(file, "IHDR", header);
  PutChunk(file, "IDAT", data);
  PutChunk(file, "IEND", {});
  return file;
}

std::optional<Raster> DecodePng(const std::vector<std::uint8_t>& file) {
  constexpr std::size_t kAroundPacked = 6;  // two bytes before, the check sum behind
  std::size_t at = kSignature.size();
  if (file.size() < at || !std::equal(kSignature.begin(), kSignature.end(), file.begin())) {
    return std::nullopt;
  }
  const std::optional<Bytes> header = TakeChunk(file, at, "IHDR");
  if (!header || header->size() != 13 ||
      !std::equal(kFormat.begin(), kFormat.end(), header->begin() + 8)) {
    return std::nullopt;
  }
  const std::optional<Bytes> data = TakeChunk(file, at, "IDAT");
  if (!data || data->size() < kAroundPacked) return std::nullopt;
  const std::optional<Bytes> rows = InflateFixed(data->data() + 2, data->size() - kAroundPacked);
  if (!rows || Adler(*rows) != NumberAt(*data, data->size() - 4)) return std::nullopt;
  return FromRows(*rows, NumberAt(*header, 0), NumberAt(*header, 4));
}

bool WritePng(const std::filesystem::path& file, const Raster& picture) {
  std::error_code failed;
  std::filesystem::create_directories(file.parent_path(), failed);
  const Bytes bytes = EncodePng(picture);
  std::ofstream out(file, std::ios::binary);
  for (const std::uint8_t byte : bytes) out.put(static_cast<char>(byte));
  out.flush();
  return out.good();
}

std::optional<Raster> ReadPng(const std::filesystem::path& file) {
  std::ifstream in(file, std::ios::binary);
  if (!in) return std::nullopt;
  const Bytes bytes{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
  return DecodePng(bytes);
}

}  // namespace tarnvale
