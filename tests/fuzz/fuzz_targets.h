// What is done with any bytes whatever. Each aborts when something is wrong.
#pragma once

#include <cstdint>
#include <span>

namespace tarnvale::testing {

/// Decodes the bytes as a stream: the outcome is the plain coder's.
void FuzzDecoding(std::span<const std::uint8_t> bytes);

/// Encodes the bytes: the stream is the plain coder's and decodes to the bytes.
void FuzzRoundTrip(std::span<const std::uint8_t> bytes);

/// Lists and unpacks the bytes as a bare container.
void FuzzContainer(std::span<const std::uint8_t> bytes);

/// Reads the bytes as the file that names the data folder, on the real host, and
/// requests what it names.
void FuzzPointerFile(std::span<const std::uint8_t> bytes);

/// Reads, changes and saves the bytes as a settings file: nothing else in it
/// changes. Three lines in front of it are a section, a key and a new value.
void FuzzSettings(std::span<const std::uint8_t> bytes);

/// Sends mails to a server that says the bytes, in pieces and at moments that they
/// decide, and may end, hang up or reset in between: what the program sends is the
/// mail or the beginning of it, and it keeps no more than it is allowed.
void FuzzMailServer(std::span<const std::uint8_t> bytes);

/// Splits a file of any name, lets others into the folder of its parts, and joins what a name
/// from outside says, on the real host: the parts are the file, what is joined is its parts, and
/// nothing else changes.
void FuzzParts(std::span<const std::uint8_t> bytes);

/// Packs, unpacks, lists, splits and joins, as the first byte says, where the dialogs give back
/// any paths, on the real host: no more files change than were chosen, nothing outside the drive
/// does, and no temporary is left.
void FuzzDialogs(std::span<const std::uint8_t> bytes);

/// Lists, uploads or downloads, as the first byte says, at a server on the loopback that
/// answers and sends the others, and hangs up behind them: each command ends once, with a
/// number where it failed, and a file stays as it was unless the new one arrived.
void FuzzFtpServer(std::span<const std::uint8_t> bytes);

}  // namespace tarnvale::testing
