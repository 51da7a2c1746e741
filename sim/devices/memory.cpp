#include "sim/devices/memory.h"

#include <algorithm>

namespace tavlyn::sim {
namespace {

constexpr std::size_t kLongestPiece = 0xFF;

}  // namespace

void Memory::Pass(const std::string& name, std::span<std::uint8_t> bytes) {
  if (!takes_) {
    pieces_.push_back({name, {bytes.begin(), bytes.end()}});
    return;
  }
  Piece* piece = Find(name);
  if (piece == nullptr) return;
  if (piece->bytes.size() != bytes.size())
    return Blame(name, "has " + std::to_string(bytes.size()) + " bytes");
  std::ranges::copy(piece->bytes, bytes.begin());
}

void Memory::PassAny(const std::string& name, Bytes& bytes) {
  if (!takes_) return pieces_.push_back({name, bytes});
  const Piece* piece = Find(name);
  if (piece == nullptr) return;
  if (piece->bytes.size() > kLongestPiece) {
    return Blame(name, "has at most " + std::to_string(kLongestPiece) + " bytes");
  }
  bytes = piece->bytes;
}

std::vector<std::string> Memory::NamesWith(std::string_view beginning) const {
  std::vector<std::string> names;
  for (const Piece& piece : pieces_) {
    if (takes_ && piece.name.starts_with(beginning)) names.push_back(piece.name);
  }
  return names;
}

Memory::Problem Memory::Found() const {
  if (!problem_.text.empty()) return problem_;
  const auto strange = std::ranges::find(pieces_, false, &Piece::taken);
  if (!takes_ || strange == pieces_.end()) return {};
  return {strange->line, strange->name + ": this device has nothing of this name"};
}

Memory::Piece* Memory::Find(const std::string& name) {
  const auto found = std::ranges::find(pieces_, name, &Piece::name);
  if (found == pieces_.end()) {
    Blame(name, "is missing");
    return nullptr;
  }
  found->taken = true;
  return &*found;
}

void Memory::Blame(const std::string& name, const std::string& what) {
  if (!problem_.text.empty()) return;
  const auto found = std::ranges::find(pieces_, name, &Piece::name);
  problem_ = {found == pieces_.end() ? line_ : found->line, name + " " + what};
}

}  // namespace tavlyn::sim
