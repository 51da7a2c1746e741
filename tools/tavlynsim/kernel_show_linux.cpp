#include <poll.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <memory>
#include <utility>

#include "sim/carriers/uhid.h"
#include "sim/carriers/usb/hid_function.h"
#include "sim/carriers/usb/line_functions.h"
#include "sim/carriers/usb/vhci.h"
#include "tools/tavlynsim/kernel_show.h"
#include "tools/tavlynsim/source_line.h"

namespace tavlyn::sim {
namespace {

constexpr std::chrono::seconds kPatience(10);
constexpr int kPauseMs = 20;

std::unique_ptr<KernelCarrier> MakeCarrier(HidDevice& model, Carrier carrier) {
  if (carrier == Carrier::kUhid) return std::make_unique<UhidCarrier>(model);
  return std::make_unique<usb::VhciCarrier>(std::make_unique<usb::HidFunction>(std::vector{&model}));
}

std::unique_ptr<usb::Device> MakeUsb(ByteDevice& model, const ListedLine& line) {
  if (line.place.kind == LineKind::kBulk) return std::make_unique<usb::BulkFunction>(model);
  return std::make_unique<usb::SerialFunction>(model, line.manner);
}

std::string WhyNot(Carrier carrier, int reason) {
  const bool onUhid = carrier == Carrier::kUhid;
  const std::string place = onUhid ? "/dev/uhid" : "the kernel's virtual USB host controller";
  if (reason != ENOENT && reason != ENODEV) return place + ": " + std::strerror(reason);
  return place + " is missing: load the kernel module with \"modprobe " + (onUhid ? "uhid" : "vhci-hcd") +
         "\", or use --carrier hidapi";
}

}  // namespace

// An interface of the source as a model that a carrier can show.
class SourceInterface final : public HidDevice {
 public:
  SourceInterface(Source& source, Listed listed) : source_(source), listed_(std::move(listed)) {}

  [[nodiscard]] Key GetKey() const { return listed_.key; }
  [[nodiscard]] const HidIdentity& Identity() const override { return listed_.identity; }
  bool SetFeature(std::span<const std::uint8_t> payload) override {
    report_.assign(1, listed_.identity.reportId);
    report_.insert(report_.end(), payload.begin(), payload.end());
    return source_.SetFeature(listed_.key, report_) == Outcome::kDone;
  }
  bool GetFeature(std::span<std::uint8_t> payload) override {
    report_.assign(payload.size() + 1, 0);
    report_[0] = listed_.identity.reportId;
    if (source_.GetFeature(listed_.key, report_) != Outcome::kDone) return false;
    std::copy(report_.begin() + 1, report_.end(), payload.begin());
    return true;
  }
  bool TakeInput(std::vector<std::uint8_t>& report) override {
    return source_.TakeInput(listed_.key, report) == Outcome::kDone;
  }
  [[nodiscard]] bool Present() const override {
    return std::ranges::any_of(source_.List(), [&](const Listed& one) { return one.key == listed_.key; });
  }

 private:
  Source& source_;
  Listed listed_;
  std::vector<std::uint8_t> report_;
};

struct KernelShow::Shown {
  Shown(Source& source, const Listed& listed, Carrier kind)
      : model(source, listed), carrier(MakeCarrier(model, kind)) {}

  SourceInterface model;
  std::unique_ptr<KernelCarrier> carrier;
};

// The same for a device on a line.
struct KernelShow::ShownLine {
  ShownLine(Source& source, const ListedLine& shown) : listed(shown), model(source, listed.key) {
    auto made = MakeUsb(model, listed);
    device = made.get();
    carrier = std::make_unique<usb::VhciCarrier>(std::move(made));
  }

  ListedLine listed;
  SourceLine model;
  const usb::Device* device;  // the carrier's
  std::unique_ptr<KernelCarrier> carrier;
};

KernelShow::KernelShow(Source& source) : source_(source) {}

KernelShow::~KernelShow() = default;

// A device is plugged in once: the kernel's user may have detached it.
bool KernelShow::PlugNew() {
  for (const Listed& listed : source_.List()) {
    const auto isIt = [&](const auto& one) { return one->model.GetKey() == listed.key; };
    if (std::ranges::any_of(shown_, isIt)) continue;
    shown_.push_back(std::make_shared<Shown>(source_, listed, carrier_));
    if (!shown_.back()->carrier->Plug()) return false;
  }
  return carrier_ != Carrier::kVhci || PlugNewLines();
}

bool KernelShow::PlugNewLines() {
  for (const ListedLine& listed : source_.Lines()) {
    if (!IsUsb(listed.place)) continue;
    const auto isIt = [&](const auto& one) { return one->listed.key == listed.key; };
    const auto known = std::ranges::find_if(lines_, isIt);
    if (known != lines_.end()) {
      (*known)->listed.manner = listed.manner;
      continue;
    }
    lines_.push_back(std::make_shared<ShownLine>(source_, listed));
    if (!lines_.back()->carrier->Plug()) return false;
  }
  return true;
}

bool KernelShow::AllHaveNodes() const {
  const auto lacks = [](const auto& one) { return one->carrier->Node().empty(); };
  return std::ranges::none_of(shown_, lacks) && std::ranges::none_of(lines_, lacks);
}

bool KernelShow::IsAsked() const {
  std::vector<pollfd> polled;
  AddTo(polled);
  return poll(polled.data(), polled.size(), kPauseMs) > 0;
}

bool KernelShow::Start(Carrier carrier, std::string& problem) {
  carrier_ = carrier;
  if (!PlugNew()) {
    problem = WhyNot(carrier, errno);
    return false;
  }
  const auto end = std::chrono::steady_clock::now() + kPatience;
  // Looks for nodes only while the kernel asks for nothing: each look costs more than an answer.
  while (IsAsked() || !AllHaveNodes()) {
    if (std::chrono::steady_clock::now() > end) {
      problem = "the kernel made no node for a device";
      return false;
    }
    Serve();
  }
  return true;
}

void KernelShow::AddTo(std::vector<pollfd>& polled) const {
  for (const auto& one : shown_) polled.push_back({one->carrier->Fd(), POLLIN, 0});
  for (const auto& one : lines_) polled.push_back({one->carrier->Fd(), POLLIN, 0});
}

// A line that was cut is plugged in again. A later device that cannot be plugged in is missing from the list;
// the others continue.
void KernelShow::Serve() {
  if (carrier_ == Carrier::kHidapi) return;
  for (const auto& one : shown_) one->carrier->Serve();
  for (const auto& one : lines_) one->carrier->Serve();
  const std::vector<ListedLine> lines = source_.Lines();
  std::erase_if(lines_, [&](const auto& one) {
    return !one->device->Present() ||
           std::ranges::find(lines, one->listed.key, &ListedLine::key) == lines.end();
  });
  PlugNew();
}

}  // namespace tavlyn::sim
