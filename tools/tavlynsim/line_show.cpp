#include "tools/tavlynsim/line_show.h"

#include <algorithm>

#include "sim/carriers/ethernet.h"
#include "tools/printable.h"
#include "tools/tavlynsim/run.h"
#include "tools/tavlynsim/source_line.h"
#include "tools/tavlynsim/standins.h"

namespace tavlyn::sim {
namespace {

constexpr std::uint8_t kLoopback = 127;

std::string IpText(const LinePlace& place) {
  std::string text;
  for (const std::uint8_t octet : place.ip) text += (text.empty() ? "" : ".") + std::to_string(octet);
  return text;
}

std::unique_ptr<Served> MakeAdapter(ByteDevice& device, const LinePlace& place, bool exposed,
                                    std::string& problem) {
  if (!exposed && place.ip[0] != kLoopback) {
    problem = IpText(place) + " is beyond the loopback, others could use the device; --expose permits it";
    return nullptr;
  }
  auto adapter =
      std::make_unique<EthernetCarrier>(device, AdapterIdentity{kWedgeMac, place.ip}, place.number);
  if (adapter->IsPlugged()) return adapter;
  problem = adapter->Problem();
  return nullptr;
}

}  // namespace

struct LineShow::Shown {
  Shown(Source& source, Key key) : model(source, key) {}

  // False on an error, which problem then describes.
  bool Plug(const LinePlace& place, const std::string& portFolder, bool exposed, std::string& problem) {
    if (IsUsb(place)) return true;
    carrier = place.kind == LineKind::kEthernet ? MakeAdapter(model, place, exposed, problem)
                                                : MakePort(model, portFolder, place.number, problem);
    return carrier != nullptr;
  }

  SourceLine model;
  std::unique_ptr<Served> carrier;  // null for a USB device, or if it failed
};

std::string ReachedBy(const LinePlace& place) {
  if (place.magstripe) {
    return "(a magnetic-stripe reader on COM" + std::to_string(place.number) + ", where no search finds one)";
  }
  switch (place.kind) {
    case LineKind::kCom: return "tavlynctl --com " + std::to_string(place.number) + " read";
    case LineKind::kComAscii: return "tavlynctl --com " + std::to_string(place.number) + " --ascii read";
    case LineKind::kEthernet:
      return "tavlynctl --ip " + IpText(place) + ":" + std::to_string(place.number) + " watch";
    case LineKind::kAcm: return "tavlynctl --com 10-19 read";
    case LineKind::kBulk: break;
  }
  return "tavlynctl read";
}

bool LineShow::Start(const std::string& portFolder, std::string& problem) {
  portFolder_ = portFolder;
  return PlugNew(problem);
}

bool LineShow::PlugNew(std::string& problem) {
  bool all = true;
  for (const ListedLine& listed : source_.Lines()) {
    auto at = std::ranges::find(shown_, listed.key, [](const auto& one) { return one->model.GetKey(); });
    if (at == shown_.end()) {
      at = shown_.insert(at, std::make_shared<Shown>(source_, listed.key));
      if (!(*at)->Plug(listed.place, portFolder_, exposed_, problem)) {
        problem.insert(0, "a device for \"" + ReachedBy(listed.place) + "\": ");
        all = false;
      }
    }
    if ((*at)->carrier != nullptr) (*at)->carrier->Manner() = listed.manner;
  }
  return all;
}

void LineShow::AddTo(std::vector<pollfd>& polled) const {
  for (const auto& one : shown_) {
    if (one->carrier != nullptr) one->carrier->AddTo(polled);
  }
}

DueTime LineShow::NextDue() const {
  DueTime next;
  for (const auto& one : shown_) {
    if (one->carrier != nullptr) next = Sooner(next, one->carrier->NextDue());
  }
  return next;
}

void LineShow::Serve() {
  const std::vector<ListedLine> lines = source_.Lines();
  std::erase_if(shown_, [&](const auto& one) {
    return std::ranges::find(lines, one->model.GetKey(), &ListedLine::key) == lines.end();
  });
  std::string problem;
  if (!PlugNew(problem)) Tell(kProgram, problem);
  for (const auto& one : shown_) {
    if (one->carrier != nullptr) one->carrier->Serve();
  }
}

}  // namespace tavlyn::sim
