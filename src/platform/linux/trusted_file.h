// Which file a path leads to, and whether it may be loaded into a process.
#pragma once

#include "platform/path.h"

namespace tavlyn::platform {

// The path without links; empty when there is nothing of that name.
Path RealPath(const Path& path);

// Whether nobody but root has put it there or can exchange it afterwards: a regular file of root's, reached
// over folders of root's, all of them writable by nobody else. Above its own folder there may be one in which
// everybody takes away only what is his own, like /tmp: what is root's keeps its place there. The path has no
// links in it.
bool IsTrustedFile(const Path& file);

}  // namespace tavlyn::platform
