#include <poll.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <utility>

#include "sim/carriers/uhid.h"
#include "tools/tavlynsim/uhid_show.h"

namespace tavlyn::sim {
namespace {

constexpr std::chrono::seconds kPatience(5);
constexpr int kPauseMs = 5;

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

struct UhidShow::Shown {
  Shown(Source& source, const Listed& listed) : model(source, listed), carrier(model) {}

  SourceInterface model;
  UhidCarrier carrier;
};

UhidShow::UhidShow(Source& source) : source_(source) {}

UhidShow::~UhidShow() = default;

bool UhidShow::PlugNew() {
  for (const Listed& listed : source_.List()) {
    auto at = std::ranges::find(shown_, listed.key, [](const auto& one) { return one->model.GetKey(); });
    if (at == shown_.end()) at = shown_.insert(at, std::make_shared<Shown>(source_, listed));
    if (!(*at)->carrier.Plug()) return false;
  }
  return true;
}

bool UhidShow::AllHaveNodes() const {
  return std::ranges::none_of(shown_, [](const auto& one) { return one->carrier.Node().empty(); });
}

bool UhidShow::Start(std::string& problem) {
  if (!PlugNew()) {
    const bool missing = errno == ENOENT || errno == ENODEV;
    problem = missing ? "/dev/uhid is missing: load the kernel module with \"modprobe uhid\", or use "
                        "--carrier hidapi"
                      : std::string("/dev/uhid: ") + std::strerror(errno);
    return false;
  }
  const auto end = std::chrono::steady_clock::now() + kPatience;
  while (!AllHaveNodes()) {
    if (std::chrono::steady_clock::now() > end) {
      problem = "the kernel made no hidraw node for a device";
      return false;
    }
    std::vector<pollfd> polled;
    AddTo(polled);
    poll(polled.data(), polled.size(), kPauseMs);
    Serve();
  }
  return true;
}

void UhidShow::AddTo(std::vector<pollfd>& polled) const {
  for (const auto& one : shown_) polled.push_back({one->carrier.Fd(), POLLIN, 0});
}

// A later device that cannot be plugged in is missing from the list; the others continue.
void UhidShow::Serve() {
  for (const auto& one : shown_) one->carrier.Serve();
  PlugNew();
}

}  // namespace tavlyn::sim
