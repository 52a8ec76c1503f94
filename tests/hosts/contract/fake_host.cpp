#include "tests/hosts/contract/host_under_test.h"
#include "tests/support/fake_machine.h"

namespace tarnvale::testing {
namespace {

class FakeHost : public HostUnderTest {
 public:
  FakeHost() {
    machine_.files.Remove("C:\\Program");
    machine_.files.MakeFolder("C:\\Data");
  }

  SystemParts Parts() override { return machine_.Interfaces(); }

  void Write(const Path& file, const std::string& content) override {
    machine_.files.Write(file, content);
  }
  std::string Content(const Path& file) override { return machine_.files.Content(file); }
  void MakeFolder(const Path& folder) override { machine_.files.MakeFolder(folder); }
  void Remove(const Path& path) override { machine_.files.Remove(path); }
  bool MakeUnreadable(const Path& file) override {
    machine_.profiles.FailOn("Read", file, 75);
    return true;
  }
  void MakeReadable(const Path&) override { machine_.profiles.ClearFailures(); }
  void SetModified(const Path& file, std::int64_t seconds) override {
    machine_.files.SetModified(file, seconds);
  }
  std::int64_t Modified(const Path& file) override { return machine_.files.Modified(file); }
  void HideFile(const Path& file) override {
    machine_.files.Find(file)->flags |= attribute::kHidden;
  }
  void HideFolder(const Path& folder) override {
    machine_.files.Find(folder)->flags |= attribute::kHidden;
  }
  std::vector<std::string> Names(const Path& folder) override {
    return machine_.files.Names(folder);
  }
  void SetVariable(const std::string& name, const std::string& value) override {
    machine_.processes.variables[name] = value;
  }

 private:
  FakeMachine machine_;
};

}  // namespace

std::unique_ptr<HostUnderTest> MakeFakeHost() {
  return std::make_unique<FakeHost>();
}

}  // namespace tarnvale::testing
