// CRC-32 trailers of files that users handle. Anybody can compute one: they reveal damage and edits, and
// nothing in them is secret.
//
//   secure configuration   marker "/--- iEndOfHwgFile \n", outside the sum; value "iEndOfHwgFile = %08X"
//   BLE file               marker "/--- iEndOfHwgFile\n", inside the sum; value "iEndOfHwgFile=%08X"
//   key-load ini file      marker "[EOF]\r\n", outside the sum; value "iEndOfIniFile=%08X\r\n"
//
// Sums are taken over the bytes on disk. In an ini file a sum of zero is written as a single 0.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string_view>

namespace tavlyn {

class CRC {
 public:
  virtual ~CRC() = default;

  void Begin();
  void Add(std::string_view text);
  // Ends the sum. Not 0 when none was begun.
  int Compute(std::uint32_t& result);

  // Adds line pieces up to their first NUL; nothing when the file cannot be opened.
  void AddWholeFile(const char* path);

  // Returns 1, 0 when the file could not be opened, or Compute's code.
  int AppendHwgTrailer(const char* path);
  // Returns Compute's code; a trailer that could not be added deliberately goes unreported.
  int AppendSecureTrailer(const char* path);

  // Returns 1 when the trailer matches the file. Kind 0 is a Hwg trailer, any other an ini trailer.
  int CheckFile(const char* path, std::uint32_t kind);
  int CheckHwgFile(const char* path);
  int CheckIniFile(const char* path);

 private:
  int SumOfFile(const char* path, std::uint32_t& sum);
  int CheckIniTrailer(std::FILE* file);

  bool begun_ = false;
  std::uint32_t running_ = 0;
};

}  // namespace tavlyn
