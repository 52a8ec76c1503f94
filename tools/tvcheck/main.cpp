// tvcheck: what became of the backup.

#include <exception>
#include <string>
#include <vector>

#include "base/failure.h"
#include "base/out_of_memory.h"
#include "base/shown_text.h"
#include "native/console.h"
#include "tvcheck/command.h"

namespace tarnvale {
namespace {

constexpr int kGood = 0;
constexpr int kNotGood = 1;
constexpr int kNotChecked = 2;

int Complain(const std::string& reason) {
  PrintError("tvcheck: " + Shown(reason) + "\n");
  return kNotChecked;
}

int Run(const std::vector<std::string>& arguments) {
  RaiseOutOfMemory();
  try {
    const Request request = ParseArguments(arguments);
    if (request.help || request.version) {
      Print(request.help ? kHelpText : "tvcheck " TARNVALE_VERSION " (Tarnvale)\n");
      return kGood;
    }
    return RunCheck(request) ? kGood : kNotGood;
  } catch (const ProgramError& error) {
    return Complain(error.Description());
  } catch (const std::exception& error) {
    return Complain(error.what());
  }
}

}  // namespace
}  // namespace tarnvale

int main(int argc, char** argv) {
  return tarnvale::Run(tarnvale::Arguments(argc, argv));
}
