#include "tools/tavlynctl/session.h"

#include <algorithm>
#include <array>

#include "api.h"
#include "tools/tavlynctl/error_words.h"
#include "tools/tavlynctl/hex.h"
#include "tools/tavlynctl/reach.h"

namespace tavlyn::ctl {
namespace {

constexpr std::int16_t kUsbLink = 0;
constexpr std::int16_t kEthernetLink = 2;
constexpr std::uint16_t kReports = 0;  // as GetDevType returns a link

struct NamedProduct {
  std::uint32_t product;
  const char* name;
};

// In the order in which they are searched.
constexpr NamedProduct kProducts[] = {
    {kReaders, "card reader"}, {kMagstripes, "magstripe reader"}, {kSensors, "sonar sensor"}};

// A connect reads every configuration of the first plus reader, but only one of each later reader.
bool AllConfigurationsRead() {
  for (int index = 0; index <= GetMaxConfig(); ++index) {
    const SelectedConfiguration selected(index);
    tsCfgFlags flags{};
    if (GetFlags(&flags) != 1) return false;
  }
  return true;
}

std::string Unread() {
  return "the configuration of " + ActiveDeviceName() + " could not be read, " + ErrorText();
}

// A plus reader that has gone away is still asked for each of its configurations, several times.
constexpr Awaited::Seconds kMostOfGoneDevice(180);

// How long a search takes if nobody answers, or if somebody answers in another dialect.
Awaited::Seconds SearchTime(const Link& link) {
  constexpr Awaited::Seconds kPort(1.5);
  constexpr Awaited::Seconds kAdapter(10);
  if (link.kind == LinkKind::kUsb) return Awaited::Seconds(0);
  if (link.kind == LinkKind::kEthernet) return kAdapter;
  const Awaited::Seconds port = link.ascii ? kPort + SilenceInText(link) : kPort;
  return (link.lastPort - link.firstPort + 1) * port;
}

// Whether everything that was found could be read, too.
bool Connect(const Link& link) {
  if (link.kind == LinkKind::kSerial) {
    SetBaudRate(link.baud);
    SetComSrchRange(link.firstPort, link.lastPort);
    return ComConnect(nullptr) == 1;
  }
  if (link.kind == LinkKind::kEthernet) {
    SetDevTypeSrch(kEthernetLink);
    SetIpPort(link.ip[0], link.ip[1], link.ip[2], link.ip[3], link.tcpPort);
  } else {
    SetDevTypeSrch(kUsbLink);
  }
  return USBConnect(nullptr) == 1;
}

// True if something was found; allRead then says whether all of it could be read.
bool Search(const Link& link, std::uint32_t products, bool& allRead) {
  for (const NamedProduct& one : kProducts) {
    if ((products & one.product) == 0) continue;
    SetConnectProduct(one.product);
    allRead = Connect(link);
    if (GetDevCnt() > 0) return true;
  }
  return false;
}

// "card reader or sonar sensor".
std::string Names(std::uint32_t products) {
  std::string names;
  for (const NamedProduct& one : kProducts) {
    if ((products & one.product) != 0) names += (names.empty() ? "" : " or ") + std::string(one.name);
  }
  return names;
}

// The same if nothing at all was found.
std::string Wanted(std::uint32_t products) {
  if (products == kMagstripes || products == kSensors) return Names(products);
  return (products & kSensors) == 0 ? "reader" : "device";
}

// "devices 0 and 1 were found".
std::string FoundText(int count) {
  if (count == 1) return "device 0 was found";
  return std::string("devices 0 ") + (count == 2 ? "and" : "to") + " " + std::to_string(count - 1) +
         " were found";
}

}  // namespace

const char* ProductName(std::uint32_t product) {
  for (const NamedProduct& one : kProducts) {
    if (one.product == product) return one.name;
  }
  return "device";
}

Session::Session(const Link& link, std::uint32_t products) : link_(link), products_(products) {
  if ((products & kReaders) != 0) RequirePeer(link);
  const Awaited::Seconds usual = SearchTime(link);
  awaited_.emplace(Where(link), usual, usual + kMostOfGoneDevice);
  const bool found = Search(link, products, allRead_);
  awaited_->Connected();
  if (!found || !link.ascii || !DeviceIsReader()) return;
  inText_ = ReadInText(link);
  allRead_ = std::ranges::count(inText_, InText::kRead) == GetDevCnt();
}

Failure NotFound(const Link& link, std::uint32_t products) {
  const bool onUsb = link.kind == LinkKind::kUsb;
  const std::string problem = onUsb ? PermissionProblem() : std::string();
  if (!problem.empty()) return {kNoPermission, problem};
  // Ethernet adapters only have card readers.
  const bool mayBeThere = link.kind != LinkKind::kEthernet || (products & kReaders) != 0;
  if (auto unreached = mayBeThere ? ReachProblem(link) : std::nullopt) return *unreached;
  bool read = false;
  if (link.kind != LinkKind::kEthernet && Search(link, kAllProducts & ~products, read)) {
    Failure other(kUsage, ActiveDeviceName() + " is not a " + Names(products));
    USBDisconnect();
    return other;
  }
  if (onUsb) return {kNoDevice, "no " + Wanted(products) + " is plugged in"};
  // Sensors are on USB only.
  const std::uint32_t meant = products == kSensors ? products : products & ~kSensors;
  const bool isHopeless = meant == kMagstripes && link.kind == LinkKind::kSerial;
  return {kNoDevice, "no " + Wanted(meant) + " answered " + Where(link) +
                         (isHopeless ? "; one on a serial port is never found, only those on USB" : "")};
}

Session::~Session() { USBDisconnect(); }

void Session::Select(int index) const {
  const int count = GetDevCnt();
  if (count == 0) throw NotFound(link_, products_);
  if (index >= 0 && index < count && SetActDev(static_cast<std::int16_t>(index)) == 1) return;
  throw Failure(kNoDevice, FoundText(count) + ", there is no device " + std::to_string(index));
}

std::string Session::ReadProblem() const {
  if (allRead_) return {};
  if (!inText_.empty()) {
    const InText state = StateInText();
    if (state == InText::kSilent) return ActiveDeviceName() + " does not speak the text dialect";
    return state == InText::kRead ? std::string() : Unread();
  }
  if (!DeviceIsReader()) return ReadCfg() == 1 ? std::string() : Unread();
  const bool tried = (GetLastLibErr() & TAVLYN_ERR_CONFIG_READ) != 0;
  const std::string problem = Unread();
  // Configuration 0 is read last, and a record get works only if it was read; the error word by itself may be
  // about a text.
  tsCfgFlags flags{};
  if (GetActConfig() == 0 && GetFlags(&flags) == 1) return {};
  if (!tried && ReadCfg() == 1) return {};
  return tried ? problem : Unread();
}

InText Session::StateInText() const {
  const auto index = static_cast<std::size_t>(GetActDev());
  return index < inText_.size() ? inText_[index] : InText::kSilent;
}

void Session::Use(int index) const {
  Select(index);
  const std::string problem = ReadProblem();
  if (!problem.empty()) throw Failure(kDeviceError, problem);
  if (DeviceIsReader() && !AllConfigurationsRead() && ReadCfg() != 1) throw Failure(kDeviceError, Unread());
}

void Session::UseForCards(int index) const {
  Select(index);
  if (inText_.empty() || StateInText() == InText::kSilent) Use(index);
}

void Session::UseReports(int index) const {
  Use(index);
  if (GetDevType() != kReports) {
    throw Failure(kUsage, ActiveDeviceName() + " can be asked for this only as a HID device");
  }
}

void CheckConfiguration(int index) {
  const int highest = GetMaxConfig();
  if (index >= 0 && index <= highest) return;
  throw Failure(kUsage,
                ActiveDeviceName() + (highest == 0 ? " has only configuration 0"
                                                   : " has configurations 0 to " + std::to_string(highest)));
}

void RequirePlusReader() {
  if (GetCardType() < 0) throw Failure(kUsage, ActiveDeviceName() + " is not a plus reader");
}

SelectedConfiguration::SelectedConfiguration(int index) : before_(static_cast<std::uint8_t>(GetActConfig())) {
  CheckConfiguration(index);
  SetActConfig(static_cast<std::uint8_t>(index));  // refused by a plain reader, which has only one
}

SelectedConfiguration::~SelectedConfiguration() { SetActConfig(before_); }

const char* ActiveProductName() { return ProductName(GetProduct()); }

bool DeviceIsReader() { return GetProduct() == kReaders; }

std::string ActiveDevicePath() {
  std::array<char, 513> name{};
  GetDevName(name.data());
  return name.data();
}

std::string ActiveDeviceName() {
  std::string identity = GetVidPidVendorName();
  if (!identity.empty()) identity += ", ";
  return std::string(ActiveProductName()) + " " + std::to_string(GetActDev()) + " (" + identity +
         ActiveDevicePath() + ")";
}

std::string ErrorText() {
  const std::uint32_t word = GetLastLibErr();
  return "error word 0x" + Hex(word, 1) + ": " + ErrorWords(word);
}

Failure Failed(const std::string& what) {
  return {kDeviceError, what + " of " + ActiveDeviceName() + " failed, " + ErrorText()};
}

Failure NotTransferred(const std::string& what) {
  return {kDeviceError, what + " " + ActiveDeviceName() + ", " + ErrorText()};
}

Failure Lacks(const std::string& what) { return {kUsage, ActiveDeviceName() + " has no " + what}; }

}  // namespace tavlyn::ctl
