// Values for completion that the definition of the commands does not list: names of fields, and devices that
// are attached.
#pragma once

#include <span>

#include "tools/completion.h"

namespace tavlyn::ctl {

std::span<const Offer> Offers();

}  // namespace tavlyn::ctl
