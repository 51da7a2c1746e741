#include "tools/tavlynctl/session.h"

#include <algorithm>
#include <array>

#include "api.h"
#include "tools/tavlynctl/hex.h"
#include "tools/tavlynctl/reach/reach.h"
#include "tools/tavlynctl/trouble/error_words.h"

namespace tavlyn::ctl {
namespace {

constexpr std::int16_t kUsbLink = 0;
constexpr std::int16_t kEthernetLink = 2;
constexpr std::uint16_t kReports = 0;  // as GetDevType returns a link

struct NamedProduct {
  std::uint32_t product;
  const char* name;
};

// In the order in which they are searched and numbered.
constexpr NamedProduct kProducts[] = {
    {kReaders, "card reader"}, {kMagstripes, "magstripe reader"}, {kSensors, "sonar sensor"}};

// Devices of the products that were searched before that of the library's table; and the numbers that the
// command may choose from.
int devicesBefore = 0;
int firstFound = 0;
int endOfFound = 0;

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
  constexpr Awaited::Seconds kPortTime(1.5);
  constexpr Awaited::Seconds kAdapterTime(10);
  if (link.kind == LinkKind::kUsb) return Awaited::Seconds(0);
  if (link.kind == LinkKind::kEthernet) return kAdapterTime;
  const Awaited::Seconds port = link.ascii ? kPortTime + SilenceInText(link) : kPortTime;
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
std::string FoundText() {
  const int count = endOfFound - firstFound;
  const std::string first = std::to_string(firstFound);
  if (count == 1) return "device " + first + " was found";
  return "devices " + first + (count == 2 ? " and " : " to ") + std::to_string(endOfFound - 1) +
         " were found";
}

Failure NoSuchDevice(const DeviceName& name) {
  if (name.kind == NameKind::kIndex) {
    return {kNoDevice, FoundText() + ", there is no device " + std::to_string(name.number)};
  }
  return {kNoDevice, FoundText() + ", none has this " + KindText(name) + "; tavlynctl list shows them"};
}

std::string Joined(const std::vector<std::string>& texts) {
  std::string all;
  for (const std::string& one : texts) all += (all.empty() ? "" : "; ") + one;
  return all;
}

// "card reader 0 (…), serial number 0400123456".
std::string CandidateText() {
  const std::string serial = ActiveSerialNumber();
  return ActiveDeviceName() + (serial.empty() ? "" : ", serial number " + serial);
}

// Of the library's table.
void AddCandidates(std::vector<std::string>& all) {
  for (std::int16_t index = 0; SetActDev(index) == 1; ++index) all.push_back(CandidateText());
}

}  // namespace

const char* ProductName(std::uint32_t product) {
  for (const NamedProduct& one : kProducts) {
    if (one.product == product) return one.name;
  }
  return "device";
}

Session::Session(const Link& link, std::uint32_t products, Others others)
    : link_(link), products_(products), others_(others) {
  if ((products & kReaders) != 0) RequirePeer(link);
  devicesBefore = firstFound = endOfFound = 0;
  Next();
}

// On USB the products before a wanted one are searched as well, to count their devices; other links have card
// readers only, and a search there takes long.
bool Session::IsSearched(std::uint32_t product) const {
  if ((products_ & product) != 0) return true;
  return others_ == Others::kCounted && link_.kind == LinkKind::kUsb && products_ > product;
}

void Session::Search(std::uint32_t product) const {
  const Awaited::Seconds usual = SearchTime(link_);
  awaited_.emplace(Where(link_), usual, usual + kMostOfGoneDevice);
  devicesBefore += GetDevCnt();
  if (GetDevCnt() > 0) USBDisconnect();
  SetConnectProduct(product);
  allRead_ = Connect(link_);
  inText_.clear();
  awaited_->Connected();
  if (GetDevCnt() == 0 || !link_.ascii || !DeviceIsReader()) return;
  inText_ = ReadInText(link_);
  allRead_ = std::ranges::count(inText_, InText::kRead) == GetDevCnt();
}

bool Session::Next() const {
  while (next_ < std::size(kProducts)) {
    const std::uint32_t product = kProducts[next_++].product;
    if (!IsSearched(product)) continue;
    Search(product);
    if (GetDevCnt() == 0 || (products_ & product) == 0) continue;
    if (endOfFound == 0) firstFound = devicesBefore;
    endOfFound = devicesBefore + GetDevCnt();
    return true;
  }
  return false;
}

void Session::Restart() const {
  USBDisconnect();
  devicesBefore = 0;
  next_ = 0;
  Next();
}

Failure NotFound(const Link& link, std::uint32_t products) {
  const bool onUsb = link.kind == LinkKind::kUsb;
  const std::string problem = onUsb ? PermissionProblem() : std::string();
  if (!problem.empty()) return {kNoPermission, problem};
  // Ethernet adapters only have card readers.
  const bool mayBeThere = link.kind != LinkKind::kEthernet || (products & kReaders) != 0;
  if (auto unreached = mayBeThere ? ReachProblem(link) : std::nullopt) return *unreached;
  if (link.kind != LinkKind::kEthernet) {
    const Session others(link, kAllProducts & ~products);
    if (GetDevCnt() > 0) return {kUsage, ActiveDeviceName() + " is not a " + Names(products)};
  }
  if (onUsb) return {kNoDevice, "no " + Wanted(products) + " is plugged in"};
  // Sensors are on USB only.
  const std::uint32_t meant = products == kSensors ? products : products & ~kSensors;
  const bool isHopeless = meant == kMagstripes && link.kind == LinkKind::kSerial;
  return {kNoDevice, "no " + Wanted(meant) + " answered " + Where(link) +
                         (isHopeless ? "; one on a serial port is never found, only those on USB" : "")};
}

Session::~Session() { USBDisconnect(); }

void Session::Select(const DeviceChoice& choice) const {
  if (GetDevCnt() == 0) throw NotFound(link_, products_);
  if (awaited_) awaited_->Connected();
  Choose(choice);
  Hold();
}

void Session::Hold() const { locks_.Take(ActiveDevicePath(), ActiveDeviceName()); }

void Session::Choose(const DeviceChoice& choice) const {
  if (choice.word.empty()) return SelectFirst(choice);
  try {
    SelectNamed(ParseDeviceName(choice.word));
  } catch (const Failure& failure) {
    if (!choice.isVariable) throw;
    throw Failure(failure.code, failure.what() + std::string("; ") + kDeviceVariable + " chooses it");
  }
}

// In the library's table.
bool Session::SelectHere(const DeviceName& name) const {
  if (name.kind == NameKind::kIndex) {
    const int index = name.number - devicesBefore;
    return index >= 0 && index < GetDevCnt() && SetActDev(static_cast<std::int16_t>(index)) == 1;
  }
  std::vector<std::int16_t> found;
  for (std::int16_t index = 0; SetActDev(index) == 1; ++index) {
    if (ActiveDeviceIs(name)) found.push_back(index);
  }
  if (found.size() == 1) return SetActDev(found.front()) == 1;
  if (found.empty()) return false;
  std::vector<std::string> same;
  for (const std::int16_t index : found) {
    SetActDev(index);
    same.push_back(CandidateText());
  }
  throw Failure(kUsage,
                "several devices have this " + KindText(name) + ", choose one by its index: " + Joined(same));
}

bool Session::MoreOnUsb() const { return link_.kind == LinkKind::kUsb && Next(); }

void Session::SelectNamed(const DeviceName& name) const {
  do {
    if (SelectHere(name)) return;
  } while (MoreOnUsb());
  const Failure missing = NoSuchDevice(name);
  if (link_.kind != LinkKind::kUsb || products_ == kAllProducts) throw Failure(missing);
  USBDisconnect();
  const Session all(link_, kAllProducts);
  do {
    if (all.SelectHere(name)) throw Failure(kUsage, ActiveDeviceName() + " is not a " + Names(products_));
  } while (all.Next());
  throw Failure(missing);
}

void Session::SelectFirst(const DeviceChoice& choice) const {
  SetActDev(0);
  const bool mayBeMore = link_.kind == LinkKind::kUsb && products_ >= 2 * GetProduct();
  if (!choice.changes || (GetDevCnt() == 1 && !mayBeMore)) return;
  const std::vector<std::string> all = Candidates();
  if (all.size() == 1) return;
  throw Failure(kUsage, std::string("there are several devices, --device chooses one") +
                            (choice.takesAll ? ", --all takes all" : "") + ": " + Joined(all));
}

// Of every product, from the first one on. If there is only one it is active again then.
std::vector<std::string> Session::Candidates() const {
  std::vector<std::string> all;
  const std::size_t before = next_;
  do {
    AddCandidates(all);
  } while (MoreOnUsb());
  if (all.size() == 1 && next_ != before) Restart();
  return all;
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

void Session::RequireRead() const {
  const std::string problem = ReadProblem();
  if (!problem.empty()) throw Failure(kDeviceError, problem);
  if (DeviceIsReader() && !AllConfigurationsRead() && ReadCfg() != 1) throw Failure(kDeviceError, Unread());
}

void Session::Use(const DeviceChoice& choice) const {
  Select(choice);
  RequireRead();
}

void Session::UseForCards(const DeviceChoice& choice) const {
  Select(choice);
  if (inText_.empty() || StateInText() == InText::kSilent) RequireRead();
}

void Session::UseReports(const DeviceChoice& choice) const {
  Use(choice);
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

int ActiveIndex() { return devicesBefore + GetActDev(); }

std::string ActiveDeviceName() {
  std::string identity = GetVidPidVendorName();
  if (!identity.empty()) identity += ", ";
  return std::string(ActiveProductName()) + " " + std::to_string(ActiveIndex()) + " (" + identity +
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
