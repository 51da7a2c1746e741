// Readers that are spoken to in text.
#pragma once

#include <chrono>
#include <vector>

#include "tools/tavlynctl/link.h"

namespace tavlyn::ctl {

enum class InText {
  kSilent,  // it does not speak text, or has gone
  kUnread,  // it answers, but not with all of its configuration
  kRead,
};

// How long a reader on a port is waited for that does not speak text.
std::chrono::seconds SilenceInText(const Link& link);

// Chooses the dialect for all readers that were found, and reads their configurations in it. Device 0 is
// active afterwards.
std::vector<InText> ReadInText(const Link& link);

// Sees to it that an ID read in text ends within seconds when no answer comes; with the usual time-outs of a
// serial port it takes minutes. False: nobody answers, and a read is not worth its time.
bool ShortenTextRead(const Link& link);

}  // namespace tavlyn::ctl
