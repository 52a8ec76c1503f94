#include "tests/fuzz/fuzz_targets.h"

#include <algorithm>
#include <optional>
#include <string>

#include "codec/archive.h"
#include "platform/file_text.h"
#include "platform/profile_text.h"
#include "settings/settings_store.h"
#include "tests/codec/codec_under_test.h"
#include "tests/fuzz/fuzz_script.h"
#include "tests/fuzz/real_drive.h"
#include "tests/support/fake_machine.h"
#include "transfer/frm_winsock.h"

namespace tarnvale::testing {
namespace {

// Mostly streams: bytes that begin with anything else get a right mark.
Bytes WithMark(std::span<const std::uint8_t> bytes) {
  Bytes stream(bytes.begin(), bytes.end());
  if (stream.size() > 4 && stream[0] % 8 != 0) {
    const Bytes mark{'H', 'E', '3', '\r'};
    std::copy(mark.begin(), mark.end(), stream.begin());
  }
  return stream;
}

// A server that follows the bytes: the first of each step says what it does and
// when, the next how many of those behind it are said.
class ScriptedMailServer {
 public:
  ScriptedMailServer(FakeServer& server, std::span<const std::uint8_t> script) : script_(script) {
    server.on_connect = [this](FakeConnection& c) { Follow(c); };
    server.on_bytes = [this](FakeConnection& c, const std::string&) { Follow(c); };
  }

 private:
  void Follow(FakeConnection& connection) {
    for (int steps = script_.Next() % 4; steps > 0 && !script_.IsOver(); --steps) {
      const std::uint8_t what = script_.Next();
      const std::chrono::milliseconds when(what / 8 * 20);
      switch (what % 8) {
        case 0:
          connection.EndSending(when);
          break;
        case 1:
          connection.HangUp(when);
          break;
        case 2:
          connection.Reset(when);
          break;
        case 3:
          connection.Say(std::string(1000 * std::size_t{script_.Next()}, 'f'), when);
          break;
        default:
          connection.Say(script_.Text(), when);
      }
    }
  }

