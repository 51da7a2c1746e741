// Files in one: a tar archive (ustar) in a gzip file, whose blocks are stored as they are. A bundle has a few
// kilobytes, so that a library that compresses would not be worth being linked.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <ctime>
#include <numeric>

#include "tools/tavlynctl/trouble/doctor.h"

namespace tavlyn::ctl {
namespace {

constexpr std::size_t kBlock = 512;

// Octal digits, which a NUL ends.
void PutOctal(std::string& header, std::size_t at, int digits, std::uint64_t number) {
  char text[24];
  const int length =
      std::snprintf(text, sizeof text, "%0*llo", digits, static_cast<unsigned long long>(number));
  header.replace(at, static_cast<std::size_t>(length), text);
}

std::string HeaderOf(const BundledFile& file) {
  constexpr std::size_t kSumAt = 148;
  std::string header(kBlock, '\0');
  header.replace(0, file.name.size(), file.name);
  PutOctal(header, 100, 7, 0600);
  PutOctal(header, 108, 7, 0);  // nobody's in particular
  PutOctal(header, 116, 7, 0);
  PutOctal(header, 124, 11, file.text.size());
  PutOctal(header, 136, 11, static_cast<std::uint64_t>(std::time(nullptr)));
  header[156] = '0';  // a regular file
  header.replace(257, 8, std::string_view("ustar\00000", 8));
  header.replace(kSumAt, 8, "        ");
  const auto sum = std::accumulate(header.begin(), header.end(), 0U,
                                   [](unsigned all, char c) { return all + static_cast<unsigned char>(c); });
  PutOctal(header, kSumAt, 6, sum);
  header[kSumAt + 6] = '\0';
  return header;
}

std::string Tar(const std::vector<BundledFile>& files) {
  std::string tar;
  for (const BundledFile& file : files) {
    tar += HeaderOf(file) + file.text;
    tar.append((kBlock - tar.size() % kBlock) % kBlock, '\0');
  }
  return tar.append(2 * kBlock, '\0');
}

std::uint32_t Crc32(const std::string& bytes) {
  std::uint32_t sum = ~0U;
  for (const char c : bytes) {
    sum ^= static_cast<unsigned char>(c);
    for (int bit = 0; bit < 8; ++bit) sum = sum >> 1 ^ ((sum & 1U) != 0 ? 0xEDB88320U : 0U);
  }
  return ~sum;
}

// Lowest byte first.
void Add(std::string& bytes, std::uint32_t number, int count) {
  for (int at = 0; at < count; ++at) bytes += static_cast<char>(number >> 8 * at & 0xFFU);
}

}  // namespace

std::string Archive(const std::vector<BundledFile>& files) {
  constexpr std::size_t kMostStored = 0xFFFF;
  const std::string tar = Tar(files);
  std::string bytes("\x1F\x8B\x08\0\0\0\0\0\0\xFF", 10);
  for (std::size_t at = 0; at < tar.size(); at += kMostStored) {
    const std::size_t count = std::min(kMostStored, tar.size() - at);
    bytes += at + count == tar.size() ? '\1' : '\0';  // the last one
    Add(bytes, static_cast<std::uint32_t>(count), 2);
    Add(bytes, ~static_cast<std::uint32_t>(count), 2);
    bytes.append(tar, at, count);
  }
  Add(bytes, Crc32(tar), 4);
  Add(bytes, static_cast<std::uint32_t>(tar.size()), 4);
  return bytes;
}

}  // namespace tavlyn::ctl
