// Decoding sound streams by tables, from several places at once.
//
// One look-up of 12 bits gives up to six symbols, and four look-ups use one load of
// 57 bits. What is left to wait for is each look-up's own length, which says where
// the next begins; so four cursors decode in turn, each from its own place. The
// places of three are guessed. A Huffman stream falls into step by itself: after
// some ten symbols a cursor that began in the middle of a code is on the same bits
// as the right one. When a cursor has come to the start of the next, whichever is
// behind moves on until both meet; what the guess made before that is dropped, the
// rest is kept. If they don't meet, the right cursor goes on alone for a while. Four
// cursors ran 2 to 2.5 times as fast as one.
//
// A long stream is decoded by several processors: each takes the next block of four
// spans, all of whose cursors are guessed, and brings them together with the right one
// when the blocks before are done.
#pragma once

#include <cstdint>
#include <span>

#include "codec/bytes.h"
#include "codec/decoding.h"
#include "platform/workers.h"

namespace tarnvale {

/// Whether the fast decoder gives what the plain walk gives: the tree is
/// complete and no code longer than its tables serve.
bool CanDecodeByTables(const StreamHead& head, const DecodingTree& tree);

/// As WalkPlainly, for streams that CanDecodeByTables. `checksum` becomes the
/// exclusive or of the result.
void DecodeByTables(std::span<const std::uint8_t> stream, const StreamHead& head,
                    ByteBuffer& result, DecodingReports& reports, std::uint8_t& checksum,
                    Workers& workers);

}  // namespace tarnvale
