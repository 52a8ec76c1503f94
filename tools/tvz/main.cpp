// tvz: archives on the command line.

#include <exception>
#include <string>
#include <vector>

#include "base/failure.h"
#include "base/out_of_memory.h"
#include "base/shown_text.h"
#include "native/command_failure.h"
#include "native/console.h"
#include "tvz/arguments.h"
#include "tvz/commands.h"

namespace tarnvale {
namespace {

constexpr int kGood = 0;
constexpr int kBad = 1;
constexpr int kUsage = 2;

int Complain(const std::string& reason, int code) {
  PrintError("tvz: " + Shown(reason) + "\n");
  return code;
}

int Run(const std::vector<std::string>& arguments) {
  RaiseOutOfMemory();
  try {
    CatchEnding();
    RunCommand(ParseArguments(arguments));
    return kGood;
  } catch (const UsageError& error) {
    return Complain(error.what(), kUsage);
  } catch (const CommandFailure& error) {
    return Complain(error.what(), kBad);
  } catch (const ProgramError& error) {
    return Complain(error.Description(), kBad);
  } catch (const std::exception& error) {
    return Complain(error.what(), kBad);
  } catch (const Stopped&) {
    return kStopped;
  }
}

}  // namespace
}  // namespace tarnvale

int main(int argc, char** argv) {
  return tarnvale::Run(tarnvale::Arguments(argc, argv));
}
