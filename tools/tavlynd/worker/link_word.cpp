#include "tools/tavlynd/worker/link_word.h"

#include <string_view>

#include "tools/tavlynctl/session.h"

namespace tavlyn::agent {
namespace {

constexpr std::string_view kAscii = ":ascii";
constexpr std::string_view kCom = "com";

struct UsbWord {
  std::string_view word;
  std::uint32_t product;
};
constexpr UsbWord kUsbWords[] = {
    {"usb:reader", ctl::kReaders}, {"usb:magstripe", ctl::kMagstripes}, {"usb:sonar", ctl::kSensors}};

}  // namespace

std::optional<WorkerLink> ParseWorkerLink(std::string word) {
  for (const UsbWord& usb : kUsbWords) {
    if (word == usb.word) return WorkerLink{{}, usb.product, word};
  }
  WorkerLink found{{}, ctl::kReaders, {}};
  found.link.ascii = word.ends_with(kAscii);
  if (found.link.ascii) word.resize(word.size() - kAscii.size());
  found.name = word;
  const bool isPort = word.starts_with(kCom);
  const bool isTaken =
      isPort ? ctl::TakePorts(word.substr(kCom.size()), found.link) : ctl::TakePeer(word, found.link);
  if (!isTaken || found.link.firstPort != found.link.lastPort) return std::nullopt;
  return found;
}

}  // namespace tavlyn::agent
