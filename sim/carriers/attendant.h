// A thread that serves carriers while a test uses their devices:
//
//   sim::ReaderFa model(sim::Reader::Plain());
//   sim::PseudoTerminal port(model, folder + "/com3");   // TAVLYNAPI_PORT_DIR is folder
//   sim::Attendant attendant({&port});
//   ...                                                  // the library opens com3 and talks to the model
//   attendant.With([&] { model.Device().PutCard({1, 2}, 26); });
#pragma once

#include <mutex>
#include <thread>
#include <utility>
#include <vector>

#include "sim/carriers/served.h"
#include "sim/carriers/waker.h"

namespace tavlyn::sim {

class Attendant {
 public:
  // The carriers must outlive it. Between its construction and its destruction they and their models may only
  // be touched inside With.
  explicit Attendant(std::vector<Served*> served);
  ~Attendant();
  Attendant(const Attendant&) = delete;
  Attendant& operator=(const Attendant&) = delete;

  // Runs a function while nothing is being served, and returns its result.
  template <typename Function>
  auto With(Function&& function) {
    const Turn turn(*this);
    return std::forward<Function>(function)();
  }

 private:
  // Holds the lock for its lifetime; afterwards the loop checks everything again.
  class Turn {
   public:
    explicit Turn(Attendant& attendant) : attendant_(attendant), lock_(attendant.mutex_) {}
    ~Turn() { attendant_.waker_.Wake(); }
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;

   private:
    Attendant& attendant_;
    std::lock_guard<std::mutex> lock_;
  };

  void Loop();

  std::vector<Served*> served_;
  std::mutex mutex_;
  Waker waker_;
  bool ends_ = false;
  std::thread thread_;
};

}  // namespace tavlyn::sim
