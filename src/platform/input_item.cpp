#include "platform/input_item.h"

namespace tarnvale {

bool InputItemScanner::Feed(char byte) {
  if (state_ == State::kLeading) {
    if (byte == ' ' || byte == '\t') return true;
    state_ = byte == '"' ? State::kQuoted : State::kPlain;
    if (state_ == State::kQuoted) return true;
  }
  if (state_ == State::kQuoted) {
    if (byte == '"') {
      state_ = State::kBehindQuote;
    } else {
      item_ += byte;
    }
    return true;
  }
  if (byte == ',' || byte == '\r' || byte == '\n') {
    ended_in_return_ = byte == '\r';
    state_ = State::kDone;
    return false;
  }
  if (state_ == State::kPlain) item_ += byte;
  return true;
}

}  // namespace tarnvale
