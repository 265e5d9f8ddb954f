// replay.cpp: runs a fuzz target without libFuzzer: on every file of its corpus, and on damaged
// copies of them that are the same each time.
//
//     fuzz_NAME [--damaged COUNT] [--seed SEED] FILE|FOLDER...
//
// A crash ends the process, as does an input that takes over 10 s; what it was given is named on
// stderr.
#include <algorithm>
#include <charconv>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "support/damage.h"
#include "support/inputLimits.h"
#include "target.h"

namespace {

namespace fs = std::filesystem;
using clockType = std::chrono::steady_clock;

struct arguments {
    std::uint64_t damaged = 0;  ///< copies in all
    std::uint64_t seed = 1;
    std::vector<fs::path> places;
};

struct corpusFile {
    std::string name;
    orv::byteList bytes;
};

void OnCrash(int signal)
{
    orv::WriteInput();
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

void WatchForCrashes()
{
    if (orv::CallAtSanitizersEnd(orv::WriteInput)) {
        std::signal(SIGABRT, OnCrash);
        return;
    }
    for (const int signal : {SIGABRT, SIGBUS, SIGFPE, SIGILL, SIGSEGV})
        std::signal(signal, OnCrash);
}

bool ReadNumber(const char* text, std::uint64_t& number)
{
    const char* end = text + std::strlen(text);
    const auto [stopped, error] = std::from_chars(text, end, number);
    return error == std::errc{} && stopped == end;
}

bool ReadArguments(int argc, char** argv, arguments& result)
{
    for (int k = 1; k < argc; ++k) {
        const std::string_view word = argv[k];
        if (word == "--damaged" || word == "--seed") {
            std::uint64_t& number = word == "--seed" ? result.seed : result.damaged;
            if (++k == argc || !ReadNumber(argv[k], number)) return false;
        } else {
            result.places.emplace_back(word);
        }
    }
    return !result.places.empty();
}

/// Sorted by name, so that an index means the same file everywhere.
std::vector<corpusFile> ReadCorpus(const std::vector<fs::path>& places)
{
    std::vector<fs::path> paths;
    for (const fs::path& place : places) {
        if (!fs::is_directory(place)) {
            paths.push_back(place);
            continue;
        }
        for (const auto& entry : fs::directory_iterator(place)) paths.push_back(entry.path());
    }
    std::ranges::sort(paths);
    std::vector<corpusFile> files;
    for (const fs::path& path : paths) {
        std::ifstream stream(path, std::ios::binary);
        files.push_back({path.string(), {std::istreambuf_iterator<char>(stream), {}}});
    }
    return files;
}

class Runner {
public:
    void Run(const std::string& name, const orv::byteList& bytes)
    {
        limits_.Next(name);
        const auto start = clockType::now();
        LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
        const auto took = clockType::now() - start;
        ++count_;
        if (took <= longest_) return;
        longest_ = took;
        slowest_ = name;
    }
    void Report() const
    {
        const std::chrono::duration<double, std::milli> longest = longest_;
        std::printf("%llu inputs, the slowest took %.1f ms: %s\n",
                    static_cast<unsigned long long>(count_), longest.count(), slowest_.c_str());
    }

private:
    orv::InputLimits limits_;
    std::uint64_t count_ = 0;
    clockType::duration longest_{};
    std::string slowest_;
};

}  // namespace

int main(int argc, char** argv)
{
    arguments args;
    if (!ReadArguments(argc, argv, args)) {
        std::fprintf(stderr, "usage: %s [--damaged COUNT] [--seed SEED] FILE|FOLDER...\n", argv[0]);
        return 2;
    }
    const std::vector<corpusFile> files = ReadCorpus(args.places);
    if (files.empty()) {
        std::fprintf(stderr, "%s: no files to run\n", argv[0]);
        return 2;
    }
    WatchForCrashes();

    Runner runner;
    for (const corpusFile& file : files) runner.Run(file.name, file.bytes);
    for (std::uint64_t k = 0; k < args.damaged; ++k) {
        const corpusFile& file = files[k % files.size()];
        const std::uint64_t index = k / files.size();
        runner.Run(file.name + " damaged with seed " + std::to_string(args.seed) + ", index " +
                       std::to_string(index),
                   orv::Damaged(file.bytes, args.seed, index));
    }
    runner.Report();
    return 0;
}
