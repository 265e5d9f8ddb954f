#include "image/wholeFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fmt/format.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <utility>

#include "scene/errors.h"

namespace orv {

namespace {

[[noreturn]] void Refuse(const std::string& file, const char* reason)
{
    throw failure(failureKind::output, fmt::format("{}: cannot be written: {}", file, reason));
}

std::string TemporaryName(const std::string& file, pid_t writer, int attempt)
{
    return fmt::format("{}.{}-{}.partial", file, writer, attempt);
}

/// A file under construction: removed again unless it was given its final name.
class TemporaryFile {
public:
    explicit TemporaryFile(const std::string& file) : file_(file)
    {
        // Another run may be writing the same file, and one that was killed may have left its own.
        for (int attempt = 0; descriptor_ < 0; ++attempt) {
            name_ = TemporaryName(file, ::getpid(), attempt);
            descriptor_ = ::open(name_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
            if (descriptor_ < 0 && errno != EEXIST) Refuse(file_, std::strerror(errno));
        }
    }
    ~TemporaryFile()
    {
        if (descriptor_ >= 0) ::close(descriptor_);
        if (!name_.empty()) ::unlink(name_.c_str());
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    void Write(std::span<const std::uint8_t> data)
    {
        while (!data.empty()) {
            const ssize_t written = ::write(descriptor_, data.data(), data.size());
            if (written < 0 && errno == EINTR) continue;
            if (written < 0) Refuse(file_, std::strerror(errno));
            data = data.subspan(static_cast<std::size_t>(written));
        }
    }

    void GiveFinalName()
    {
        // Some file systems report a full disk no earlier than here.
        if (::close(std::exchange(descriptor_, -1)) != 0) Refuse(file_, std::strerror(errno));
        if (std::rename(name_.c_str(), file_.c_str()) != 0) Refuse(file_, std::strerror(errno));
        name_.clear();
    }

private:
    std::string file_, name_;
    int descriptor_ = -1;
};

}  // namespace

void WriteWholeFile(const std::string& file, std::span<const std::uint8_t> data)
{
    struct stat existing {};
    if (::stat(file.c_str(), &existing) == 0 && !S_ISREG(existing.st_mode)) {
        Refuse(file, "it exists and is not a regular file");
    }
    TemporaryFile temporary(file);
    temporary.Write(data);
    temporary.GiveFinalName();
}

void RemoveUnfinished(const std::string& file, pid_t writer)
{
    for (int attempt = 0; ::unlink(TemporaryName(file, writer, attempt).c_str()) == 0;) ++attempt;
}

bool ReadWholeFile(const std::string& file, std::uint64_t limit, std::string& data)
{
    const int descriptor = ::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0) return false;
    struct stat info {};
    bool whole = ::fstat(descriptor, &info) == 0 && S_ISREG(info.st_mode) &&
                 static_cast<std::uint64_t>(info.st_size) <= limit;
    data.resize(whole ? static_cast<std::size_t>(info.st_size) : 0);
    for (std::size_t done = 0; whole && done < data.size();) {
        const ssize_t got = ::read(descriptor, data.data() + done, data.size() - done);
        if (got < 0 && errno == EINTR) continue;
        whole = got > 0;
        if (whole) done += static_cast<std::size_t>(got);
    }
    ::close(descriptor);
    return whole;
}

}  // namespace orv
