#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "tools/tavlynsim/typed_lines.h"

namespace tavlyn::sim {

struct TypedLines::Input {
  int fd;  // -1 at the end of the input; poll() ignores negative descriptors
};

TypedLines::TypedLines(Source& source, bool wanted)
    : source_(source), input_(new Input{wanted ? STDIN_FILENO : -1}) {}

TypedLines::~TypedLines() = default;

void TypedLines::AddTo(std::vector<pollfd>& polled) const { polled.push_back({input_->fd, POLLIN, 0}); }

void TypedLines::Serve(const std::vector<pollfd>& polled) {
  const bool ready = std::ranges::any_of(
      polled, [&](const pollfd& one) { return one.fd == input_->fd && one.revents != 0; });
  if (!ready) return;
  char bytes[512];
  const ssize_t count = read(input_->fd, bytes, sizeof bytes);
  if (count < 0 && errno == EINTR) return;
  if (count > 0) {
    Take({bytes, static_cast<std::size_t>(count)});
  } else {
    input_->fd = -1;
  }
}

}  // namespace tavlyn::sim
