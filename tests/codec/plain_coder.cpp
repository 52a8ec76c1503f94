#include "tests/codec/plain_coder.h"

#include <cmath>
#include <map>
#include <optional>

namespace tarnvale::testing {
namespace {

struct Failed {
  long number;
  std::string source;
  std::string description;
};

constexpr long kOwnError = -2147221504;  // 0x80040000 as a signed 32-bit number

[[noreturn]] void FailSubscript() {
  throw Failed{9, "", "Subscript out of range"};
}

class Reporter {
 public:
  explicit Reporter(std::vector<int>& reported) : reported_(reported) {}
  void Report(double percent) {
    // Halves go to the even neighbour.
    double rounded = std::floor(percent);
    const double rest = percent - rounded;
    if (rest > 0.5 || (rest == 0.5 && std::fmod(rounded, 2.0) != 0)) rounded += 1;
    if (static_cast<int>(rounded) == last_) return;
    last_ = static_cast<int>(rounded);
    reported_.push_back(last_);
  }
  void Finish() {
    if (last_ != 100) Report(100);
  }

 private:
  std::vector<int>& reported_;
  int last_ = 0;
};

struct PlainNode {
  int parent = -1;
  int left = -1;
  int right = -1;
  int value = -1;
  long long weight = 0;
};

std::vector<PlainNode> PlainTree(const long long (&counts)[256]) {
  std::vector<PlainNode> nodes;
  for (int value = 0; value < 256; ++value) {
    if (counts[value] > 0) nodes.push_back({-1, -1, -1, value, counts[value]});
  }
  for (std::size_t turn = nodes.size(); turn >= 2; --turn) {
    int n1 = -1;
    int n2 = -1;
    long long w1 = 0;
    long long w2 = 0;
    for (int k = 0; k < static_cast<int>(nodes.size()); ++k) {
      if (nodes[static_cast<std::size_t>(k)].parent != -1) continue;
      const long long w = nodes[static_cast<std::size_t>(k)].weight;
      if (n1 == -1) {
        n1 = k;
        w1 = w;
      } else if (n2 == -1) {
        n2 = k;
        w2 = w;
      } else if (w < w1) {
        if (!(w < w2)) {
          n1 = k;
          w1 = w;
        } else if (w1 < w2) {
          n2 = k;
          w2 = w;
        } else {
          n1 = k;
          w1 = w;
        }
      } else if (w < w2) {
        n2 = k;
        w2 = w;
      }
    }
    const int made = static_cast<int>(nodes.size());
    nodes[static_cast<std::size_t>(n1)].parent = made;
    nodes[static_cast<std::size_t>(n2)].parent = made;
    nodes.push_back({-1, n1, n2, -1, w1 + w2});
  }
  return nodes;
}

void Walk(const std::vector<PlainNode>& nodes, int at, const std::string& code,
          std::map<int, std::string>& codes) {
  const PlainNode& node = nodes[static_cast<std::size_t>(at)];
  if (node.value > -1) {
    codes[node.value] = code;
    return;
  }
  if (node.left > -1) Walk(nodes, node.left, code + "0", codes);
  if (node.right > -1) Walk(nodes, node.right, code + "1", codes);
}

// Appends bits, the first one into bit 0.
class BitField {
 public:
  explicit BitField(Bytes& to) : to_(to) {}
  void Add(char bit) {
    if (used_ == 0) to_.push_back(0);
    if (bit == '1') to_.back() = static_cast<std::uint8_t>(to_.back() + (1 << used_));
    used_ = (used_ + 1) % 8;
  }

