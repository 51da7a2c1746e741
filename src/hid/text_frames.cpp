#include "hid/text_frames.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <span>
#include <string_view>

#include "core/product.h"
#include "core/wipe.h"
#include "hid/vidpid_table.h"
#include "links/link_socket.h"
#include "platform/platform.h"

namespace tavlyn {
namespace {

constexpr std::size_t kHeader = 16;
constexpr std::size_t kIds = 4;
constexpr std::string_view kRequest = "#Req/FR:";

using Frame = Wiped<std::array<std::uint8_t, 80>>;

// Whether a device with these IDs, which the adapter puts into each reply, may be reached through a tunnel.
bool MayTunnel(platform::HidIds ids) {
  return FindVidPidRow(ids, 0) >= 0 || std::ranges::any_of(kProducts, [&](const Product* product) {
           return product->hasTunnel && SameIds(product->usb.pair, ids);
         });
}

bool LengthIsGood(std::int32_t n) { return n >= -1 && n <= 7; }

Frame WithHeader(const char* format, std::int32_t n) {
  Frame frame{};
  char text[32];
  std::snprintf(text, sizeof text, format, static_cast<int>(n));
  std::memcpy(frame.data(), text, kHeader);
  return frame;
}

}  // namespace

bool WriteTextFrame(std::int32_t n, const std::uint8_t* buffer) {
  if (!LengthIsGood(n)) return false;
  const std::size_t payload = n > 0 ? static_cast<std::size_t>(n) : 0;
  Frame frame = WithHeader("#HUSB/FR/001L%02d:", n);
  std::copy_n(buffer + 1, payload, frame.begin() + kHeader);
  LinkSend(std::span(frame).first(kHeader + payload));
  return true;
}

bool ReadTextFrame(std::int32_t n, std::uint8_t* buffer) {
  LinkSend({reinterpret_cast<const std::uint8_t*>(kRequest.data()), kRequest.size()});
  Frame reply{};
  const std::size_t asked = static_cast<std::size_t>(n) + kHeader + kIds;
  const std::size_t room = std::min(asked, reply.size());
  if (LinkRecv(std::span(reply).first(room)) != static_cast<std::int32_t>(asked)) return false;
  const Frame expected = WithHeader("#DUSB/FR/001L%02d:", n);
  if (!std::equal(expected.begin(), expected.begin() + kHeader, reply.begin())) return false;
  // The length is checked after the receive, so that a reply that is too long is still taken off the socket.
  if (!LengthIsGood(n)) return false;
  const auto word = [&](std::size_t at) {
    return static_cast<std::uint16_t>(reply[at] << 8 | reply[at + 1]);
  };
  const platform::HidIds ids{word(kHeader), word(kHeader + 2)};
  if (!MayTunnel(ids)) return false;
  std::copy_n(reply.begin() + kHeader + kIds, n, buffer + 1);
  return true;
}

}  // namespace tavlyn
