#include "sim/carriers/uhid.h"

#include <fcntl.h>
#include <linux/uhid.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>

#include "sim/carriers/report_descriptor.h"

namespace tavlyn::sim {
namespace {

namespace fs = std::filesystem;

bool SendEvent(int fd, const uhid_event& event) {
  ssize_t sent = 0;
  do {
    sent = write(fd, &event, sizeof event);
  } while (sent < 0 && errno == EINTR);
  return sent >= 0;
}

template <std::size_t N>
void CopyText(__u8 (&field)[N], const std::string& text) {
  std::memcpy(field, text.data(), std::min(text.size(), N - 1));
}

std::string NextPlace() {
  static std::atomic<unsigned> count{0};
  return "tavlynsim-" + std::to_string(getpid()) + "/" + std::to_string(++count);
}

bool HasLine(const fs::path& file, const std::string& wanted) {
  std::ifstream lines(file);
  for (std::string line; std::getline(lines, line);) {
    if (line == wanted) return true;
  }
  return false;
}

}  // namespace

UhidCarrier::UhidCarrier(HidDevice& model) : model_(model), place_(NextPlace()) {}

bool UhidCarrier::Plug() {
  if (fd_ >= 0) return true;
  const HidIdentity& identity = model_.Identity();
  const std::vector<std::uint8_t> descriptor = ReportDescriptor(identity);
  uhid_event event{};
  event.type = UHID_CREATE2;
  uhid_create2_req& create = event.u.create2;
  if (descriptor.size() > sizeof create.rd_data) {
    errno = EMSGSIZE;
    return false;
  }
  CopyText(create.name, identity.product);
  CopyText(create.phys, place_);
  CopyText(create.uniq, identity.serial);
  create.bus = BUS_USB;
  create.vendor = identity.vid;
  create.product = identity.pid;
  create.rd_size = static_cast<__u16>(descriptor.size());
  std::memcpy(create.rd_data, descriptor.data(), descriptor.size());

  fd_ = open("/dev/uhid", O_RDWR | O_NONBLOCK | O_CLOEXEC);
  if (fd_ < 0) return false;
  if (SendEvent(fd_, event)) return true;
  const int reason = errno;
  Unplug();
  errno = reason;
  return false;
}

void UhidCarrier::Unplug() {
  if (fd_ < 0) return;
  close(fd_);  // the kernel takes the device away with it
  fd_ = -1;
  open_ = false;
}

std::string UhidCarrier::Node() const {
  std::error_code none;
  for (const fs::directory_entry& device : fs::directory_iterator("/sys/bus/hid/devices", none)) {
    if (!HasLine(device.path() / "uevent", "HID_PHYS=" + place_)) continue;
    for (const fs::directory_entry& entry : fs::directory_iterator(device.path() / "hidraw", none)) {
      const fs::path node = fs::path("/dev") / entry.path().filename();
      if (fs::exists(node, none)) return node.string();
    }
  }
  return {};
}

void UhidCarrier::Serve() {
  uhid_event event{};
  while (fd_ >= 0 && read(fd_, &event, sizeof event) > 0) {
    switch (event.type) {
      case UHID_OPEN: open_ = true; break;
      case UHID_CLOSE: open_ = false; break;
      case UHID_GET_REPORT:
        AnswerGet(event.u.get_report.id, event.u.get_report.rnum, event.u.get_report.rtype);
        break;
      case UHID_SET_REPORT:
        AnswerSet(event.u.set_report.id, event.u.set_report.rtype,
                  {event.u.set_report.data, event.u.set_report.size});
        break;
      default: break;  // starts and stops, and the lamps of a keyboard
    }
    event = {};
  }
  if (fd_ >= 0 && open_) SendInput();
  if (!model_.Present()) Unplug();
}

void UhidCarrier::AnswerGet(std::uint32_t id, std::uint8_t reportNumber, std::uint8_t reportType) {
  const HidIdentity& identity = model_.Identity();
  uhid_event event{};
  event.type = UHID_GET_REPORT_REPLY;
  uhid_get_report_reply_req& reply = event.u.get_report_reply;
  reply.id = id;
  const std::size_t size = std::min(identity.featureBytes, sizeof reply.data - 1);
  if (reportType == UHID_FEATURE_REPORT && reportNumber == identity.reportId &&
      model_.GetFeature({reply.data + 1, size})) {
    // The leading byte goes out for an unnumbered report too: usbhid leaves room for it, uhid does not.
    reply.data[0] = identity.reportId;
    reply.size = static_cast<__u16>(size + 1);
  } else {
    reply.err = EIO;
  }
  Answer(event);
}

void UhidCarrier::AnswerSet(std::uint32_t id, std::uint8_t reportType, std::span<const std::uint8_t> report) {
  uhid_event event{};
  event.type = UHID_SET_REPORT_REPLY;
  event.u.set_report_reply.id = id;
  const bool accepted = reportType == UHID_FEATURE_REPORT && !report.empty() &&
                        report[0] == model_.Identity().reportId && model_.SetFeature(report.subspan(1));
  event.u.set_report_reply.err = accepted ? 0 : EIO;
  Answer(event);
}

// A cable that is pulled in the middle of an exchange leaves the kernel without an answer.
void UhidCarrier::Answer(const uhid_event& event) const {
  if (model_.Present()) SendEvent(fd_, event);
}

// Like a USB host, the kernel asks for input only while someone listens; until then the model keeps it.
void UhidCarrier::SendInput() {
  std::vector<std::uint8_t> report;
  while (model_.TakeInput(report)) {
    uhid_event event{};
    event.type = UHID_INPUT2;
    event.u.input2.size = static_cast<__u16>(std::min(report.size(), sizeof event.u.input2.data));
    std::memcpy(event.u.input2.data, report.data(), event.u.input2.size);
    SendEvent(fd_, event);
  }
}

}  // namespace tavlyn::sim
