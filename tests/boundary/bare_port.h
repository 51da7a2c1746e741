// The far end of a COM port that is a pseudo-terminal, byte by byte.
#pragma once

#include <functional>
#include <string>
#include <thread>

#include "tests/boundary/far_end.h"

namespace tavlyn::boundary {

// Throws std::runtime_error when the result of a system call is negative.
int Checked(int result, const char* what);

// A descriptor that is closed with its owner.
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

// COM n of the folder, without echo. The near end can be opened time and again.
struct BarePort {
  Descriptor far;
  Descriptor near;  // without any open near end the far end reads as hung up
};
BarePort AddPort(PortFolder& folder, int number);

// Waits for something to read, or the end.
bool Readable(int descriptor, Milliseconds limit);
// What comes until the line was silent for that long.
std::string ReadUntilSilence(int descriptor, Milliseconds silence);
void Send(int descriptor, const std::string& text);

// Runs something in a thread until it is destroyed; the descriptor that it is given becomes readable then.
class Thread {
 public:
  explicit Thread(std::function<void(int stop)> run);
  ~Thread();
  Thread(const Thread&) = delete;
  Thread& operator=(const Thread&) = delete;

 private:
  Descriptor stopRead_;
  Descriptor stopWrite_;
  std::thread thread_;
};

}  // namespace tavlyn::boundary