  FuzzScript script_;
};

void RequireWithinLimits(const frmWinsock& window, const std::string& last_reply) {
  Require(window.txtData.Text.Get().size() <= (1U << 20), "the log is larger than a mebibyte");
  Require(last_reply.size() <= 65536, "the last reply is larger than 64 KiB");
}

}  // namespace

void FuzzDecoding(std::span<const std::uint8_t> bytes) {
  static CodecUnderTest codec;
  const Bytes stream = WithMark(bytes);
  Require(codec.Decode(stream) == DecodePlainly(stream), "decoded otherwise than plainly");
}

void FuzzRoundTrip(std::span<const std::uint8_t> bytes) {
  static CodecUnderTest codec;
  const Bytes input(bytes.begin(), bytes.end());
  const Outcome encoded = codec.Encode(input);
  Require(encoded == EncodePlainly(input), "encoded otherwise than plainly");
  if (input.empty()) return;
  Require(codec.Decode(encoded.bytes).bytes == input, "the round trip differs");
}

void FuzzContainer(std::span<const std::uint8_t> bytes) {
  FakeMachine machine;
  machine.files.Write("C:\\Store\\archive", std::string(bytes.begin(), bytes.end()));
  usercontrol11 archiver(machine.Interfaces());
  std::size_t listed = 0;
  archiver.ReturnContents.Listen([&](const std::string& name, std::int32_t size) {
    listed += name.size() + static_cast<std::size_t>(size);
  });
  PassedOver pass;
  pass.Step([&] { archiver.ReadFiles("C:\\Store\\archive", false); });
  Require(listed <= bytes.size(), "more was listed than the container holds");
  pass.Step([&] { archiver.ExtractFilesFromArchiv("C:\\Store\\archive", "C:\\Out", false); });
  Path out = "C:\\Single";
  pass.Step([&] { archiver.ExtractFile("C:\\Store\\archive", "a", out, false); });
}

namespace {

std::string TextOf(std::span<const std::uint8_t> bytes) {
  return {bytes.begin(), bytes.end()};
}

// The first item of a text, by the words of the contract and nothing else.
std::optional<std::string> FirstItem(std::string text) {
  const bool has_mark = text.starts_with(kUtf8Mark);
  if (has_mark) text.erase(0, kUtf8Mark.size());
  const std::size_t begin = text.find_first_not_of(" \t");
  if (begin == std::string::npos) return std::nullopt;
  std::string item = text[begin] == '"'
                         ? text.substr(begin + 1, text.find('"', begin + 1) - begin - 1)
                         : text.substr(begin, text.find_first_of(",\r\n", begin) - begin);
  if (!has_mark && item.starts_with(kUtf8Mark)) item.erase(0, kUtf8Mark.size());
  return item;
}

// Takes the first line off a text.
std::string TakeLine(std::string& text) {
  const std::size_t end = std::min(text.find('\n'), text.size());
  std::string line = text.substr(0, end);
  text.erase(0, end + 1);
  return line;
}

}  // namespace

void FuzzPointerFile(std::span<const std::uint8_t> bytes) {
  static RealDrive drive;
  const std::string text = TextOf(bytes);
  std::filesystem::create_directories(drive.folder / "drive/Data");
  WriteNative(drive.folder / "drive/Data.txt", text);
  std::string named;
  PassedOver pass;
  pass.Step([&] { drive.host.open_files.OpenInput(1, "C:\\Data.txt"); });
  const bool read = pass.Step([&] { named = drive.host.open_files.InputItem(1); });
  drive.host.open_files.CloseAll();
  const std::optional<std::string> expected = FirstItem(text);
  Require(read == expected.has_value(), "an item was found where none is, or none where one is");
  Require(named == expected.value_or(""), "another item was read");
  // Asked as the program asks each half second, and by its settings.
  pass.Step([&] { drive.host.files.FolderExists(named); });
  pass.Step([&] { drive.host.profiles.Read("When", "Each", "", 255, named + "\\Tarnvale.ini"); });
}

void FuzzSettings(std::span<const std::uint8_t> bytes) {
  std::string text = TextOf(bytes);
  const std::string section = TakeLine(text);
  const std::string key = TakeLine(text);
  const std::string value = TakeLine(text);
  ProfileText profile(text);
  Require(profile.Bytes() == text, "reading alone changed something");
  if (ProfileText::CanHold(section, key, value)) {
    const bool changed = profile.Set(section, key, value);
    Require(profile.Holds(section, key, value), "a value that was set isn't there");
    Require(changed || profile.Bytes() == text, "something changed without a change");
    Require(!profile.Set(section, key, value), "a second time the same value is another");
    const ProfileText again(profile.Bytes());
    Require(again.Value(section, key) == profile.Value(section, key), "it reads back otherwise");
    Require(again.Bytes() == profile.Bytes(), "reading back changed something");
  }
  FakeMachine machine;
  machine.files.MakeFolder("C:\\Data");
  machine.files.Write(machine.files.ProgramFolder() + "\\Data.txt", "C:\\Data");
  machine.files.Write("C:\\Data\\Tarnvale.ini", text);
  BackupSettings settings;
  SettingsStore store(machine.Interfaces(), machine.loop, machine.desktop, settings);
  store.LoadSettings();
  Require(settings.DataFolder.Get() == "C:\\Data", "the data folder is another one");
  Require(machine.files.Content("C:\\Data\\Tarnvale.ini") == text, "a load wrote something");
  store.SaveChanges();
}

void FuzzMailServer(std::span<const std::uint8_t> bytes) {
  const std::string mail_bytes =
      "HELO x.x\r\nMAIL FROM: report@site.example\r\nRCPT TO: a@x\r\nRCPT TO: b@x\r\n"
      "DATA\r\nSUBJECT: 0\r\nAll is well.\r\n\r\n\r\n.\r\n";
  FakeMachine machine;
  FakeServer& server = machine.network.AddServer("mail.example", 25);
  ScriptedMailServer scripted(server, bytes);
  BackupSettings settings;
  settings.SmtpServer = "mail.example";
  settings.ReportTo = "a@x,b@x";
  ReportMail mail;
  mail.Sender = "report@site.example";
  mail.Body = "All is well.";
  std::string last_reply;
  frmWinsock window(machine.Interfaces(), settings, mail, last_reply);
  // A silent server's conversation ends with the program.
  Timer leaving(machine.loop.Timers(), 20000, true);
  leaving.Tick.Listen([&] { machine.loop.Quit(0); });
  for (int i = 0; i < 3; ++i) {
    window.StartSend();
    machine.Advance(6s);
    RequireWithinLimits(window, last_reply);
  }
  for (std::size_t i = 0; i < server.ConnectionCount(); ++i) {
    Require(mail_bytes.starts_with(server.Connection(i).Text()), "something else was sent");
  }
}

}  // namespace tarnvale::testing
