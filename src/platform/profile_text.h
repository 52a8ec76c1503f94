// The text of a private profile, for hosts that bring no profiles of their own.
//
// platform/profile_files.h has the rules of reading. A section that comes
// twice is the first of the two; keys in front of the first section and lines
// without an equals sign are just lines.
#pragma once

#include <cstddef>
#include <functional>
#include <list>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace tarnvale {

/// A profile in memory: finds and replaces in constant time, and gives back
/// byte for byte what nobody replaced.
class ProfileText {
 public:
  /// An empty profile; its lines will end in CR LF.
  ProfileText() = default;
  /// Takes a file's bytes. New lines get the end that the first line has. A
  /// UTF-8 byte order mark at the start stays.
  explicit ProfileText(std::string_view bytes);
  ProfileText(ProfileText&&) = default;
  ProfileText& operator=(ProfileText&&) = default;

  /// The value without blanks around it and without one pair of enclosing
  /// quotes; none when section or key is missing.
  std::optional<std::string> Value(std::string_view section, std::string_view key) const;

  /// Whether a section, a key and a value could be read back from a line: no
  /// line break or NUL anywhere, no "]" in the section, a key that isn't empty,
  /// holds no "=" and doesn't begin like a comment or a section.
  static bool CanHold(std::string_view section, std::string_view key, std::string_view value);

  /// Whether the value is there already, so that Set would change nothing.
  bool Holds(std::string_view section, std::string_view key, std::string_view value) const;

  /// Replaces a value in place, or adds the key behind the last line of its
  /// section that isn't blank, or adds the section at the end. All three texts
  /// must be ones that it can hold. False when nothing had to change.
  bool Set(std::string_view section, std::string_view key, std::string_view value);

  /// Calls for each value that another text doesn't hold, with section, key and value
  /// as they are written here.
  using Visitor = std::function<void(std::string_view, std::string_view, std::string_view)>;
  void ForEachChange(const ProfileText& before, const Visitor& visit) const;

  std::string Bytes() const;

 private:
  struct Line {
    std::string text;
    std::string_view end;  // "\r\n", "\n" or nothing
  };
  using Lines = std::list<Line>;
  struct Section {
    Lines::iterator last;  // the last line of it that isn't blank
    std::unordered_map<std::string, Lines::iterator> keys;
  };

  void AddParsed(std::string_view text, std::string_view end, Section*& section);
  void AddSection(std::string_view name, Section*& section);
  const Lines::iterator* Find(std::string_view section, std::string_view key) const;
  Lines::iterator InsertAfter(Lines::iterator place, std::string text);

  std::string_view mark_;
  std::string_view new_end_ = "\r\n";
  Lines lines_;
  std::unordered_map<std::string, Section> sections_;
};

}  // namespace tarnvale
