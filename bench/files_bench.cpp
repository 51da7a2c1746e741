// Template files, their trailers and the table of VID and PID, with the file that a save makes and with one
// of a million lines, beside the plainest way to write or read the same lines.
#include <benchmark/benchmark.h>
#include <zlib.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <string_view>

#include "api.h"
#include "bench/own_time.h"
#include "bench/stand_in.h"

namespace tavlyn::bench {
namespace {

namespace fs = std::filesystem;

constexpr std::int64_t kMillion = 1'000'000;

// The working folder, where the table of VID and PID is looked for.
class Folder {
 public:
  Folder() {
    std::string name = "/tmp/tavlyn-bench-XXXXXX";
    if (mkdtemp(name.data()) == nullptr) std::abort();
    fs::current_path(name);
    folder_ = name;
  }
  ~Folder() {
    fs::current_path("/");
    fs::remove_all(folder_);
  }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;

 private:
  fs::path folder_;
};

constexpr const char* kFile = "template.hwg";
constexpr const char* kTable = "TavlynVIDPID.txt";

std::string TextOf(const char* path) {
  std::ostringstream text;
  text << std::ifstream(path).rdbuf();
  return text.str();
}

void Store(const char* path, std::string_view text) { std::ofstream(path) << text; }

// The same lines again and again, without those that end a template.
std::string Repeated(const std::string& lines, std::int64_t count) {
  std::string text;
  std::istringstream stream(lines);
  for (std::string line; count > 0;) {
    if (!std::getline(stream, line)) {
      stream = std::istringstream(lines);
    } else if (!line.starts_with("END")) {
      text += line + '\n';
      --count;
    }
  }
  return text;
}

// A connected reader and the file that it saves, with lines 0 as it is, else that many of its lines.
class SavedFile {
 public:
  explicit SavedFile(std::int64_t lines) {
    if (USBConnect(nullptr) != 1 || WriteDevCfgToFile(kFile) != 1) std::abort();
    if (lines != 0) Store(kFile, Repeated(TextOf(kFile), lines));
  }

 private:
  const Folder folder_;
  const Readers reader_{1};
};

template <typename Call>
void Measure(benchmark::State& state, Call call) {
  WithoutWaits(
      state, [&] { return call() == 1; }, [] {});
}

void Sizes(benchmark::internal::Benchmark* files) {
  files->ArgName("lines")->Arg(0)->Arg(kMillion)->Unit(benchmark::kMicrosecond);
}

void Save(benchmark::State& state) {
  const SavedFile file(0);
  Measure(state, [] { return WriteDevCfgToFile(kFile); });
}
BENCHMARK(Save)->Name("File/save")->UseManualTime()->Unit(benchmark::kMicrosecond);

void PlainWrite(benchmark::State& state) {
  const SavedFile file(0);
  const std::string text = TextOf(kFile);
  for (auto _ : state) {
    std::FILE* written = std::fopen(kFile, "w");
    std::fwrite(text.data(), 1, text.size(), written);
    std::fclose(written);
  }
}
BENCHMARK(PlainWrite)->Name("File/save by fwrite")->Unit(benchmark::kMicrosecond);

template <typename Use>
void PlainRead(const char* path, Use use) {
  std::array<char, 4096> line{};
  std::FILE* read = std::fopen(path, "rb");
  while (std::fgets(line.data(), line.size(), read) != nullptr) use(line.data());
  std::fclose(read);
}

void Load(benchmark::State& state) {
  const SavedFile file(state.range(0));
  Measure(state, [] { return ReadDevCfgFmFile(kFile); });
}

void LoadByFgets(benchmark::State& state) {
  const SavedFile file(state.range(0));
  for (auto _ : state) PlainRead(kFile, [](char* line) { benchmark::DoNotOptimize(line); });
}

void AddTrailer() {
  const std::string text = TextOf(kFile) + "/--- iEndOfHwgFile \n";
  const auto* bytes = reinterpret_cast<const Bytef*>(text.data());
  std::array<char, 64> value{};
  const auto sum = crc32(0, bytes, static_cast<uInt>(text.size() - std::strlen("/--- iEndOfHwgFile \n")));
  std::snprintf(value.data(), value.size(), "iEndOfHwgFile = %08lX", sum);
  Store(kFile, text + value.data());
}

void Check(benchmark::State& state) {
  const SavedFile file(state.range(0));
  AddTrailer();
  Measure(state, [] { return CheckTamperedFile(kFile, 0); });
}

void CheckByZlib(benchmark::State& state) {
  const SavedFile file(state.range(0));
  for (auto _ : state) {
    uLong sum = 0;
    PlainRead(kFile, [&](const char* line) {
      sum = crc32(sum, reinterpret_cast<const Bytef*>(line), static_cast<uInt>(std::strlen(line)));
    });
    benchmark::DoNotOptimize(sum);
  }
}

BENCHMARK(Load)->Name("File/load")->UseManualTime()->Apply(Sizes);
BENCHMARK(LoadByFgets)->Name("File/load by fgets")->Apply(Sizes);
BENCHMARK(Check)->Name("File/check of the trailer")->UseManualTime()->Apply(Sizes);
BENCHMARK(CheckByZlib)->Name("File/check by fgets and zlib")->Apply(Sizes);

// Every connect reads the table; with nothing plugged in it does little else. No lines: there is no file, and
// the built-in rows are used. None of a million lines has a row, or the reading would end when the table is
// full.
void Table(benchmark::State& state) {
  const Folder folder;
  const Readers none(0);
  if (state.range(0) != 0) Store(kTable, Repeated("VID=\"19E5\" PID=\"2021\"\n", state.range(0)));
  for (auto _ : state) {
    if (USBConnect(nullptr) != 0) return state.SkipWithError("a device where none is");
  }
}

void TableByFgets(benchmark::State& state) {
  const Folder folder;
  Store(kTable, Repeated("VID=\"19E5\" PID=\"2021\"\n", state.range(0)));
  for (auto _ : state) PlainRead(kTable, [](char* line) { benchmark::DoNotOptimize(line); });
}
BENCHMARK(Table)->Name("File/VID and PID")->Apply(Sizes);
BENCHMARK(TableByFgets)
    ->Name("File/VID and PID by fgets")
    ->ArgName("lines")
    ->Arg(kMillion)
    ->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace tavlyn::bench
