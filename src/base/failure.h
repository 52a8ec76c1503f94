// Failures: the one error type, and the policy "pass over".
#pragma once

#include <exception>
#include <optional>
#include <string>
#include <utility>

namespace tarnvale {

/// The classic run-time error numbers that the program raises and tests for.
enum RunTimeError : int {
  kInvalidCall = 5,
  kOverflow = 6,
  kSubscriptOutOfRange = 9,
  kDivisionByZero = 11,
  kTypeMismatch = 13,
  kBadFileNumber = 52,
  kFileNotFound = 53,
  kBadFileMode = 54,
  kFileAlreadyOpen = 55,
  kDeviceIoError = 57,
  kFileAlreadyExists = 58,
  kDiskFull = 61,
  kInputPastEnd = 62,
  kTooManyFiles = 67,
  kDeviceUnavailable = 68,
  kPermissionDenied = 70,
  kDiskNotReady = 71,
  kPathFileAccess = 75,
  kPathNotFound = 76,
  kObjectNotSet = 91,
  kResourceNotFound = 326,
  kInvalidPropertyValue = 380,
};

/// The number of the errors that the program itself defines.
inline constexpr int kProgramDefinedError = static_cast<int>(0x80040000U);

/// The fixed English description of a classic run-time error, without a full
/// stop; "Application-defined or object-defined error" for any other number.
std::string DescriptionOf(int number);

/// A raised error: 32-bit number, source, description.
class ProgramError : public std::exception {
 public:
  /// A classic run-time error with its fixed description.
  explicit ProgramError(int number);
  ProgramError(int number, std::string source, std::string description);

  int Number() const { return number_; }
  const std::string& Source() const { return source_; }
  const std::string& Description() const { return description_; }

  /// The description, for debuggers and test logs.
  const char* what() const noexcept override { return description_.c_str(); }

 private:
  int number_;
  std::string source_;
  std::string description_;
};

/// The policy "a statement that fails is passed over and the next one runs; a
/// test that fails counts as true". One object covers one procedure. It catches
/// ProgramError only: a bug of ours goes through.
class PassedOver {
 public:
  /// Runs one statement. True when it went through.
  template <class Statement>
  bool Step(Statement&& statement) {
    try {
      std::forward<Statement>(statement)();
      return true;
    } catch (const ProgramError& error) {
      standing_ = error;
      return false;
    }
  }

  /// Evaluates one test. A test that fails counts as true.
  template <class Condition>
  bool Test(Condition&& condition) {
    try {
      return static_cast<bool>(std::forward<Condition>(condition)());
    } catch (const ProgramError& error) {
      standing_ = error;
      return true;
    }
  }

  /// The last error that was passed over and not cleared since.
  const std::optional<ProgramError>& StandingError() const { return standing_; }
  void Clear() { standing_.reset(); }

 private:
  std::optional<ProgramError> standing_;
};

}  // namespace tarnvale
