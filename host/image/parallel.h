// parallel.h: rows of pixels over the machine's threads. The one place of the host that starts
// threads.
#pragma once

#include <functional>

namespace orv {

/// Work on the rows begin <= row < end, as worker number `worker` (0 is the calling thread).
using rowRange = std::function<void(int worker, int begin, int end)>;

/// How many workers ParallelRows uses for `count` rows when each shall get at least `leastRows` of
/// them: 1 up to the number of hardware threads.
int WorkerCount(int count, int leastRows);

/// Splits 0 <= row < count into one range for each worker, runs them at the same time and returns
/// when all are done. The first exception (lowest worker) is thrown again. A thread that cannot be
/// started costs speed only: its range is then run by the caller.
void ParallelRows(int count, int leastRows, const rowRange& work);

}  // namespace orv
