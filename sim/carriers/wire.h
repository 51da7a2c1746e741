// What a stand-in and the tavlynsim process that serves it say to each other over a stream: a Unix socket,
// or on Windows a port of the loopback network. The stand-in asks, one message at a time, and gets one
// message back. Both run on one machine: numbers are in its byte order.
//
//   asked        key        body          answered   body
//   kList        -          -             kDone      a list, as PackList makes it
//   kSetFeature  interface  report        outcome    -
//   kGetFeature  interface  report        outcome    the report, when kDone
//   kTakeInput   interface  -             outcome    the report, when kDone
//   kLines       -          -             kDone      a list, as PackLines makes it
//   kSendBytes   line       bytes         outcome    -
//   kTakeBytes   line       buffer size   outcome    the bytes, when kDone
//   kSilence     line       -             outcome    -
//   kTakeCut     line       -             outcome    -
//   kRun         -          command line  outcome    the reply, or why it failed
//   kVariables   -          -             kDone      what programs need to see the devices: NAME=VALUE, each
//                                                    with a NUL
//   kEnd         -          -             outcome    when everything has ended: the exit status in place of
//   the
//                                                    key, and in lines what came of the scenario
//
// Reports have their report ID in byte 0; that of kGetFeature is as long as the wanted answer.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "sim/carriers/net.h"
#include "sim/source.h"

namespace tavlyn::sim::wire {

// The variable with the path of the socket; on Windows ADDRESS:PORT.
inline constexpr const char* kSocketVariable = "TAVLYNSIM_SOCKET";

void Overwrite(std::vector<std::uint8_t>& bytes);

enum class Op : std::uint8_t {
  kList,
  kSetFeature,
  kGetFeature,
  kTakeInput,
  kRun,
  kLines,
  kSendBytes,
  kTakeBytes,
  kSilence,
  kTakeCut,
  kVariables,
  kEnd,
};

// A body is overwritten when the message is gone, so that a search of a program's memory for keys finds only
// what others have left there.
struct Message {
  ~Message() { Overwrite(body); }

  std::uint8_t code = 0;  // an Op, or an Outcome
  Key key = 0;
  std::vector<std::uint8_t> body;
};

// False if the other side is gone or sent something that is not a message. Neither raises SIGPIPE.
bool Send(net::Socket socket, const Message& message);
bool Receive(net::Socket socket, Message& message);

// The same for one who serves many and waits for none: the first message among the bytes that have arrived
// is taken off them, and an answer is put after those that have not been sent.
enum class Arrived { kWhole, kPart, kNoMessage };
Arrived TakeMessage(std::vector<std::uint8_t>& bytes, Message& message);
void PutMessage(std::vector<std::uint8_t>& bytes, const Message& message);

// net::kNone if nobody listens under that name; net::Problem says why.
net::Socket Connect(const char* name);
// Sets the name for Connect and, where sockets are files, the folder that it made. net::kNone on failure;
// net::Problem says why.
net::Socket Listen(std::string& folder, std::string& name);
// Where sockets are files: at a path that is free, for this user alone.
net::Socket ListenAt(const char* path);
// Accepts the next program. Nothing waits for it.
net::Socket Accept(net::Socket listening);

std::vector<std::uint8_t> PackList(const std::vector<Listed>& list);
bool UnpackList(std::span<const std::uint8_t> packed, std::vector<Listed>& list);

std::vector<std::uint8_t> PackLines(const std::vector<ListedLine>& lines);
bool UnpackLines(std::span<const std::uint8_t> packed, std::vector<ListedLine>& lines);

}  // namespace tavlyn::sim::wire
