// One upload on the program's event loop, as its FTP window does it;
// ftp_upload.sh compares it with its peer.
//
//   ftp_upload HOST[:PORT] USER PASSWORD FILE REMOTE
//
// Prints wall seconds, processor seconds, and the longest time in milliseconds
// for which a timer of the program had to wait.
#include <sys/resource.h>

#include <QCoreApplication>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <string>

#include "bench/pulse.h"
#include "hosts/curl/curl_ftp_transport.h"
#include "hosts/linux/linux_host.h"
#include "hosts/qt/qt_event_loop.h"

namespace {

using Clock = std::chrono::steady_clock;

double Seconds(Clock::duration time) {
  return std::chrono::duration<double>(time).count();
}

double ProcessorSeconds() {
  rusage used{};
  ::getrusage(RUSAGE_SELF, &used);
  const auto seconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
  };
  return seconds(used.ru_utime) + seconds(used.ru_stime);
}

int Upload(char** argv) {
  tarnvale::LinuxSurroundings surroundings;
  surroundings.state_folder =
      (std::filesystem::temp_directory_path() / "tarnvale-bench-state").string();
  tarnvale::LinuxHost host(surroundings);
  tarnvale::QtEventLoop loop;
  tarnvale::CurlFtpTransport transport(loop, host.transfer_files);
  std::int32_t error = 0;
  transport.StateChanged.Listen([&](tarnvale::TransportState state) {
    if (state == tarnvale::TransportState::kError) error = transport.ResponseCode();
  });
  transport.SetRemoteHost(argv[1]);
  transport.SetUserName(argv[2]);
  transport.SetPassword(argv[3]);
  transport.SetRequestTimeout(40);
  const auto local =
      tarnvale::DrivePaths("/").FromNative(std::filesystem::absolute(argv[4]).string());

  const tarnvale::Pulse pulse(loop.Timers());
  const auto start = Clock::now();
  const double processor_before = ProcessorSeconds();
  transport.Execute("PUT \"" + local + "\" \"" + argv[5] + "\"");
  while (transport.IsBusy()) loop.WaitPass();
  std::printf("%.4f %.4f %.1f\n", Seconds(Clock::now() - start),
              ProcessorSeconds() - processor_before, pulse.WorstMs());
  if (error != 0) std::fprintf(stderr, "ftp_upload: error %d\n", error);
  return error == 0 ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  if (argc != 6) {
    std::fprintf(stderr, "usage: ftp_upload HOST[:PORT] USER PASSWORD FILE REMOTE\n");
    return 2;
  }
  return Upload(argv);
}
