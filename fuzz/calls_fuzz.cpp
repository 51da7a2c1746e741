// Programs that call any exports in any order, while devices come, misbehave and go. Each step takes a word
// that says what is done, and then its arguments. After each the state holds together.
#include <cstdlib>
#include <cstring>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "fuzz/arguments.h"
#include "fuzz/connected.h"
#include "fuzz/input.h"
#include "sim/devices/ethernet_adapter.h"
#include "sim/devices/magstripe.h"
#include "sim/devices/reader.h"
#include "sim/devices/reader_ascii.h"
#include "sim/devices/sonar.h"

namespace tavlyn::fuzz {
namespace {

constexpr int kMostSteps = 48;
constexpr std::size_t kMostDevices = 12;

struct Export {
  std::string_view name;
  void (*call)(std::string_view name, Input& input);
};

template <typename Result>
void Drop(Result result) {
  if constexpr (std::is_same_v<Result, const char*>) {
    Require(result == nullptr || std::strlen(result) < 4096);
  } else if constexpr (std::is_pointer_v<Result> && !std::is_const_v<std::remove_pointer_t<Result>>) {
    std::free(result);  // belongs to the caller
  }
}

template <auto function>
struct Caller;
template <typename Result, typename... Parameters, Result (*function)(Parameters...)>
struct Caller<function> {
  template <std::size_t kAt>
  static constexpr bool HasLength() {
    using All = std::tuple<Parameters..., void*>;
    return std::is_pointer_v<std::tuple_element_t<kAt, All>> &&
           std::is_integral_v<std::tuple_element_t<kAt + 1, All>>;
  }
  template <std::size_t... kAt>
  static void Call(Arguments& arguments, std::index_sequence<kAt...> /*at*/) {
    // The braces fix the order.
    const std::tuple<Parameters...> values{arguments.Make<Parameters, HasLength<kAt>()>()...};
    if constexpr (std::is_void_v<Result>) {
      std::apply(function, values);
    } else {
      Drop(std::apply(function, values));
    }
  }
  static void Run(std::string_view name, Input& input) {
    Arguments arguments(name, input);
    Call(arguments, std::index_sequence_for<Parameters...>{});
  }
};

constexpr Export kExports[] = {
#define EXPORT(name) {#name, Caller<&::name>::Run},
#include "exports.inc"
#undef EXPORT
};

// The devices of a run, and what happens to them.
class World {
 public:
  World() {
    host.sockets.accepts = [this](platform::Address peer) { return acceptsAt_ == peer.ip[3]; };
    host.sockets.device = &adapter_;
    host.ports.clock = &host.clock;
    host.usb.device = &bulk_;
  }

  void Happen(Input& input) {
    using Event = void (World::*)(std::uint8_t);
    constexpr Event kEvents[] = {&World::Plug,   &World::Plug,   &World::Unplug, &World::Fault,
                                 &World::Serve,  &World::Card,   &World::Pass,   &World::Arrive,
                                 &World::Depart, &World::Search, &World::Change};
    const std::uint8_t event = input.Byte();
    (this->*kEvents[event % std::size(kEvents)])(input.Byte());
  }

 private:
  void Plug(std::uint8_t kind) {
    if (plugged_ == kMostDevices) return;
    const std::string path = "device-" + std::to_string(++plugged_);
    std::shared_ptr<sim::Model> model;
    switch (kind % 5) {
      case 0: model = sim::Reader::Plain(); break;
      case 1: model = sim::Reader::Plus(1 + kind / 5 % 11); break;
      case 2: model = sim::Reader::Kelda(); break;
      case 3: model = std::make_shared<sim::Magstripe>(); break;
      default: model = std::make_shared<sim::Sonar>(); break;
    }
    host.hid.Plug(path, model);
    models_.push_back(model);
  }
  void Unplug(std::uint8_t which) { host.hid.Unplug(PathOf(which)); }
  void Fault(std::uint8_t when) {
    if (!models_.empty())
      models_[when % models_.size()]->faults.RefuseAt(
          models_[when % models_.size()]->faults.Exchanges() + 1 + when / 8, 1 + when % 8);
  }
  // A port with a reader in frames or text, the network's adapter, the bulk device; or they are gone again.
  void Serve(std::uint8_t where) {
    host.ports.present.clear();
    acceptsAt_ = -1;
    host.usb.loads = host.usb.present = (where & 8) != 0;
    if ((where & 1) != 0) host.ports.present[static_cast<std::uint16_t>(1 + where / 16)] = &frames_;
    if ((where & 2) != 0) host.ports.present[static_cast<std::uint16_t>(2 + where / 16)] = &text_;
    if ((where & 4) != 0) acceptsAt_ = 5;
    SetIpPort(10, 0, 0, 5, 10001);
    SetDevTypeSrch(static_cast<std::int16_t>(where % 4 - 1));
  }
  void Card(std::uint8_t byte) {
    shared_->PutCard({byte, 2, 3}, 26);
    for (const auto& model : models_) {
      if (auto* reader = dynamic_cast<sim::Reader*>(model.get())) reader->PutCard({byte, 2, 3, 4}, 26);
      if (auto* stripe = dynamic_cast<sim::Magstripe*>(model.get())) stripe->Swipe({});
    }
  }
  void Pass(std::uint8_t seconds) { host.clock.tick += std::uint64_t{seconds} * 1000; }
  void Arrive(std::uint8_t which) { ChkAddArrival(PathOf(which).c_str()); }
  void Depart(std::uint8_t which) { ChkDelRemoval(PathOf(which).c_str()); }
  void Search(std::uint8_t products) {
    SetConnectProduct(products % 8U);
    USBConnect(nullptr);
  }
  void Change(std::uint8_t which) { SetActDev(static_cast<std::int16_t>(which % (GetDevCnt() + 1))); }

  [[nodiscard]] std::string PathOf(std::uint8_t which) const {
    return "device-" + std::to_string(1 + which % kMostDevices);
  }

  Loaded loaded_;
  sim::VirtualHost& host = loaded_.host;
  std::shared_ptr<sim::Reader> shared_ = sim::Reader::Plain();
  sim::ReaderFa frames_{shared_};
  sim::ReaderAscii text_{shared_};
  sim::EthernetAdapter adapter_{shared_};
  sim::ReaderFa bulk_{shared_};
  std::vector<std::shared_ptr<sim::Model>> models_;
  std::size_t plugged_ = 0;
  int acceptsAt_ = -1;
};

// It asks every address of a range, three times each.
bool TakesLong(std::string_view name) { return name == "FindXport"; }

void Live(Input input) {
  RemoveMemoryFiles();
  MemoryFile::Fill("/--- Tavlyn and OEM Reader Configuration Template File ---\n");
  World world;
  for (int step = 0; step < kMostSteps && !input.IsEmpty(); ++step) {
    const std::uint16_t what = input.Word();
    if (what % 4 == 0) {
      world.Happen(input);
    } else {
      const Export& exported = kExports[what / 4 % std::size(kExports)];
      if (!TakesLong(exported.name)) exported.call(exported.name, input);
    }
    CheckState();
  }
}

}  // namespace
}  // namespace tavlyn::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  tavlyn::fuzz::Live({data, size});
  return 0;
}
