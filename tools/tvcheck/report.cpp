#include "tvcheck/report.h"

#include <algorithm>
#include <array>
#include <map>
#include <string_view>

#include "base/characters.h"
#include "base/shown_text.h"

namespace tarnvale {
namespace {

constexpr std::array kAllStates = {State::kSame,      State::kMissing,    State::kOlder,
                                   State::kDifferent, State::kPassedOver, State::kUnreadable};
constexpr std::size_t kNameWidth = 13;
constexpr std::size_t kCountWidth = 10;

std::string Column(std::string text) {
  text.resize(std::max(text.size() + 1, kNameWidth), ' ');
  return text;
}

std::string TableRow(const std::string& name, std::int64_t count, const std::string& remark) {
  const std::string number = std::to_string(count);
  const std::string space(kCountWidth - std::min(kCountWidth, number.size()), ' ');
  return Column(name) + space + number + remark + "\n";
}

std::string WordsOf(const Finding& finding) {
  if (!finding.reason.empty()) return ": " + Shown(finding.reason);
  return finding.rule == Rule::kNone ? "" : ": " + std::string(TextOf(finding.rule).words);
}

// A text between quotes, in ASCII: so nothing in it does anything to a terminal.
std::string Quoted(std::string_view text) {
  constexpr char32_t kReplacement = 0xFFFD;
  constexpr char32_t kFirstOfPairs = 0x10000;
  std::string quoted = "\"";
  const auto append_unit = [&](char32_t unit) {
    quoted += "\\u";
    for (int shift = 12; shift >= 0; shift -= 4)
      quoted += "0123456789abcdef"[(unit >> shift) & 15U];
  };
  while (!text.empty()) {
    const Character first = FirstCharacter(text);
    const char32_t value = first.bytes == 0 ? kReplacement : first.value;
    if (value == '"' || value == '\\') {
      quoted += '\\';
      quoted += static_cast<char>(value);
    } else if (value >= 0x20 && value < 0x7F) {
      quoted += static_cast<char>(value);
    } else if (value < kFirstOfPairs) {
      append_unit(value);
    } else {
      append_unit(0xD800 + ((value - kFirstOfPairs) >> 10));
      append_unit(0xDC00 + ((value - kFirstOfPairs) & 0x3FF));
    }
    text.remove_prefix(std::max<std::size_t>(first.bytes, 1));
  }
  return quoted + "\"";
}

std::string Member(const char* name, std::string_view value) {
  return Quoted(name) + ": " + Quoted(value);
}

std::string JsonOf(const Finding& finding) {
  std::string object = "    {" + Member("state", NameOf(finding.state)) + ", " +
                       Member("source", finding.source) + ", " + Member("copy", finding.copy);
  if (finding.rule != Rule::kNone) object += ", " + Member("rule", TextOf(finding.rule).name);
  if (!finding.reason.empty()) object += ", " + Member("reason", finding.reason);
  return object + "}";
}

}  // namespace

std::string TextReport(const Subject& subject, const Findings& findings) {
  std::string text;
  std::map<Rule, std::int64_t> rules;
  for (const Finding& finding : findings.Others()) {
    text += Column(NameOf(finding.state)) + Shown(finding.source) + WordsOf(finding) + "\n";
    if (finding.state == State::kPassedOver) ++rules[finding.rule];
  }
  if (!text.empty()) text += "\n";
  text += Shown(subject.settings) + ", " + subject.mode + "\n" + Shown(subject.copies) + "\n\n";
  for (const State state : kAllStates) {
    text += TableRow(NameOf(state), findings.Count(state), "");
    if (state != State::kPassedOver) continue;
    for (const auto& [rule, count] : rules) {
      text += TableRow("", count, "  " + std::string(TextOf(rule).words));
    }
  }
  return text;
}

std::string JsonReport(const Subject& subject, const Findings& findings) {
  std::string text = "{\n  " + Member("settings", subject.settings) + ",\n  " +
                     Member("mode", subject.mode) + ",\n  " + Member("copies", subject.copies) +
                     ",\n  \"good\": " + (findings.AllGood() ? "true" : "false") +
                     ",\n  \"counts\": {";
  for (const State state : kAllStates) {
    if (state != kAllStates.front()) text += ", ";
    text += Quoted(NameOf(state)) + ": " + std::to_string(findings.Count(state));
  }
  text += "},\n  \"files\": [";
  const char* between = "\n";
  for (const Finding& finding : findings.Others()) {
    text += between + JsonOf(finding);
    between = ",\n";
  }
  return text + "\n  ]\n}\n";
}

}  // namespace tarnvale
