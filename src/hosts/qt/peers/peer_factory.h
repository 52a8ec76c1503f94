// Makes the peer that fits a record.
#pragma once

#include <memory>

#include "hosts/qt/peers/peer.h"

namespace tarnvale {

/// A peer for `control`, its widget standing in `parent`.
std::unique_ptr<Peer> MakePeer(PeerContext& context, Control& control, QWidget& parent);

}  // namespace tarnvale
