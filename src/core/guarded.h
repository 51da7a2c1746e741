// A call whose exception must not reach the caller.
#pragma once

namespace tavlyn {

template <typename Result, typename Call>
Result Guarded(Result fallback, Call call) try {
  return call();
} catch (...) {
  return fallback;
}

}  // namespace tavlyn
