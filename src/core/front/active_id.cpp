// The active ID: a gate that keeps polls from reaching the device too often, with a cache of one entry.
#include <algorithm>
#include <cstring>

#include "api.h"
#include "core/lock.h"
#include "core/openings.h"
#include "core/state.h"
#include "core/trace.h"

namespace tavlyn {
namespace {

// A device that was accessed less than this ago is left alone.
constexpr std::uint64_t kGateMs = 235;

using Operation = std::uint16_t (*Product::*)(std::uint8_t*, std::int16_t);

enum class Gate { kOpen, kCached, kExpired };

Gate GateNow() {
  tsDevEntry& entry = EntryOfActDev();
  // A tick counter that has wrapped gives a huge age and so counts as long past.
  const std::uint64_t age = platform::TheHost().clock.Tick() - entry.LastTxTick;
  if (age >= kGateMs) return Gate::kOpen;
  const std::int16_t hold = entry.ActiveSlot()[field::TimeParms_iIDHoldTO];
  return static_cast<std::int64_t>(age) < hold ? Gate::kCached : Gate::kExpired;
}

void ForgetId() {
  shared.id.LastIDBytes.fill(0);
  shared.id.LastIDBits = 0;
}

// How much of the caller's buffer the cache holds.
std::size_t CachedLength(std::int16_t length) {
  return static_cast<std::size_t>(std::min<std::int16_t>(length, kIdBytes));
}

std::uint32_t Serve(std::uint8_t* buffer, std::int16_t length) {
  std::memmove(buffer, shared.id.LastIDBytes.data(), CachedLength(length));
  return shared.id.LastIDBits;
}

std::uint32_t Expire(std::uint8_t* buffer, std::int16_t length) {
  std::memset(buffer, 0, static_cast<std::size_t>(length));
  ForgetId();
  return 0;
}

std::uint32_t Fetch(Operation operation, std::uint8_t* buffer, std::int16_t length) {
  const auto fetch = RoutineOf(EntryOfActDev(), operation);
  if (fetch == nullptr) return shared.UnsupportedValue;
  const std::uint16_t bits = fetch(buffer, length);
  const std::size_t kept = CachedLength(length);
  std::memmove(shared.id.LastIDBytes.data(), buffer, kept);
  std::fill(shared.id.LastIDBytes.begin() + kept, shared.id.LastIDBytes.end(), std::uint8_t{0});
  shared.id.LastIDBits = static_cast<std::uint32_t>(static_cast<std::int16_t>(bits));
  return bits;
}

std::uint32_t Read(Operation operation, std::uint8_t* buffer, std::int16_t length) {
  std::uint8_t nowhere = 0;
  if (buffer == nullptr || length < 0) {
    buffer = &nowhere;
    length = 0;
  }
  const Locked lock;
  if (!ActiveInRange()) return shared.UnsupportedValue;
  switch (GateNow()) {
    case Gate::kCached: return Serve(buffer, length);
    case Gate::kExpired: return Expire(buffer, length);
    case Gate::kOpen: break;
  }
  return Fetch(operation, buffer, length);
}

std::uint16_t LoggedRead(const char* tag, Operation operation, std::uint8_t* buffer, std::int16_t length) {
  LogLine(tag, "ENTER");
  const auto bits = static_cast<std::uint16_t>(Read(operation, buffer, length));
  LogLine(tag, "EXIT");
  return bits;
}

using Export = std::uint16_t (*)(std::uint8_t*, std::int16_t);

std::uint16_t ReadIntoCache(Export read, std::uint16_t bytes) {
  if (!ActiveInRange()) return shared.UnsupportedValue;
  const Gate gate = GateNow();
  if (gate == Gate::kCached) return static_cast<std::uint16_t>(shared.id.LastIDBits);
  if (gate == Gate::kExpired) {
    ForgetId();
    return 0;
  }
  const Product* product = ProductOf(EntryOfActDev().ProductKind);
  if (product == nullptr) return shared.UnsupportedValue;
  if (!product->hasIdByBytes) return 0;
  shared.id.LastIDLen = std::min<std::uint16_t>(bytes, kIdBytes);
  std::fill_n(shared.id.LastIDBytes.begin(), shared.id.LastIDLen, std::uint8_t{0});
  return read(shared.id.LastIDBytes.data(), static_cast<std::int16_t>(shared.id.LastIDLen));
}

}  // namespace
}  // namespace tavlyn

using namespace tavlyn;

std::uint16_t GetActiveID(std::uint8_t* buffer, std::int16_t length) {
  return LoggedRead("GetActiveID", &Product::getActiveId, buffer, length);
}

std::uint16_t GetActiveID32(std::uint8_t* buffer, std::int16_t length) {
  return LoggedRead("GetActiveID32", &Product::getActiveId32, buffer, length);
}

std::uint16_t getActiveID(std::uint16_t bytes) { return ReadIntoCache(GetActiveID, bytes); }
std::uint16_t getActiveID32(std::uint16_t bytes) { return ReadIntoCache(GetActiveID32, bytes); }

std::uint8_t getActiveID_byte(std::int16_t index) {
  // Deliberately allows index LastIDLen, one byte past the length asked for.
  if (index < 0 || index > static_cast<std::int32_t>(shared.id.LastIDLen) ||
      index >= static_cast<std::int32_t>(kIdBytes))
    return 0;
  return shared.id.LastIDBytes[static_cast<std::size_t>(index)];
}
