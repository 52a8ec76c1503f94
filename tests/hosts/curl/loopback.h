// Sockets of this end of a test.
#pragma once

namespace tarnvale::testing {

/// A socket that listens on 127.0.0.1; 0 picks a free port. -1 when it can't be.
int ListenOnLoopback(int port, int queue = 8);
/// A socket on its way to this port of 127.0.0.1. Doesn't wait.
int BeginToConnect(int port);
int PortOf(int socket);

/// A port of 127.0.0.1 and ::1 that nobody listened on a moment ago.
int FreeLoopbackPort();

/// True when somebody takes connections on this port of 127.0.0.1.
bool AnswersOnLoopback(int port);

}  // namespace tarnvale::testing
