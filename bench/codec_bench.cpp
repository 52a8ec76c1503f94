// The codec against zlib and memcpy, on four kinds of data.
//
//   codec_bench [MIB] [ROUNDS]
//
// Prints medians in MB/s (10^6 bytes of processor time) and ratios; ends with 1 when a goal isn't
// met. All contestants run on warm buffers, one after the other in every round.
// Then, in a process of its own each, the memory that coding a file takes.

#include <sys/resource.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>
#include <zlib.h>

#include <algorithm>
#include <bit>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "codec/decoding.h"
#include "codec/encoding.h"
#include "codec/huffman.h"
#include "hosts/linux/linux_host.h"
#include "hosts/linux/linux_workers.h"

namespace tarnvale {
namespace {

using Bytes = std::vector<std::uint8_t>;

// Words of different frequencies, as prose has them.
Bytes MakeText(std::size_t size) {
  std::mt19937 random(1);
  const std::string letters = "etaoinshrdlcumwfgypbvkjxqz";
  std::vector<std::string> words;
  for (int i = 0; i < 4000; ++i) {
    std::string word;
    const std::size_t length = 1 + random() % 4 + random() % 5;
    while (word.size() < length) {
      word += letters[std::min(random() % letters.size(), random() % letters.size())];
    }
    words.push_back(word);
  }
  Bytes text;
  text.reserve(size + 64);
  while (text.size() < size) {
    std::string word = words[std::min({random() % 4000, random() % 4000, random() % 4000})];
    if (random() % 12 == 0) word[0] = static_cast<char>(word[0] - 'a' + 'A');
    text.insert(text.end(), word.begin(), word.end());
    const auto turn = random() % 64;
    if (turn == 0) text.push_back(static_cast<std::uint8_t>('0' + random() % 10));
    if (turn < 5) text.push_back(turn < 3 ? ',' : '.');
    text.push_back(turn == 6 ? '\n' : ' ');
  }
  text.resize(size);
  return text;
}

// The programs of this machine, one after the other.
Bytes ReadExecutables(std::size_t size) {
  std::vector<std::filesystem::path> programs;
  for (const auto& entry : std::filesystem::directory_iterator("/usr/bin")) {
    if (entry.is_regular_file() && !entry.is_symlink()) programs.push_back(entry.path());
  }
  std::sort(programs.begin(), programs.end());
  Bytes bytes;
  while (bytes.size() < size) {
    const std::size_t before = bytes.size();
    for (const auto& program : programs) {
      std::ifstream in(program, std::ios::binary);
      std::string magic(4, '\0');
      if (!in.read(magic.data(), 4) || magic !=
                                           "\x7F"
                                           "ELF")
        continue;
      in.seekg(0);
      bytes.insert(bytes.end(), std::istreambuf_iterator<char>(in), {});
      if (bytes.size() >= size) break;
    }
    if (bytes.size() == before) break;
  }
  bytes.resize(size);
  return bytes;
}

Bytes MakeSkewed(std::size_t size) {
  Bytes bytes(size);
  for (std::size_t i = 0; i < size; ++i) {
    bytes[i] = static_cast<std::uint8_t>(std::countr_zero(i + 1));
  }
  return bytes;
}

Bytes MakeRandom(std::size_t size) {
  std::mt19937_64 random(2);
  Bytes bytes(size);
  for (auto& byte : bytes) byte = static_cast<std::uint8_t>(random() >> 32U);
  return bytes;
}

// Of the processor's time, so that what else the machine does counts less.
double SecondsOf(const std::function<void()>& work) {
  const auto now = [] {
    timespec time{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
  };
  const double start = now();
  work();
  return now() - start;
}

double WallSecondsOf(const std::function<void()>& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double Median(std::vector<double> times) {
  std::sort(times.begin(), times.end());
  return times[times.size() / 2];
}

void Check(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "codec_bench: %s\n", what);
  std::exit(2);
}

// A whole zlib stream in one call, Huffman codes only.
class ZlibPeer {
 public:
  explicit ZlibPeer(std::size_t size) : packed_(compressBound(size) + 64), unpacked_(size) {}

  void Encode(const Bytes& input) {
    z_stream z{};
    Check(deflateInit2(&z, 1, Z_DEFLATED, 15, 8, Z_HUFFMAN_ONLY) == Z_OK, "deflateInit2");
    Bytes& in = const_cast<Bytes&>(input);
    z.next_in = in.data();
    z.avail_in = static_cast<uInt>(in.size());
    z.next_out = packed_.data();
    z.avail_out = static_cast<uInt>(packed_.size());
    Check(deflate(&z, Z_FINISH) == Z_STREAM_END, "deflate");
    packed_size_ = z.total_out;
    deflateEnd(&z);
  }

  void Decode() {
    z_stream z{};
    Check(inflateInit(&z) == Z_OK, "inflateInit");
    z.next_in = packed_.data();
    z.avail_in = static_cast<uInt>(packed_size_);
    z.next_out = unpacked_.data();
    z.avail_out = static_cast<uInt>(unpacked_.size());
    Check(inflate(&z, Z_FINISH) == Z_STREAM_END, "inflate");
    inflateEnd(&z);
  }

 private:
  Bytes packed_;
  Bytes unpacked_;
  std::size_t packed_size_ = 0;
};

struct Goals {
  const char* name;
  double encode_zlib;  // times zlib's speed; 0: none
  double decode_zlib;
  double encode_memcpy;  // times memcpy's
  double decode_memcpy;
};

struct Times {
  std::vector<double> copy, zlib_encode, zlib_decode, encode, decode, buffer_encode, buffer_decode;
  std::vector<double> alone_encode, alone_decode, together_encode, together_decode;
};

bool Meets(const char* what, double ratio, double goal) {
  if (goal == 0) return true;
  std::printf("    %-26s %6.2f  goal %5.2f  %s\n", what, ratio, goal,
              ratio >= goal ? "ok" : "MISSED");
  return ratio >= goal;
}

bool Race(const Goals& goals, const Bytes& input, int rounds) {
  ZlibPeer zlib(input.size());
  Bytes copy(input.size());
  ByteBuffer stream;
  ByteBuffer result;
  PercentReport silent({});
  Times t;
  LinuxHost host;
  LinuxWorkers helpers;
  NoWorkers nobody;
  clsHuffman codec(host.files, host.open_files, nobody);
  for (int round = 0; round <= rounds; ++round) {
    if (round == 1) t = {};  // the first one warmed up
    t.copy.push_back(SecondsOf([&] { std::memcpy(copy.data(), input.data(), input.size()); }));
    t.encode.push_back(SecondsOf([&] {
      PercentReport report({});
      EncodeStream(input, stream, report, nobody);
    }));
    const auto encode = [&](Workers& workers) {
      return WallSecondsOf([&] { EncodeStream(input, stream, silent, workers); });
    };
    t.alone_encode.push_back(encode(nobody));
    t.together_encode.push_back(encode(helpers));
    t.zlib_encode.push_back(SecondsOf([&] { zlib.Encode(input); }));
    t.decode.push_back(SecondsOf([&] {
      PercentReport report({});
      DecodeStream(stream.View(), result, report, nobody);
    }));
    const auto decode = [&](Workers& workers) {
      return WallSecondsOf([&] { DecodeStream(stream.View(), result, silent, workers); });
    };
    t.alone_decode.push_back(decode(nobody));
    t.together_decode.push_back(decode(helpers));
    t.zlib_decode.push_back(SecondsOf([&] { zlib.Decode(); }));
    Check(std::equal(input.begin(), input.end(), result.Data(), result.Data() + result.Size()),
          "the round trip differs");
    ByteBuffer buffer(input.size());
    std::memcpy(buffer.Data(), input.data(), input.size());
    t.buffer_encode.push_back(
        SecondsOf([&] { codec.EncodeByte(buffer, static_cast<std::int32_t>(buffer.Size())); }));
    t.buffer_decode.push_back(
        SecondsOf([&] { codec.DecodeByte(buffer, static_cast<std::int32_t>(buffer.Size())); }));
  }
  const double mega = static_cast<double>(input.size()) / 1e6;
  const auto speed = [&](const std::vector<double>& times) { return mega / Median(times); };
  std::printf(
      "%-12s to %.1f%%   memcpy %.0f   zlib %.0f / %.0f   ours %.0f / %.0f   "
      "with fresh memory %.0f / %.0f\n",
      goals.name, 100.0 * static_cast<double>(stream.Size()) / static_cast<double>(input.size()),
      speed(t.copy), speed(t.zlib_encode), speed(t.zlib_decode), speed(t.encode), speed(t.decode),
      speed(t.buffer_encode), speed(t.buffer_decode));
  const double copy_speed = speed(t.copy);
  bool all = Meets("encode / zlib", speed(t.encode) / speed(t.zlib_encode), goals.encode_zlib);
  all &= Meets("decode / zlib", speed(t.decode) / speed(t.zlib_decode), goals.decode_zlib);
  all &= Meets("encode / memcpy", speed(t.encode) / copy_speed, goals.encode_memcpy);
  all &= Meets("decode / memcpy", speed(t.decode) / copy_speed, goals.decode_memcpy);
  // What disturbs one run doesn't disturb the next one.
  const auto gain = [](const std::vector<double>& alone, const std::vector<double>& together) {
    return *std::min_element(alone.begin(), alone.end()) /
           *std::min_element(together.begin(), together.end());
  };
  if (helpers.Helpers() > 0) {
    all &= Meets("encode, all processors", gain(t.alone_encode, t.together_encode), 1.7);
    all &= Meets("decode, all processors", gain(t.alone_decode, t.together_decode), 1.7);
  }
  return all;
}

// The most memory, in bytes, that a process doing `work` had at once.
long PeakOf(const std::function<void()>& work) {
  std::fflush(nullptr);
  const pid_t child = ::fork();
  Check(child >= 0, "fork");
  if (child == 0) {
    work();
    std::fflush(nullptr);
    ::_exit(0);
  }
  int status = 0;
  rusage usage{};
  Check(::wait4(child, &status, 0, &usage) == child && status == 0, "a child failed");
  return usage.ru_maxrss * 1024;
}

LinuxSurroundings SurroundingsIn(const std::filesystem::path& folder) {
  LinuxSurroundings surroundings;
  surroundings.root = folder.string();
  surroundings.state_folder = (folder / "state").string();
  return surroundings;
}

// What coding a file takes on top of what coding a tiny one takes.
bool MeasureMemory(std::size_t size) {
  const std::filesystem::path folder =
      std::filesystem::temp_directory_path() / ("codec_bench." + std::to_string(::getpid()));
  std::filesystem::create_directories(folder);
  const auto write = [&](const char* name, const Bytes& bytes) {
    std::ofstream out(folder / name, std::ios::binary);
    out.write(static_cast<const char*>(static_cast<const void*>(bytes.data())),
              static_cast<std::streamsize>(bytes.size()));
  };
  const auto code = [&](const std::string& name) {
    return [&folder, name] {
      LinuxHost host(SurroundingsIn(folder));
      LinuxWorkers helpers;
      clsHuffman codec(host.files, host.open_files, helpers);
      codec.EncodeFile("C:\\" + name, "C:\\" + name + ".packed");
    };
  };
  const auto decode = [&](const std::string& name) {
    return [&folder, name] {
      LinuxHost host(SurroundingsIn(folder));
      LinuxWorkers helpers;
      clsHuffman codec(host.files, host.open_files, helpers);
      codec.DecodeFile("C:\\" + name + ".packed", "C:\\" + name + ".again");
    };
  };
  {
    write("tiny", {'a', 'b'});
    write("text", MakeText(size));
    write("skewed", MakeSkewed(size));
    write("random", MakeRandom(size));
  }
  const long tiny_encode = PeakOf(code("tiny"));
  const long tiny_decode = PeakOf(decode("tiny"));
  bool all = true;
  std::printf("memory beyond input and output, in KiB (goal: 1024 at most)\n");
  for (const std::string name : {"text", "skewed", "random"}) {
    const long encode_peak = PeakOf(code(name)) - tiny_encode;
    const long decode_peak = PeakOf(decode(name)) - tiny_decode;
    const auto both = static_cast<long>(std::filesystem::file_size(folder / name) +
                                        std::filesystem::file_size(folder / (name + ".packed")));
    const long encode_extra = (encode_peak - both) / 1024;
    const long decode_extra = (decode_peak - both) / 1024;
    const bool ok = encode_extra <= 1024 && decode_extra <= 1024;
    std::printf("    %-8s EncodeFile %6ld   DecodeFile %6ld   %s\n", name.c_str(), encode_extra,
                decode_extra, ok ? "ok" : "MISSED");
    all = all && ok;
  }
  std::filesystem::remove_all(folder);
  return all;
}

int Main(int argc, char** argv) {
  const std::size_t mib = argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 64;
  const int rounds = argc > 2 ? std::atoi(argv[2]) : 5;
  const std::size_t size = mib * 1024 * 1024;
  std::printf(
      "%zu MiB each, medians of %d rounds after one to warm up, contestants in turn, one "
      "thread; MB/s encode / decode\n",
      mib, rounds);
  // First: a child begins with what its parent holds.
  bool all = MeasureMemory(size);
  all &= Race({"text", 8, 4.5, 0, 0}, MakeText(size), rounds);
  all &= Race({"executables", 6, 4.5, 0, 0}, ReadExecutables(size), rounds);
  all &= Race({"skewed", 8, 8, 0, 0}, MakeSkewed(size), rounds);
  all &= Race({"random", 6, 0, 0.07, 0.07}, MakeRandom(size), rounds);
  return all ? 0 : 1;
}

}  // namespace
}  // namespace tarnvale

int main(int argc, char** argv) {
  return tarnvale::Main(argc, argv);
}
