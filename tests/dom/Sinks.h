#pragma once

#include <memory>
#include <ostream>
#include <string>

namespace support {

/// A standard stream, and what becomes of the bytes that are put into it.
class Sink {
public:
    Sink() = default;
    virtual ~Sink() = default;
    Sink(const Sink&) = delete;
    Sink& operator=(const Sink&) = delete;

    virtual std::ostream& stream() = 0;
    /// What has come through by now; what still waits in a buffer of the stream has not.
    virtual std::string seen() = 0;
};

struct SinkKind {
    const char* what;
    std::unique_ptr<Sink> (*make)();
};

/// Standard streams over memory, files, devices and pipes, with buffers of several sizes, that
/// fail, throw, flush or convert, and over buffers of classes that a caller derived.
extern const SinkKind kSinkKinds[];
extern const std::size_t kSinkKindCount;

}  // namespace support
