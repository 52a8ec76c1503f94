// The process-wide table of open files, by number.
//
// Several parts of the program hold fixed file numbers in this one table; closing
// all closes those of the others too. Bytes are read and written as they are. Other programs
// may read and write what is open here; whether they may delete it, the system decides.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "platform/files.h"

namespace tarnvale {

class OpenFiles {
 public:
  virtual ~OpenFiles() = default;

  /// Opens a text for reading. Numbers are 1 to 511. All four raise 52 (bad
  /// number), 55 (the number is taken), 76, 75 (also for a folder, and for a name that no
  /// file can have), 70; this one 53 as well.
  virtual void OpenInput(int number, const Path& file) = 0;
  /// Creates a text anew. An old one of this user is emptied and keeps its rights, unless
  /// they are to be its owner's alone; somebody else's is deleted first. A new one has
  /// `rights`, of a new file or its owner's alone. Raises 70 for what can't be deleted.
  virtual void OpenOutput(int number, const Path& file, Rights rights = Rights::kOwner) = 0;
  /// Opens for reading and writing at any position, creating the file, for its owner
  /// alone, if it is missing, and keeping what it holds. One that refuses writing is
  /// opened for reading alone.
  virtual void OpenBinary(int number, const Path& file) = 0;
  /// As OpenBinary, for a file of the program's own making. What has the name is kept
  /// only if it is a plain file of this user, known under no other name; it is then
  /// its owner's alone. Anything else but a folder, a link too, is deleted and the
  /// file made anew. Raises 75 for one that refuses writing and for a folder, and 70
  /// for what can't be deleted.
  virtual void OpenOwn(int number, const Path& file) = 0;

  /// Writes bytes at the end of what was written (texts) or at the position
  /// (binary), which moves on. Behind the end of a file the gap is filled with
  /// zeros. Raises 52 when the number isn't open, 54 when it is open for input,
  /// 75 when the file refuses writing, 61 (medium full), 57.
  virtual void Write(int number, std::string_view bytes) = 0;

  /// Reads one delimited item: leading blanks skipped; up to the first comma
  /// or line end, or, when it starts with a double quote, up to the closing
  /// one, which is dropped; as TextFromFile reads it. For numbers that OpenInput opened. Raises 52,
  /// 54, 62 at the end of the file.
  virtual std::string InputItem(int number) = 0;

  /// Reads up to `count` bytes at the position, which moves on; fewer only at
  /// the end of the file. Raises 52, 54 for an output, 57.
  virtual std::string Read(int number, std::size_t count) = 0;
  /// As Read, into the caller's memory; returns how many bytes were read. Takes
  /// no memory of its own, so that a large file is never held twice.
  virtual std::size_t ReadInto(int number, std::span<std::uint8_t> bytes) = 0;

  /// Copies up to `buffer.size()` bytes from the position of one open file to
  /// that of another; both move on. Returns how many: fewer only at the end of
  /// the first. Raises as ReadInto and Write do.
  ///
  /// A host may gather steps that follow each other and need no `buffer`. What
  /// they copy is in the file at the latest when either number is used otherwise
  /// or closed; another number of the same file may see it later. A failure can
  /// come that late as well: 61, 57, or 62 for a source that was cut short.
  virtual std::size_t Copy(int from, int to, std::span<std::uint8_t> buffer);

  /// Length of an open file in bytes, with all that was written. Raises 52.
  virtual std::int64_t Length(int number) = 0;
  /// Moves to a position, in bytes from 0. Raises 52, 5 for a negative one.
  virtual void Seek(int number, std::int64_t position) = 0;

  /// A text as bytes of the system's 8-bit code page, and back. None for a text that it
  /// can't hold, and for bytes that wouldn't come back as they are. Where that is UTF-8,
  /// as here, bytes are taken as they are. Whole texts go by file_text.h.
  virtual std::optional<std::string> ToCodePage(std::string_view text) const {
    return std::string(text);
  }
  virtual std::optional<std::string> FromCodePage(std::string_view bytes) const {
    return std::string(bytes);
  }

  virtual bool IsOpen(int number) = 0;
  /// Closes one; a number that isn't open is no failure. What is still held in
  /// memory is written first: raises 61, 57, 62, and is closed all the same.
  virtual void Close(int number) = 0;
  /// Closes every open file of the program, whoever opened it. What is still held
  /// in memory is written as far as it can be. Raises nothing.
  virtual void CloseAll() = 0;
};

}  // namespace tarnvale
