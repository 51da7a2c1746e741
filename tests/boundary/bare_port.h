// The far end of a COM port that is a pseudo-terminal, byte by byte.
#pragma once

#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "tests/boundary/far_end.h"

namespace tavlyn::boundary {

// Throws std::runtime_error if the result of a system call is negative.
int Checked(int result, const char* what);

// A descriptor that its owner closes.
class Descriptor {
 public:
  explicit Descriptor(int number = -1) : number_(number) {}
  ~Descriptor() { Close(); }
  Descriptor(Descriptor&& other) noexcept : number_(other.number_) { other.number_ = -1; }
  Descriptor& operator=(Descriptor&& other) noexcept;
  [[nodiscard]] int get() const { return number_; }
  void Close();

 private:
  int number_;
};

// COM n of the folder, without echo. The near end can be opened again and again.
struct BarePort {
  Descriptor far;
  Descriptor near;  // without any open near end the far end reads as hung up
};
BarePort AddPort(PortFolder& folder, int number);

// What is waiting to be read.
std::string ReadAll(int descriptor);
void Send(int descriptor, const std::string& text);

// A far end's schedule, in milliseconds since it was made.
class Script final : private sim::Served {
 public:
  struct Step {
    int at;
    std::function<void()> act;
  };
  explicit Script(std::vector<Step> steps);

 private:
  sim::LineManner& Manner() override { return manner_; }
  void AddTo(std::vector<pollfd>&) const override {}
  [[nodiscard]] sim::DueTime NextDue() const override;
  void Serve() override;

  sim::LineManner manner_;
  Clock::time_point start_ = Clock::now();
  std::deque<Step> steps_;
  Attended attended_{{this}};
};

}  // namespace tavlyn::boundary
