// BLE files on the bench.
#pragma once

#include <algorithm>
#include <string>

#include "tests/files/secure_bench.h"

namespace tavlyn::test {

struct BleKind {
  std::string number;  // in the names of the block
  std::size_t bytes;
};
inline const BleKind kDataKind = {"1", 384};
inline const BleKind kKeyKind = {"2", 128};

inline std::string BleHead(const BleKind& kind) {
  return std::string(kTitleLine) + kVersionLines + "\n/ Note: DO NOT change the name \"sFldBleData" +
         kind.number + "\"!\n/ No Comment or Blank Lines between data bytes.\n" +
         "/ ASCII hex data bytes must be seperated by a Period.\n\nBEGIN sFldBleData" + kind.number +
         "\n\n/ BleData" + kind.number + "[] =\n";
}

inline std::string BleTail(const BleKind& kind) { return "\nEND sFldBleData" + kind.number + "\n"; }

inline std::string HexLines(const sim::Bytes& bytes) {
  std::string text;
  for (std::size_t at = 0; at < bytes.size(); ++at) {
    char hex[4];
    std::snprintf(hex, sizeof hex, "%02X%c", bytes[at], at % 8 == 7 ? '\n' : '.');
    text += hex;
  }
  return text;
}

// A whole file around lines of data.
inline std::string BleFile(const BleKind& kind, const std::string& lines) {
  return BleOf(BleHead(kind) + lines + BleTail(kind));
}

// The same as a save leaves it on disk: the CRC is that of the bytes there.
inline std::string SavedBleFile(const BleKind& kind, const std::string& lines) {
  const std::string body = OnDisk(BleHead(kind) + lines + BleTail(kind) + kPlainMarker);
  return body + "iEndOfHwgFile=" + SumText(body);
}

class BleBench : public SecureBench {
 protected:
  // The model's pieces in a row, and set.
  sim::Bytes DataOf(const sim::BleMemory& memory) {
    sim::Bytes bytes;
    for (std::size_t piece = 0; piece < 3; ++piece)
      bytes.insert(bytes.end(), memory[piece].begin(), memory[piece].end());
    return bytes;
  }
  sim::Bytes KeyOf(const sim::BleMemory& memory) { return {memory[3].begin(), memory[3].end()}; }
  void Fill() {
    for (std::size_t piece = 0; piece < 4; ++piece) {
      for (std::size_t at = 0; at < 128; ++at)
        Memory().ble[piece][at] = static_cast<std::uint8_t>(0x11 * (piece + 1) + at);
    }
  }

  static Lines Read(const std::string& selector, const std::string& opener, const sim::Bytes& bytes) {
    Lines lines;
    for (const std::string& last : {selector, opener}) {
      const std::string packet = "89 10 00 00 10 01" + (last == "00" ? "" : " 00 " + last);
      lines = Join({lines, {"sleep 30", "set " + packet, "get " + packet}});
    }
    for (std::size_t block = 1; block <= 32; ++block) {
      sim::Bytes reply{0x89, 0x10, 0, static_cast<std::uint8_t>(block)};
      lines.push_back("set " + PacketText(reply));
      reply.insert(reply.end(), bytes.begin() + static_cast<std::ptrdiff_t>(4 * block - 4),
                   bytes.begin() + static_cast<std::ptrdiff_t>(4 * block));
      lines.push_back("get " + PacketText(reply));
    }
    return lines;
  }
  static Lines Written(std::uint8_t selector, const sim::Bytes& bytes, const Lines& wait) {
    return Join({Echoed({0x89, 0x90, 0, 0, 0x11, 1, 0x80, selector}), Blocks(bytes),
                 Echoed({0x89, 0x90, 0, 0xFF, 0, 0, 0, selector}), wait,
                 Echoed({0x89, 0x90, 0, 0xFF, 0, 0, 0, static_cast<std::uint8_t>(0x80 | selector)})});
  }
  static sim::Bytes Piece(const sim::Bytes& bytes, std::size_t number) {
    const auto first = bytes.begin() + static_cast<std::ptrdiff_t>(128 * number);
    return {first, first + 128};
  }
  static Lines DataWritten(const sim::Bytes& bytes) {
    const Lines wait = {"sleep 100"};
    return Join({Written(0, Piece(bytes, 0), wait), Written(1, Piece(bytes, 1), wait),
                 Written(2, Piece(bytes, 2), wait)});
  }
};

}  // namespace tavlyn::test
