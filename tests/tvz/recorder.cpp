// Loaded before the system's library: writes down in which order files are flushed
// and renamed, a line each, to the file that TVZ_RECORD names.
#include <dlfcn.h>
#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <climits>
#include <cstdlib>
#include <string>

namespace {

template <class Function>
Function* Real(const char* name) {
  return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

void Record(const std::string& line) {
  const char* const record = std::getenv("TVZ_RECORD");
  if (record == nullptr) return;
  const int file = ::open(record, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
  const std::string whole = line + "\n";
  [[maybe_unused]] const ssize_t written = ::write(file, whole.data(), whole.size());
  ::close(file);
}

std::string NameOf(int file) {
  std::array<char, PATH_MAX> path{};
  const std::string link = "/proc/self/fd/" + std::to_string(file);
  const ssize_t length = ::readlink(link.c_str(), path.data(), path.size());
  const std::string whole(path.data(), length < 0 ? 0 : static_cast<std::size_t>(length));
  return whole.substr(whole.rfind('/') + 1);
}

}  // namespace

extern "C" int fsync(int file) {
  Record("flushed " + NameOf(file));
  return Real<int(int)>("fsync")(file);
}

extern "C" int renameat(int from_folder, const char* from, int to_folder, const char* to) {
  Record("renamed " + std::string(from) + " " + to);
  return Real<int(int, const char*, int, const char*)>("renameat")(from_folder, from, to_folder,
                                                                   to);
}
