#include "base/failure.h"

#include <algorithm>
#include <array>

#include "base/out_of_memory.h"

namespace tarnvale {
namespace {

struct KnownError {
  int number;
  const char* description;
};

constexpr std::array kKnownErrors = {
    KnownError{kInvalidCall, "Invalid procedure call or argument"},
    KnownError{kOverflow, "Overflow"},
    KnownError{kOutOfMemory, "Out of memory"},
    KnownError{kSubscriptOutOfRange, "Subscript out of range"},
    KnownError{kDivisionByZero, "Division by zero"},
    KnownError{kTypeMismatch, "Type mismatch"},
    KnownError{kBadFileNumber, "Bad file name or number"},
    KnownError{kFileNotFound, "File not found"},
    KnownError{kBadFileMode, "Bad file mode"},
    KnownError{kFileAlreadyOpen, "File already open"},
    KnownError{kDeviceIoError, "Device I/O error"},
    KnownError{kFileAlreadyExists, "File already exists"},
    KnownError{kDiskFull, "Disk full"},
    KnownError{kInputPastEnd, "Input past end of file"},
    KnownError{kTooManyFiles, "Too many files"},
    KnownError{kDeviceUnavailable, "Device unavailable"},
    KnownError{kPermissionDenied, "Permission denied"},
    KnownError{kDiskNotReady, "Disk not ready"},
    KnownError{kPathFileAccess, "Path/File access error"},
    KnownError{kPathNotFound, "Path not found"},
    KnownError{kObjectNotSet, "Object variable or With block variable not set"},
    KnownError{kResourceNotFound, "Resource with identifier not found"},
    KnownError{kInvalidPropertyValue, "Invalid property value"},
};

}  // namespace

std::string DescriptionOf(int number) {
  const auto* known = std::find_if(kKnownErrors.begin(), kKnownErrors.end(),
                                   [&](const KnownError& e) { return e.number == number; });
  return known != kKnownErrors.end() ? known->description
                                     : "Application-defined or object-defined error";
}

ProgramError::ProgramError(int number) : ProgramError(number, "Tarnvale", DescriptionOf(number)) {}

ProgramError::ProgramError(int number, std::string source, std::string description)
    : number_(number), source_(std::move(source)), description_(std::move(description)) {}

}  // namespace tarnvale
