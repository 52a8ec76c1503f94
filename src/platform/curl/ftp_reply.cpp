#include "platform/curl/ftp_reply.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <utility>

#include "platform/curl/host_address.h"

namespace tarnvale {
namespace {

constexpr std::size_t kCodeLength = 3;
// What is kept of a line; nothing that the client needs stands further behind.
constexpr std::size_t kKeptOfLine = 1024;

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

// The code that a line begins with; 0 when it begins with none.
int CodeOf(std::string_view line) {
  if (line.size() < kCodeLength || line[0] < '1' || line[0] > '5') return 0;
  if (!IsDigit(line[1]) || !IsDigit(line[2])) return 0;
  if (line.size() > kCodeLength && line[kCodeLength] != ' ' && line[kCodeLength] != '-') return 0;
  return (line[0] - '0') * 100 + (line[1] - '0') * 10 + (line[2] - '0');
}

bool OpensSeveralLines(std::string_view line) {
  return line.size() > kCodeLength && line[kCodeLength] == '-';
}

std::string TextOf(std::string_view line) {
  return std::string(line.substr(std::min(line.size(), kCodeLength + 1)));
}

// Six numbers with commas between, from the start of `text`.
std::optional<std::array<int, 6>> SixNumbers(std::string_view text) {
  std::array<int, 6> numbers{};
  const char* at = text.data();
  const char* end = at + text.size();
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    if (i > 0 && (at == end || *at++ != ',')) return std::nullopt;
    const auto [stop, error] = std::from_chars(at, end, numbers[i]);
    if (error != std::errc() || numbers[i] < 0 || numbers[i] > 255) return std::nullopt;
    at = stop;
  }
  return numbers;
}

}  // namespace

void FtpReplyReader::Feed(std::string_view bytes) {
  while (!bytes.empty() && !garbage_) {
    const auto end = bytes.find('\n');
    const std::string_view part = bytes.substr(0, end);
    line_began_ = true;
    line_ += part.substr(0, kKeptOfLine - line_.size());
    if (end == std::string_view::npos) return;
    EndLine();
    bytes.remove_prefix(end + 1);
  }
}

void FtpReplyReader::EndLine() {
  std::string line = std::exchange(line_, {});
  line_began_ = false;
  if (!line.empty() && line.back() == '\r') line.pop_back();
  const int code = CodeOf(line);
  if (open_code_ != 0) {
    if (code != open_code_ || OpensSeveralLines(line)) return;
    replies_.push_back({std::exchange(open_code_, 0), std::exchange(first_text_, {})});
  } else if (code == 0) {
    // An empty line between two replies does no harm.
    garbage_ = !line.empty();
  } else if (OpensSeveralLines(line)) {
    open_code_ = code;
    first_text_ = TextOf(line);
  } else {
    replies_.push_back({code, TextOf(line)});
  }
}

std::optional<FtpReply> FtpReplyReader::Next() {
  if (replies_.empty()) return std::nullopt;
  FtpReply reply = std::move(replies_.front());
  replies_.pop_front();
  return reply;
}

std::optional<int> PortOfExtendedPassive(const FtpReply& reply) {
  const std::string_view text = reply.text;
  const auto open = text.find('(');
  if (open == std::string_view::npos || text.size() < open + 5) return std::nullopt;
  // Any sign may stand between the fields; the first two fields are empty.
  const char sign = text[open + 1];
  if (text[open + 2] != sign || text[open + 3] != sign) return std::nullopt;
  int port = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data() + open + 4, end, port);
  if (error != std::errc() || stop == end || *stop != sign || !IsPort(port)) return std::nullopt;
  return port;
}

std::optional<int> PortOfPassive(const FtpReply& reply) {
  const std::string_view text = reply.text;
  // Servers write the numbers with and without brackets.
  for (std::size_t at = 0; at < text.size(); ++at) {
    const bool starts = IsDigit(text[at]) && (at == 0 || !IsDigit(text[at - 1]));
    if (!starts) continue;
    const auto numbers = SixNumbers(text.substr(at));
    if (!numbers) continue;
    const int port = (*numbers)[4] * 256 + (*numbers)[5];
    if (IsPort(port)) return port;
  }
  return std::nullopt;
}

}  // namespace tarnvale
