#include <mutex>
#include <thread>

#include "tools/tavlynsim/typed_lines.h"

// windows.h has to come after winsock2.h, which typed_lines.h includes.
#include <windows.h>

namespace tavlyn::sim {

// Waiting for a console or a pipe takes a thread of its own.
struct TypedLines::Input {
  std::mutex mutex;
  std::string came;
};

TypedLines::TypedLines(Source& source, bool wanted) : source_(source), input_(std::make_unique<Input>()) {
  if (!wanted) return;
  std::thread([input = input_.get()] {
    char bytes[512];
    DWORD count = 0;
    while (ReadFile(GetStdHandle(STD_INPUT_HANDLE), bytes, sizeof bytes, &count, nullptr) && count > 0) {
      const std::lock_guard lock(input->mutex);
      input->came.append(bytes, count);
    }
  }).detach();
}

// The thread may still be waiting for input; it ends with the process.
TypedLines::~TypedLines() { static_cast<void>(input_.release()); }

void TypedLines::AddTo(std::vector<pollfd>&) const {}

void TypedLines::Serve(const std::vector<pollfd>&) {
  std::string text;
  {
    const std::lock_guard lock(input_->mutex);
    text.swap(input_->came);
  }
  Take(text);
}

}  // namespace tavlyn::sim
