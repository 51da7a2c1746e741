// The one TCP socket of the process. While it is open every serial byte that no libusb device takes and, with
// TunnelLink set, every report travels over it.
#pragma once

#include <cstdint>
#include <span>

#include "core/state.h"
#include "platform/platform.h"

namespace tavlyn {

inline bool LinkIsOpen() { return shared.link.LinkSocket != platform::kNoHandle; }

// Connects over TCP, after closing a connection that may be open. Returns 0; -1 when the system has no
// sockets, -2 without a socket, -3 without a connection.
std::int32_t LinkConnect(platform::Address peer);

// Returns the result of the last of at most five receives; 0 when the socket is closed. Ends as soon as half
// of what was asked for has arrived, so a caller that needs n bytes relies on them coming in one piece.
std::int32_t LinkRecv(std::span<std::uint8_t> buffer);

// Result of send; 0 when the socket is closed.
std::int32_t LinkSend(std::span<const std::uint8_t> bytes);
// The same without the pause that LinkSend makes afterwards.
std::int32_t LinkSendNow(std::span<const std::uint8_t> bytes);

// Result of the system's close; 0 when the socket is closed already. A close that fails leaves it open.
std::int32_t LinkClose();

// Ends the tunnel when there is one.
void CloseTunnel();

}  // namespace tavlyn
