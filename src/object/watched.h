// The border of the library for an evaluation that is watched.
#pragma once

#include "object/status_of.h"
#include "solve/watch.h"

namespace zrt {

/// The status of `work(watcher)` as StatusOf() gives it, told to `failure` and `observer`, each of
/// which may be null.
template <class Work>
int WatchedStatusOf(const char* text, Failure* failure, Observer* observer,
                    const Work& work) noexcept {
  Watcher watcher(text, observer);
  const int status = StatusOf([&] { return work(&watcher); });
  watcher.Finish(status, failure);
  return status;
}

}  // namespace zrt
