#include "platform/command_line.h"

#include <utility>

namespace tarnvale {

std::vector<std::string> WordsOf(std::string_view command_line) {
  std::vector<std::string> words;
  std::string word;
  bool in_word = false;
  bool quoted = false;
  for (const char c : command_line) {
    if (c == '"') {
      quoted = !quoted;
      in_word = true;
    } else if (!quoted && (c == ' ' || c == '\t')) {
      if (in_word) words.push_back(std::exchange(word, {}));
      in_word = false;
    } else {
      word += c;
      in_word = true;
    }
  }
  if (in_word) words.push_back(std::move(word));
  return words;
}

}  // namespace tarnvale
