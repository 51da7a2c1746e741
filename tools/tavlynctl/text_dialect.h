// Talking to readers in the text dialect.
#pragma once

#include <chrono>
#include <vector>

#include "tools/tavlynctl/link.h"

namespace tavlyn::ctl {

enum class InText {
  kSilent,  // it does not speak text, or has gone
  kUnread,  // it answers, but its configuration could not be read completely
  kRead,
};

// How long it takes to notice that a reader on a port does not speak text.
std::chrono::seconds SilenceInText(const Link& link);

// Chooses the dialect for all readers that were found, and reads their configurations in it. Afterwards
// device 0 is active.
std::vector<InText> ReadInText(const Link& link);

// Makes an ID read in text end within seconds if no answer comes; with a serial port's usual time-outs it
// takes minutes. False if nobody answers, so that a read is pointless.
bool ShortenTextRead(const Link& link);

}  // namespace tavlyn::ctl
