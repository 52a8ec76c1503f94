// Makes the peer that fits a record.
#pragma once

#include <memory>

#include "hosts/windows/peers/peer.h"

namespace tarnvale {

/// A peer for what `placement` puts on the window. `container` is its container's; none
/// directly on the window.
std::unique_ptr<Peer> MakePeer(PeerContext& context, WindowsWindow& window,
                               const Placement& placement, const Peer* container);

}  // namespace tarnvale
