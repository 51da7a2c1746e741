// The carrier itself, driven by the system's hidapi: what the simulated devices look like from outside must
// be what the real ones look like, whatever library asks.
#include <hidapi/hidapi.h>

#include <array>
#include <numeric>
#include <optional>
#include <string>
#include <vector>

#include "tests/kernel/bind.h"
#include "tests/kernel/bus.h"
#include "tests/kernel/checks.h"
#include "tests/kernel/mirror.h"
#include "tests/kernel/sections.h"

namespace tavlyn::kernel {
namespace {

using Bytes = std::vector<std::uint8_t>;

struct Hidapi {
  decltype(&hid_init) init;
  decltype(&hid_exit) exit;
  decltype(&hid_enumerate) enumerate;
  decltype(&hid_free_enumeration) freeEnumeration;
  decltype(&hid_open_path) openPath;
  decltype(&hid_close) close;
  decltype(&hid_send_feature_report) send;
  decltype(&hid_get_feature_report) get;
  decltype(&hid_read_timeout) read;
};

bool BindHidapi(Hidapi& hid) {
  void* library = dlopen("libhidapi-hidraw.so.0", RTLD_NOW);
  return library != nullptr && Bind(library, "hid_init", hid.init) && Bind(library, "hid_exit", hid.exit) &&
         Bind(library, "hid_enumerate", hid.enumerate) &&
         Bind(library, "hid_free_enumeration", hid.freeEnumeration) &&
         Bind(library, "hid_open_path", hid.openPath) && Bind(library, "hid_close", hid.close) &&
         Bind(library, "hid_send_feature_report", hid.send) &&
         Bind(library, "hid_get_feature_report", hid.get) && Bind(library, "hid_read_timeout", hid.read);
}

// "path usage page/usage …" of each path that has this identity.
std::vector<std::string> Listed(const Hidapi& hid, const sim::HidIdentity& identity) {
  std::vector<std::string> paths;
  std::string last;
  hid_device_info* const first = hid.enumerate(identity.vid, identity.pid);
  for (const hid_device_info* info = first; info != nullptr; info = info->next) {
    if (info->path != last) paths.emplace_back(last = info->path);
    std::array<char, 16> usage{};
    (void)std::snprintf(usage.data(), usage.size(), " %04X/%04X", info->usage_page, info->usage);
    paths.back() += usage.data();
  }
  hid.freeEnumeration(first);
  return paths;
}

Bytes Counted(std::uint8_t id, std::size_t payload) {
  Bytes report(payload + 1);
  std::iota(report.begin(), report.end(), std::uint8_t{0x10});
  report[0] = id;
  return report;
}

// A send and a get of the whole feature report, and what both ends saw.
void CheckExchange(const Hidapi& hid, hid_device* device, Bus& bus, Mirror& model, const std::string& who) {
  const std::size_t payload = model.Identity().featureBytes;
  const std::uint8_t id = model.Identity().reportId;
  const Bytes sent = Counted(id, payload);
  const auto whole = static_cast<long long>(sent.size());
  CheckEqual(hid.send(device, sent.data(), sent.size()), whole, who + ": a report is sent whole");
  Check(bus.Locked([&] { return model.received == Bytes(sent.begin() + 1, sent.end()); }),
        who + ": the device receives the payload without the report ID");

  Bytes got(payload + 1, 0xEE);
  got[0] = id;
  Bytes wanted = sent;
  for (std::size_t i = 1; i < wanted.size(); ++i) wanted[i] = static_cast<std::uint8_t>(~wanted[i]);
  CheckEqual(hid.get(device, got.data(), got.size()), whole, who + ": a report is fetched whole");
  Check(got == wanted, who + ": the payload begins at byte 1, behind the report ID");
}

hid_device* OpenListed(const Hidapi& hid, const std::string& node, const std::string& who) {
  hid_device* device = hid.openPath(node.c_str());
  Check(device != nullptr, who + ": the node opens");
  return device;
}

void PlainReader(const Hidapi& hid, Bus& bus) {
  const std::string who = "vendor page, no report ID";
  Mirror model({0x7A31, 0x3BFA, {{0xFFA0, 0xA000}}, 0, 8, "Mirror", "SN-1"});
  auto plugged = std::make_optional<Plugged>(bus, model);
  const std::string node = plugged->Node();
  Check(Listed(hid, model.Identity()) == std::vector<std::string>{node + " FFA0/A000"},
        who + ": listed with its usage");
  hid_device* device = OpenListed(hid, node, who);
  if (device == nullptr) return;
  CheckExchange(hid, device, bus, model, who);

  bus.Locked([&] { model.refusing = true; });
  Bytes report = Counted(0, 8);
  CheckEqual(hid.send(device, report.data(), report.size()), -1, who + ": a refused send");
  CheckEqual(hid.get(device, report.data(), report.size()), -1, who + ": a refused get");

  plugged.reset();
  CheckEqual(hid.send(device, report.data(), report.size()), -1, who + ": a send after the unplugging");
  CheckEqual(hid.read(device, report.data(), report.size(), 0), -1, who + ": a read after the unplugging");
  hid.close(device);
  Check(Listed(hid, model.Identity()).empty(), who + ": listed no more");
}

void KeyboardReport(const Hidapi& hid, Bus& bus) {
  const std::string who = "keyboard with 24 bytes";
  Mirror model({0x7A31, 0x1000, {{0x0001, 0x0006}}, 0, 24, "Mirror", ""});
  const Plugged plugged(bus, model);
  const std::string& node = plugged.Node();
  Check(Listed(hid, model.Identity()) == std::vector<std::string>{node + " 0001/0006"},
        who + ": listed with its usage");
  hid_device* device = OpenListed(hid, node, who);
  if (device == nullptr) return;
  CheckExchange(hid, device, bus, model, who);
  hid.close(device);
}

void TwoCollections(const Hidapi& hid, Bus& bus) {
  const std::string who = "two collections, report ID 1";
  Mirror model({0x7A31, 0x3BFB, {{0x0001, 0x0006}, {0xFFA0, 0xA000}}, 1, 8, "Mirror", ""});
  const Plugged plugged(bus, model);
  const std::string& node = plugged.Node();
  Check(Listed(hid, model.Identity()) == std::vector<std::string>{node + " 0001/0006 FFA0/A000"},
        who + ": one path with both usages");
  hid_device* device = OpenListed(hid, node, who);
  if (device == nullptr) return;
  CheckExchange(hid, device, bus, model, who);
  const Bytes keyboard = Counted(2, 8);
  CheckEqual(hid.send(device, keyboard.data(), keyboard.size()), -1, who + ": no report under another ID");

  Bytes input(9, 0);
  bus.Locked([&] { model.input.push_back(Counted(1, 8)); });
  CheckEqual(hid.read(device, input.data(), input.size(), 1000), 9, who + ": an input report arrives");
  Check(input == Counted(1, 8), who + ": with its report ID first");
  CheckEqual(hid.read(device, input.data(), input.size(), 0), 0, who + ": then nothing is queued");

  bus.Locked([&] { model.present = false; });
  CheckEqual(hid.read(device, input.data(), input.size(), 1000), -1, who + ": a read ends when it vanishes");
  hid.close(device);
}

}  // namespace

void CarrierChecks() {
  Hidapi hid{};
  if (!BindHidapi(hid)) {
    Check(false, "libhidapi-hidraw.so.0 is there");
    return;
  }
  CheckEqual(hid.init(), 0, "hidapi starts");
  Bus bus;
  PlainReader(hid, bus);
  KeyboardReport(hid, bus);
  TwoCollections(hid, bus);
  hid.exit();
}

}  // namespace tavlyn::kernel
