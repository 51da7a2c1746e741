// Which file a path leads to, and whether it may be loaded into a process.
#pragma once

#include "platform/path.h"

namespace tavlyn::platform {

// The path without links; empty when there is nothing of that name.
Path RealPath(const Path& path);

// Whether only root can have put the file there or can replace it: a regular file owned by root, in folders
// owned by root, all of them writable by nobody else. The folders above its own may be sticky ones like /tmp,
// in which nobody else can move what root owns. The path must not contain links.
bool IsTrustedFile(const Path& file);

// The first folder of the path, or the file itself, for which that is not so; empty for a trusted file.
Path UntrustedPart(const Path& file);

}  // namespace tavlyn::platform
