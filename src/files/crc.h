// CRC-32 trailers of files that leave the library for the hands of users. Anybody can compute one: they tell
// of damage and of edits, nothing in them is secret.
//
//   secure configuration   marker "/--- iEndOfHwgFile \n", outside the sum; value "iEndOfHwgFile = %08X"
//   BLE file               marker "/--- iEndOfHwgFile\n", inside the sum; value "iEndOfHwgFile=%08X"
//   key-load ini file      marker "[EOF]\r\n", outside the sum; value "iEndOfIniFile=%08X\r\n", 0 for a zero
//   sum
//
// Sums are taken over the bytes on disk.
#pragma once

#include <array>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>

namespace tavlyn {

class CRC {
 public:
  virtual ~CRC() = default;

  void BuildTable();
  // Consumes the text. Not 0: there is no table.
  int Compute(std::string& text, std::uint32_t& result) const;

  // Line pieces up to their first NUL; empty when the file cannot be opened.
  static std::string ReadWholeFile(const char* path);

  // 1, 0 when the file could not be opened, or Compute's code.
  int AppendHwgTrailer(const char* path);
  // Compute's code; a trailer that could not be added deliberately goes unreported.
  int AppendSecureTrailer(const char* path);

  // 1 when the trailer fits the file. Kind 0 is a Hwg trailer, any other an ini trailer.
  int CheckFile(const char* path, std::uint32_t kind);
  int CheckHwgFile(const char* path);
  int CheckIniFile(const char* path);

 private:
  int SumOf(std::string& text, std::uint32_t& sum);
  int CheckIniTrailer(std::FILE* file, std::string& text);

  std::unique_ptr<std::array<std::uint32_t, 256>> table_;  // only during a calculation
};

}  // namespace tavlyn
