#include "sim/carriers/usb/hid_function.h"

#include <algorithm>
#include <utility>

#include "sim/carriers/report_descriptor.h"

namespace tavlyn::sim::usb {
namespace {

constexpr std::uint8_t kFirstInput = kIn | 1;
constexpr std::uint8_t kFeature = 3;  // a kind of report

Interface InterfaceOf(const HidIdentity& identity, std::size_t number) {
  const bool types = std::ranges::any_of(identity.usages, IsKeyboard);
  Interface interface { kHidClass, 0, 0 };
  if (types) interface.subclass = interface.protocol = 1;  // a keyboard that a BIOS can use
  interface.report = ReportDescriptor(identity);
  const std::size_t length = interface.report.size();
  interface.own = {9, 0x21, 0x11, 0x01, 0, 1, 0x22, Low(length), High(length)};
  interface.endpoints = {{Low(kFirstInput + number), kInterrupt, 64, 10}};
  return interface;
}

bool GetFeature(HidDevice& model, std::uint8_t id, Bytes& data) {
  if (id != model.Identity().reportId) return false;
  data.assign(model.Identity().featureBytes, 0);
  if (!model.GetFeature(data)) return false;
  // On the wire an unnumbered report has no byte for its number.
  if (id != 0) data.insert(data.begin(), id);
  return true;
}

bool SetFeature(HidDevice& model, std::uint8_t id, std::span<const std::uint8_t> data) {
  if (id != model.Identity().reportId || (id != 0 && (data.empty() || data.front() != id))) return false;
  return model.SetFeature(data.subspan(id != 0 ? 1 : 0));
}

}  // namespace

HidFunction::HidFunction(std::vector<HidDevice*> models) : models_(std::move(models)) {
  const HidIdentity& first = models_.front()->Identity();
  face_ = {first.vid, first.pid, 0, first.product, first.serial, {}};
  for (std::size_t i = 0; i < models_.size(); ++i) {
    face_.interfaces.push_back(InterfaceOf(models_[i]->Identity(), i));
  }
}

bool HidFunction::Control(const Setup& setup, Bytes& data) {
  constexpr std::uint16_t kToInterface = 0x2100;
  constexpr std::uint16_t kFromInterface = 0xA100;
  if (setup.index >= models_.size()) return false;
  HidDevice& model = *models_[setup.index];
  const bool feature = High(setup.value) == kFeature;
  switch (setup.type << 8U | setup.request) {
    case kFromInterface | 0x01: return feature && GetFeature(model, Low(setup.value), data);
    case kToInterface | 0x09: return feature && SetFeature(model, Low(setup.value), data);
    case kToInterface | 0x0A:  // how often to repeat, and whether a BIOS is the host
    case kToInterface | 0x0B: return true;
    default: return false;
  }
}

Bytes HidFunction::In(std::uint8_t endpoint, std::size_t most) {
  Bytes report;
  if (!models_[static_cast<std::size_t>(endpoint - kFirstInput)]->TakeInput(report)) return {};
  report.resize(std::min(report.size(), most));
  return report;
}

bool HidFunction::Present() const {
  return std::ranges::all_of(models_, [](const HidDevice* model) { return model->Present(); });
}

}  // namespace tavlyn::sim::usb