 private:
  Bytes& to_;
  int used_ = 0;
};

Bytes StoredForm(const Bytes& input) {
  Bytes stored{0x48, 0x45, 0x30, 0x0D};
  for (const std::uint8_t byte : input) stored.push_back(byte);
  return stored;
}

Bytes Encode(const Bytes& input, Reporter& report) {
  const double n = static_cast<double>(input.size());
  if (input.empty()) return StoredForm(input);
  long long counts[256] = {};
  for (std::size_t i = 0; i < input.size(); ++i) {
    if (i % 1000 == 0) report.Report(static_cast<double>(i) / n * 7);
    ++counts[input[i]];
  }
  const auto nodes = PlainTree(counts);
  std::map<int, std::string> codes;
  Walk(nodes, static_cast<int>(nodes.size()) - 1, "", codes);
  long long bits = 0;
  for (const auto& [value, code] : codes) {
    bits += counts[value] * static_cast<long long>(code.size());
  }
  const long long payload = (bits + 7) / 8;
  if (payload > static_cast<long long>(input.size()) || payload == 0) return StoredForm(input);
  int checksum = 0;
  for (std::size_t i = 0; i < input.size(); ++i) {
    if (i % 10000 == 0) report.Report(static_cast<double>(i) / n * 5 + 7);
    checksum ^= input[i];
  }
  Bytes stream{0x48, 0x45, 0x33, 0x0D, static_cast<std::uint8_t>(checksum)};
  for (std::size_t shift = 0; shift < 32; shift += 8) {
    stream.push_back(static_cast<std::uint8_t>(input.size() >> shift));
  }
  stream.push_back(static_cast<std::uint8_t>(codes.size()));
  stream.push_back(static_cast<std::uint8_t>(codes.size() >> 8));
  for (const auto& [value, code] : codes) {
    stream.push_back(static_cast<std::uint8_t>(value));
    stream.push_back(static_cast<std::uint8_t>(code.size()));
  }
  BitField table(stream);
  for (const auto& [value, code] : codes) {
    for (const char bit : code) table.Add(bit);
  }
  BitField field(stream);
  for (std::size_t i = 0; i < input.size(); ++i) {
    if (i % 10000 == 0) report.Report(static_cast<double>(i) / n * 88 + 5 + 7);
    for (const char bit : codes[input[i]]) field.Add(bit);
  }
  report.Finish();
  return stream;
}

// A stream whose every access is checked.
class PlainStream {
 public:
  explicit PlainStream(const Bytes& bytes) : bytes_(bytes) {}
  int At(std::size_t offset) const {
    if (offset >= bytes_.size()) FailSubscript();
    return bytes_[offset];
  }
  std::size_t Length() const { return bytes_.size(); }

 private:
  const Bytes& bytes_;
};

// Nodes as the format's own table: 512 at most.
struct PlainTable {
  std::vector<PlainNode> nodes{PlainNode{}};

  int Grow(int parent) {
    if (nodes.size() == 512) FailSubscript();
    nodes.push_back({parent, -1, -1, -1, 0});
    return static_cast<int>(nodes.size()) - 1;
  }

