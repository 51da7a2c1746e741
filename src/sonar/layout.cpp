#include "sonar/layout.h"

#include <cmath>

#include "core/state.h"

namespace tavlyn::sonar {
namespace {

std::uint8_t UnitsOf(std::uint16_t inches) {
  return static_cast<std::uint8_t>(static_cast<unsigned>(std::floor(inches * kUnitsPerInch + 0.5)));
}

std::uint16_t WordOf(const PageByte& place, std::uint8_t byte) {
  const Field& field = kFields[place.word];
  return field.inches ? InchesOf(byte) : static_cast<std::uint16_t>(byte * field.step);
}

std::uint8_t ByteOf(const PageByte& place, std::uint16_t word) {
  const Field& field = kFields[place.word];
  return field.inches ? UnitsOf(word) : static_cast<std::uint8_t>(word / field.step);
}

}  // namespace

void Unpack(const Page& page, const Report& reply, SonarWords& words) {
  for (std::size_t at = 0; at < kPageBytes; ++at) {
    const PageByte& byte = page.bytes[at];
    words[byte.word] = WordOf(byte, reply[at + 1] & byte.readMask);
  }
}

void Pack(const Page& page, const SonarWords& words, Report& report) {
  for (std::size_t at = 0; at < kPageBytes; ++at) {
    const PageByte& byte = page.bytes[at];
    const std::uint16_t word = (byte.asRead ? shared.sonarShadow : words)[byte.word];
    report[at + 1] = ByteOf(byte, word) & byte.writeMask;
  }
}

std::uint16_t InchesOf(std::uint8_t units) {
  return static_cast<std::uint16_t>(std::floor(units / kUnitsPerInch + 0.5));
}

}  // namespace tavlyn::sonar
