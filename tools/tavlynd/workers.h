// The worker processes: one for each link, which alone load the library. Its state is one per process, with
// one active device, and a call that hangs must not hold up the devices of other links. Parent and worker
// speak JSON, an object a line.
//
// A worker says {"event": WORD, "time", "device": {"path", "serial", "product", ...}, ...}:
//   arrived, lost          the device; when it arrives with "part", "firmware", "luid", "configurations"
//   card, gone             "bits", "id"
//   swipe                  "tracks"
//   presence               "present", "inches"
//   reply                  "request", "ok", and "result" or "error": {"code", "text", "word"};
//                          "took": milliseconds that the device was busy with it
//   note                   "text", for the log
//   alive                  "patience": in so many seconds it speaks again
// A worker takes {"request", "device": a path, "do": WORD, ...}:
//   beep                   "count", "long"
//   led                    "colours": a list of "red" and "green", or of "off" or "auto"
//   relay                  "on"
//   read-card, read-config, re-read
//   load-config            "file": its text; "dry", "strict"
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <list>
#include <string>
#include <vector>

#include "tools/tavlynctl/output.h"

struct pollfd;

namespace tavlyn::agent {

using Json = ctl::Json;

struct WorkerTerms {
  // Each "usb:PRODUCT" (reader, magstripe or sonar), "comN", "comN:ascii", "A.B.C.D:PORT" or the same with
  // ":ascii".
  std::vector<std::string> links;
  std::uint32_t baud = 9600;             // of COM ports
  std::chrono::milliseconds pause{255};  // between two questions to a device
  std::string program = {};              // empty: this one
};

struct Worker;

class Workers {
 public:
  // Of one link: what a worker said, whole and in an order that makes sense. A worker that ends is made up
  // for: its cards are gone, its devices lost, its requests answered.
  using Hear = std::function<void(const std::string& link, const Json& said)>;

  explicit Workers(Hear hear);
  ~Workers();
  Workers(const Workers&) = delete;
  Workers& operator=(const Workers&) = delete;

  // From now on these links, after the first time too: workers whose terms stay the same go on.
  void Be(const WorkerTerms& terms);

  // For the owner's loop: what to poll, after how many milliseconds to serve in any case (below 0: no limit),
  // and what to do with the outcome.
  void AddTo(std::vector<pollfd>& polled) const;
  [[nodiscard]] int TurnMs() const;
  void Serve(const std::vector<pollfd>& polled);

  // False if the worker is not there, or has too much to do. It answers by "request", which is unique.
  bool Send(const std::string& link, const Json& command);

 private:
  bool Attend(Worker& worker);
  void Drop(Worker& worker, const std::string& why);
  void Part(Worker& worker);
  bool HasLeft(Worker& worker);
  void Start(Worker& worker);
  void Note(const Worker& worker, const std::string& what);

  Hear hear_;
  WorkerTerms terms_;
  std::list<Worker> workers_;
};

}  // namespace tavlyn::agent
