// Connecting over serial ports without the other stages of a connect.
#include "api.h"
#include "core/openings.h"
#include "core/trace.h"
#include "hid/vidpid_table.h"
#include "links/com_search.h"
#include "links/link_socket.h"
#include "links/serial_port.h"

namespace tavlyn {
namespace {

bool Wanted(const Product& product) {
  return (shared.search.ConnectMask & product.kind) != 0 && product.searchPorts != nullptr;
}

void StoreDid(std::uint32_t* did) {
  if (did != nullptr) *did = EntryOfActDev().DID;
}

// A search counts only when it has changed the table.
bool SearchRange(const Product& product) {
  const std::int16_t before = shared.DevCnt;
  if (!product.searchPorts() || shared.DevCnt == before) return false;
  Activate(0);
  return true;
}

bool SearchPort(const Product& product, std::uint16_t port) {
  if (shared.DevCnt != 0 || port == 0) return false;
  const std::uint16_t low = shared.search.ComSrchLo;
  const std::uint16_t high = shared.search.ComSrchHi;
  shared.search.ComSrchLo = shared.search.ComSrchHi = port;
  const bool found = product.searchPorts() && shared.DevCnt > 0;
  shared.search.ComSrchLo = low;
  shared.search.ComSrchHi = high;
  if (found) {
    Activate(0);
    return true;
  }
  shared.SearchErr |= TAVLYN_ERR_CONNECT;
  if (product.portFailureTag != nullptr) LogErrorCode(product.portFailureTag);
  return false;
}

bool ReadFound(const char* tag) {
  for (std::int16_t index = 0; index < shared.DevCnt; ++index) {
    shared.ActDev = index;
    if (ReadCfgLocked() != 0) continue;
    shared.SearchErr |= TAVLYN_ERR_CONNECT;
    LogErrorCode(tag);
    shared.ActDev = 0;
    return false;
  }
  shared.ActDev = 0;
  return true;
}

template <typename SearchFamily>
bool SearchFamilies(SearchFamily search) {
  bool found = false;
  for (const Product* product : kProducts) {
    if (!Wanted(*product)) continue;
    if (product->usb.byVidPidTable) LoadVidPidTable();
    found = search(*product) || found;
  }
  return found;
}

// The active device's family if it has a search of the ports, or null.
const Product* ActiveWithPorts() {
  const Product* product = ActiveProduct();
  return product != nullptr && product->searchPorts != nullptr ? product : nullptr;
}

void EmptyTableForPorts() {
  shared.ActDev = 0;
  shared.DevCnt = 0;
  shared.HidFoundCnt = 0;
}

}  // namespace
}  // namespace tavlyn

using namespace tavlyn;

std::uint32_t ComConnect(std::uint32_t* pDID) {
  EmptyTableForPorts();
  const bool found = SearchFamilies(SearchRange);
  // Always asked, even when nothing was found.
  for (const Product* product : kProducts) {
    if (product->classify != nullptr) product->classify();
  }
  if (!ReadFound("ComConnect") || !found) return 0;
  StoreDid(pDID);
  return 1;
}

std::uint32_t ComConnectPort(std::uint16_t port, std::uint32_t* pDID) {
  // With devices in the table nothing is emptied, opened or read.
  if (shared.DevCnt > 0) return 0;
  EmptyTableForPorts();
  const bool found = SearchFamilies([&](const Product& product) { return SearchPort(product, port); });
  if (!ReadFound("ComConnectPort") || !found) return 0;
  StoreDid(pDID);
  return 1;
}

std::uint32_t comConnect() {
  const Product* product = ActiveWithPorts();
  if (product == nullptr) return shared.UnsupportedValue;
  return SearchRange(*product) ? 1 : 0;
}

std::uint32_t comConnectPort(std::uint16_t port) {
  const Product* product = ActiveWithPorts();
  if (product == nullptr) return shared.UnsupportedValue;
  // Deliberately never finds anything, because it needs both an active device and an empty table; programs
  // rely on the results.
  return SearchPort(*product, port) ? 1 : 0;
}

std::uint32_t ComDisconnect() {
  const Product* product = ActiveWithPorts();
  if (product == nullptr) return shared.UnsupportedValue;
  if (product->hasTunnel) CloseTunnel();
  SerialPort* port = EntryOfActDev().pSerialPort;
  return port != nullptr && port->Close() ? 1 : 0;
}
