#include "image/parallel.h"

#include <algorithm>
#include <cstdint>
#include <exception>
#include <system_error>
#include <thread>
#include <vector>

namespace orv {

namespace {

int HardwareThreads()
{
    static const int threads =
        std::clamp(static_cast<int>(std::thread::hardware_concurrency()), 1, 64);
    return threads;
}

}  // namespace

int WorkerCount(int count, int leastRows)
{
    return std::clamp(count / std::max(leastRows, 1), 1, HardwareThreads());
}

void ParallelRows(int count, int leastRows, const rowRange& work)
{
    if (count <= 0) return;
    const int workers = WorkerCount(count, leastRows);
    std::vector<std::exception_ptr> failures(static_cast<std::size_t>(workers));
    const auto firstRow = [&](int worker) {
        return static_cast<int>(std::int64_t{count} * worker / workers);
    };
    const auto run = [&](int worker) noexcept {
        try {
            work(worker, firstRow(worker), firstRow(worker + 1));
        } catch (...) {
            failures[static_cast<std::size_t>(worker)] = std::current_exception();
        }
    };

    // Worker 0 and those that get no thread run here.
    int started = 1;
    {
        std::vector<std::jthread> threads;
        threads.reserve(static_cast<std::size_t>(workers));
        try {
            for (; started < workers; ++started) threads.emplace_back(run, started);
        } catch (const std::system_error&) {
            // The machine gives no more threads.
        }
        run(0);
        for (int worker = started; worker < workers; ++worker) run(worker);
    }

    for (const std::exception_ptr& each : failures) {
        if (each) std::rethrow_exception(each);
    }
}

}  // namespace orv
