// Card types that a plus reader knows.
#pragma once

namespace tavlyn {

void ReadCardTypeList();

}  // namespace tavlyn