  void Insert(int symbol, const std::string& code) {
    int at = 0;
    for (const char bit : code) {
      const int child = bit == '1' ? nodes[static_cast<std::size_t>(at)].right
                                   : nodes[static_cast<std::size_t>(at)].left;
      int next = child;
      if (child == -1) {
        next = Grow(at);
        (bit == '1' ? nodes[static_cast<std::size_t>(at)].right
                    : nodes[static_cast<std::size_t>(at)].left) = next;
      }
      at = next;
    }
    nodes[static_cast<std::size_t>(at)].value = symbol;
  }
};

// Reads the codes behind the table; returns the payload's offset.
std::size_t ReadCodes(const PlainStream& stream, std::vector<std::string>& codes) {
  const int symbols = static_cast<std::int16_t>(stream.At(9) + 256 * stream.At(10));
  std::vector<int> lengths(256, 0);
  std::size_t at = 11;
  for (int i = 0; i < symbols; ++i) {
    const int symbol = stream.At(at++);
    const int length = stream.At(at++);
    if (length == 0) FailSubscript();
    lengths[static_cast<std::size_t>(symbol)] = length;
  }
  int current = stream.At(at++);
  int position = 0;
  for (std::size_t value = 0; value < 256; ++value) {
    for (int bit = 0; bit < lengths[value]; ++bit) {
      codes[value] += (current & (1 << position)) != 0 ? '1' : '0';
      if (++position == 8) {
        current = stream.At(at++);
        position = 0;
      }
    }
  }
  return position == 0 ? at - 1 : at;
}

Bytes DecodeBits(const PlainStream& stream, std::size_t from, const PlainTable& table,
                 std::size_t wanted, Reporter& report) {
  Bytes result;
  const double m = static_cast<double>(stream.Length());
  int at = 0;
  for (std::size_t i = from; i < stream.Length(); ++i) {
    for (int bit = 0; bit < 8; ++bit) {
      const PlainNode& node = table.nodes[static_cast<std::size_t>(at)];
      at = (stream.At(i) & (1 << bit)) != 0 ? node.right : node.left;
      if (at == -1) FailSubscript();
      const int value = table.nodes[static_cast<std::size_t>(at)].value;
      if (value > -1) {
        result.push_back(static_cast<std::uint8_t>(value));
        if (result.size() == wanted) return result;
        at = 0;
      }
    }
    if ((i + 1) % 10000 == 0) report.Report(static_cast<double>(i + 1) / m * 89);
  }
  return result;
}

Bytes Decode(const Bytes& bytes, Reporter& report) {
  const PlainStream stream(bytes);
  const int first = stream.At(0);
  const int second = stream.At(1);
  const bool marked = stream.At(3) == 0x0D && first == 0x48 && second == 0x45;
  if (marked && stream.At(2) == 0x30) {
    if (bytes.size() == 4) FailSubscript();
    return {bytes.begin() + 4, bytes.end()};
  }
  if (marked && stream.At(2) != 0x33) {
    throw Failed{kOwnError, "HuffmanDecode()",
                 "The data either was not compressed with HE3 or is corrupt (identification "
                 "string not found)"};
  }
  const int stored_checksum = stream.At(4);
  std::int64_t wanted = 0;
  for (std::size_t i = 0; i < 4; ++i) {
    wanted += static_cast<std::int64_t>(stream.At(5 + i)) << (8 * i);
  }
  if (wanted >= std::int64_t{1} << 31) wanted -= std::int64_t{1} << 32;
  if (wanted == 0) return bytes;
  if (wanted < 0) FailSubscript();
  std::vector<std::string> codes(256);
  const std::size_t payload = ReadCodes(stream, codes);
  PlainTable table;
  for (std::size_t value = 0; value < 256; ++value) {
    table.Insert(static_cast<int>(value), codes[value]);
  }
  const Bytes result = DecodeBits(stream, payload, table, static_cast<std::size_t>(wanted), report);
  int checksum = 0;
  for (std::size_t i = 0; i < result.size(); ++i) {
    if (i % 10000 == 0) {
      report.Report(static_cast<double>(i) / static_cast<double>(result.size()) * 11 + 89);
    }
    checksum ^= result[i];
  }
  if (checksum != stored_checksum) {
    throw Failed{kOwnError, "clsHuffman.Decode()",
                 "The data might be corrupted (checksum did not match expected value)"};
  }
  if (result.empty()) FailSubscript();
  report.Finish();
  return result;
}

Outcome Run(const Bytes& buffer, Bytes (*code)(const Bytes&, Reporter&)) {
  Outcome outcome{buffer, {}, 0, {}, {}};
  Reporter report(outcome.progress);
  try {
    outcome.bytes = code(buffer, report);
  } catch (const Failed& failed) {
    outcome.error = failed.number;
    outcome.source = failed.source;
    outcome.description = failed.description;
  }
  return outcome;
}

}  // namespace

Outcome EncodePlainly(const Bytes& input) {
  return Run(input, Encode);
}

Outcome DecodePlainly(const Bytes& stream) {
  return Run(stream, Decode);
}

}  // namespace tarnvale::testing
