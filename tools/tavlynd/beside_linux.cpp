#include <sys/eventfd.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdint>
#include <system_error>
#include <thread>
#include <utility>

#include "tools/tavlynd/beside.h"

namespace tavlyn::agent {

Beside::Beside(Call call) : ended_(std::make_shared<Descriptor>(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))) {
  if (Number() < 0) throw std::system_error(errno, std::generic_category());
  std::packaged_task<std::string()> task(std::move(call));
  outcome_ = task.get_future();
  std::thread([task = std::move(task), ended = ended_]() mutable {
    task();
    const std::uint64_t one = 1;
    [[maybe_unused]] const ssize_t written = write(ended->Number(), &one, sizeof one);
  }).detach();
}

std::optional<std::string> Beside::Outcome() {
  if (outcome_.wait_for(std::chrono::seconds(0)) != std::future_status::ready) return std::nullopt;
  return outcome_.get();
}

}  // namespace tavlyn::agent
