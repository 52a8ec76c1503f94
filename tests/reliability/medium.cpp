#include "tests/reliability/medium.h"

#include <fcntl.h>
#include <linux/loop.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "hosts/linux/descriptor.h"

namespace tarnvale::reliability {
namespace {

namespace fs = std::filesystem;

constexpr std::uintmax_t kBytes = 32 << 20;
constexpr unsigned long kShutDown = _IOR('X', 125, std::uint32_t);
constexpr int kAttempts = 20;  // others take loop devices, too

void Require(bool done, const std::string& what) {
  if (!done) throw NoMedium(what + ": " + std::strerror(errno));
}

void RunTool(const std::string& command) {
  if (std::system(command.c_str()) != 0) throw NoMedium("this fails: " + command);
}

std::string Quoted(const fs::path& path) {
  return "'" + path.string() + "'";
}

// It goes when nobody has it open any more, and with it what the system keeps of a medium in
// memory: kept, that would be taken for what is on it.
Descriptor OpenLoopDevice(const fs::path& image, std::string& name) {
  const Descriptor control(::open("/dev/loop-control", O_RDWR | O_CLOEXEC));
  const Descriptor file(::open(image.c_str(), O_RDWR | O_CLOEXEC));
  Require(control && file, "no loop device");
  loop_config config{};
  config.fd = static_cast<std::uint32_t>(file.Get());
  config.info.lo_flags = LO_FLAGS_AUTOCLEAR;
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    const int number = ::ioctl(control.Get(), LOOP_CTL_GET_FREE);
    name = "/dev/loop" + std::to_string(number);
    Descriptor device(::open(name.c_str(), O_RDWR | O_CLOEXEC));
    if (device && ::ioctl(device.Get(), LOOP_CONFIGURE, &config) == 0) return device;
  }
  Require(false, "no loop device");
  return {};
}

}  // namespace

Medium::Medium() : root_(work_.Path() / "medium") {
  Require(::unshare(CLONE_NEWNS) == 0, "no mounts of its own");
  Require(::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0, "no mounts of its own");
  WriteFile(Image(), {});
  fs::resize_file(Image(), kBytes);
  RunTool("PATH=$PATH:/sbin mkfs.ext4 -q -F " + Quoted(Image()));
  fs::create_directory(root_);
}

Medium::~Medium() {
  for (auto place = mounted_.rbegin(); place != mounted_.rend(); ++place) {
    ::umount2(place->c_str(), MNT_DETACH);
  }
}

void Medium::Take(const fs::path& drive, const std::vector<std::string>& folders) {
  folders_.clear();
  PutBack();
  for (const auto& entry : fs::directory_iterator(root_)) fs::remove_all(entry);
  for (const std::string& folder : folders) {
    RunTool("cp -a " + Quoted(drive / folder) + " " + Quoted(root_));
    fs::remove_all(drive / folder);
    fs::create_directory(drive / folder);
  }
  TakeOut();
  drive_ = drive;
  folders_ = folders;
  PutBack();
}

void Medium::GoAway(Loss loss) {
  const Descriptor root(::open(root_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  Require(root && ::ioctl(root.Get(), kShutDown, &loss) == 0, "no medium that goes away");
}

void Medium::TakeOut() {
  for (; !mounted_.empty(); mounted_.pop_back()) {
    Require(::umount(mounted_.back().c_str()) == 0, "the medium is in use");
  }
}

void Medium::PutBack() {
  constexpr unsigned long kFlags = MS_NOSUID | MS_NODEV;
  std::string device;
  const Descriptor until_mounted = OpenLoopDevice(Image(), device);
  Require(::mount(device.c_str(), root_.c_str(), "ext4", kFlags, nullptr) == 0, "no mount of ext4");
  mounted_.push_back(root_);
  for (const std::string& folder : folders_) {
    const fs::path place = drive_ / folder;
    Require(::mount((root_ / folder).c_str(), place.c_str(), nullptr, MS_BIND, nullptr) == 0,
            "no place for the medium");
    mounted_.push_back(place);
  }
}

}  // namespace tarnvale::reliability
