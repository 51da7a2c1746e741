#include "core/text.h"

#include <new>
#include <utility>

#include "core/state.h"
#include "core/version.h"
#include "platform/files.h"

namespace tavlyn {

namespace {

// Without memory for a buffer no file is opened: the C library's own would keep what has passed through it.
template <typename Open>
File WithOwnBuffer(Open open) {
  CloseFile close{.room = std::unique_ptr<CloseFile::Room>(new (std::nothrow) CloseFile::Room)};
  if (close.room == nullptr) return File();
  File file(open(), std::move(close));
  const auto& room = file.get_deleter().room;
  if (file != nullptr) std::setvbuf(file.get(), room->data(), _IOFBF, room->size());
  return file;
}

}  // namespace

File OpenFile(const char* path, const char* mode) {
  return WithOwnBuffer([&] { return platform::OpenFile(path, mode); });
}

File CreateKeyFile(const char* path) {
  return WithOwnBuffer([&] { return platform::OpenPrivateFile(path); });
}

void WriteHeading(std::FILE* file, const char* title) {
  const unsigned did = EntryOfActDev().DID;
  std::fprintf(file, "%c%s\n", kCommentMark, title);
  std::fprintf(file, "%c%s %d.%d.%d \n", kInformationMark, kLibraryVersion, kVersionMajor, kVersionMinor,
               kVersionBuild);
  // Each nibble in decimal, so that one above 9 takes two digits; nothing reads the line back.
  std::fprintf(file, "%cDevice FW Version%c %u%u.%u%u \n", kInformationMark, kInformationMark, did >> 12,
               did >> 8 & 15, did >> 4 & 15, did & 15);
}

void WriteSection(std::FILE* file, const char* name) { std::fprintf(file, "\n%c %s\n", kCommentMark, name); }

void WriteEntry(std::FILE* file, const char* keyword, std::uint16_t value, const char* comment) {
  std::fprintf(file, "%s = %u     %c %s\n", keyword, value, kCommentMark, comment);
}

}  // namespace tavlyn
