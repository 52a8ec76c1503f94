// Reading what an FTP server says.
#pragma once

#include <deque>
#include <optional>
#include <string>
#include <string_view>

namespace tarnvale {

/// One whole reply.
struct FtpReply {
  int code = 0;      ///< 100 to 599
  std::string text;  ///< behind the code in its first line, cut where that is very long

  int Class() const { return code / 100; }
};

/// Puts replies together from the bytes of a control connection. Whatever comes
/// in, it holds no more than a line's beginning.
class FtpReplyReader {
 public:
  void Feed(std::string_view bytes);

  /// The next whole reply.
  std::optional<FtpReply> Next();
  /// Nothing is left over: every reply was taken and none has begun.
  bool IsEmpty() const { return replies_.empty() && !IsInside() && !garbage_; }
  /// A reply has begun and isn't whole yet.
  bool IsInside() const { return open_code_ != 0 || line_began_; }
  /// Something came that begins no reply: whoever speaks there is no FTP server.
  bool IsGarbage() const { return garbage_; }

 private:
  void EndLine();

  std::string line_;  ///< its beginning
  bool line_began_ = false;
  int open_code_ = 0;  ///< of the reply of several lines that is open; 0: none
  std::string first_text_;
  std::deque<FtpReply> replies_;
  bool garbage_ = false;
};

/// The port that a reply to EPSV names: "Entering Extended Passive Mode (|||6446|)".
std::optional<int> PortOfExtendedPassive(const FtpReply& reply);

/// The port that a reply to PASV names: "Entering Passive Mode (127,0,0,1,25,46)".
/// The address in it is nobody's business: data always come from and go to the
/// host that was connected to.
std::optional<int> PortOfPassive(const FtpReply& reply);

}  // namespace tarnvale
