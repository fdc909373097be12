#pragma once

/// Counts the allocations of the calling thread, and makes some of them fail.

namespace calls {

/// Lets the `number`-th allocation from now on fail, and if `forever` all that follow it.
void failAllocations(long number, bool forever);
/// Lets all allocations succeed again. Returns whether one has failed.
bool stopFailing();
/// Number of blocks that this thread has allocated less those that it has freed.
long liveBlocks();

}  // namespace calls
