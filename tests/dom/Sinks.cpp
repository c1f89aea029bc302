#include "dom/Sinks.h"

#include <fcntl.h>
#include <unistd.h>

#include <cctype>
#include <fstream>
#include <iterator>
#include <locale>
#include <new>
#include <sstream>
#include <vector>

#include "support/TempFolder.h"

namespace support {
namespace {

std::string contentOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

class TextSink : public Sink {
public:
    explicit TextSink(const std::string& before = {}, std::ios::openmode mode = std::ios::out)
        : mStream(before, std::ios::out | mode) {}

    std::ostream& stream() override { return mStream; }
    std::string seen() override { return mStream.str(); }

private:
    std::ostringstream mStream;
};

/// A file, or a device, with a buffer of that many bytes; 0 for none, below 0 for the usual one.
class FileSink : public Sink {
public:
    explicit FileSink(int bufferSize = -1, std::ios::openmode mode = std::ios::out,
                      const std::string& before = {}, const std::string& device = {})
        : mPath(device.empty() ? mFolder.write("f", before) : device),
          mIsDevice(!device.empty()),
          mBuffer(bufferSize > 0 ? static_cast<std::size_t>(bufferSize) : 1) {
        if (bufferSize >= 0) {
            mStream.rdbuf()->pubsetbuf(bufferSize == 0 ? nullptr : mBuffer.data(), bufferSize);
        }
        mStream.open(mPath, std::ios::binary | mode);
    }

    std::ostream& stream() override { return mStream; }
    std::fstream& file() { return mStream; }
    std::string seen() override { return mIsDevice ? std::string() : contentOf(mPath); }

private:
    TempFolder mFolder;
    std::string mPath;
    bool mIsDevice;
    std::vector<char> mBuffer;
    std::fstream mStream;
};

class PipeSink : public Sink {
public:
    PipeSink() {
        if (pipe(mEnds) != 0) return;
        fcntl(mEnds[0], F_SETFL, O_NONBLOCK);
        mStream.open("/proc/self/fd/" + std::to_string(mEnds[1]), std::ios::binary);
    }
    ~PipeSink() override {
        mStream.close();
        close(mEnds[0]);
        close(mEnds[1]);
    }

    std::ostream& stream() override { return mStream; }
    std::string seen() override {
        char bytes[4096];
        for (ssize_t count = 1; count > 0;) {
            count = read(mEnds[0], bytes, sizeof bytes);
            if (count > 0) mSeen.append(bytes, static_cast<std::size_t>(count));
        }
        return mSeen;
    }

private:
    int mEnds[2] = {-1, -1};
    std::ofstream mStream;
    std::string mSeen;
};

/// A caller's own buffer, which keeps a record of what is asked of it. Beyond its limit it has no
/// room, or throws.
class RecordingBuffer : public std::streambuf {
public:
    RecordingBuffer(std::size_t limit, bool throws) : mLimit(limit), mThrows(throws) {
        setp(mArea, mArea + sizeof mArea);
    }

    std::string record() const { return mRecord + '(' + std::string(pbase(), pptr()) + ')'; }

protected:
    int_type overflow(int_type c) override {
        mRecord += std::string(pbase(), pptr()) + "|";
        setp(mArea, mArea + sizeof mArea);
        if (mRecord.size() > mLimit && mThrows) throw std::bad_alloc();
        if (mRecord.size() > mLimit) return traits_type::eof();
        return sputc(traits_type::to_char_type(c));
    }
    std::streamsize xsputn(const char* bytes, std::streamsize count) override {
        mRecord += "put " + std::to_string(count) + ": ";
        return std::streambuf::xsputn(bytes, count);
    }
    int sync() override {
        mRecord += "sync ";
        return 0;
    }
    pos_type seekoff(off_type offset, std::ios::seekdir, std::ios::openmode) override {
        mRecord += "seek " + std::to_string(offset) + ' ';
        return static_cast<off_type>(mRecord.size());
    }
    pos_type seekpos(pos_type position, std::ios::openmode) override {
        mRecord += "go to " + std::to_string(static_cast<off_type>(position)) + ' ';
        return position;
    }

private:
    char mArea[5];
    std::size_t mLimit;
    bool mThrows;
    std::string mRecord;
};

class BufferSink : public Sink {
public:
    explicit BufferSink(std::size_t limit, bool throws = false)
        : mBuffer(limit, throws), mStream(&mBuffer) {}

    std::ostream& stream() override { return mStream; }
    std::string seen() override { return mBuffer.record(); }

private:
    RecordingBuffer mBuffer;
    std::ostream mStream;
};

/// A text with a caller's stream tied to it, which is flushed before each output.
class TiedSink : public Sink {
public:
    TiedSink() { mStream.tie(&mTied.stream()); }

    std::ostream& stream() override { return mStream; }
    std::string seen() override { return mStream.str() + mTied.seen(); }

private:
    BufferSink mTied{1000000};
    std::ostringstream mStream;
};

/// A buffer derived from a standard one, whose positions are its own.
class DerivedTextSink : public Sink {
public:
    std::ostream& stream() override { return mStream; }
    std::string seen() override { return mBuffer.str() + mBuffer.record; }

private:
    struct Buffer : std::stringbuf {
        std::string record;

        pos_type seekoff(off_type offset, std::ios::seekdir from,
                         std::ios::openmode which) override {
            record += '?';
            return std::stringbuf::seekoff(offset, from, which);
        }
    };

    Buffer mBuffer;
    std::ostream mStream{&mBuffer};
};

/// Two bytes for each line feed.
struct LineEnds : std::codecvt<char, char, std::mbstate_t> {
    bool do_always_noconv() const noexcept override { return false; }
    int do_encoding() const noexcept override { return 0; }
    result do_out(std::mbstate_t&, const char* from, const char* fromEnd, const char*& fromNext,
                  char* to, char* toEnd, char*& toNext) const override {
        for (fromNext = from, toNext = to; fromNext != fromEnd; ++fromNext) {
            if (toEnd - toNext < 2) return partial;
            if (*fromNext == '\n') *toNext++ = '\r';
            *toNext++ = *fromNext;
        }
        return ok;
    }
};

template <class Kind>
std::unique_ptr<Sink> with(std::unique_ptr<Kind> sink, void (*arrange)(Kind& sink)) {
    arrange(*sink);
    return sink;
}

using Made = std::unique_ptr<Sink>;

std::unique_ptr<FileSink> device(const char* path, int bufferSize) {
    return std::make_unique<FileSink>(bufferSize, std::ios::out, "", path);
}

}  // namespace

const SinkKind kSinkKinds[] = {
    {"text", []() -> Made { return std::make_unique<TextSink>(); }},
    {"text over a text", []() -> Made { return std::make_unique<TextSink>("what was there"); }},
    {"text behind a text",
     []() -> Made { return std::make_unique<TextSink>("what was there", std::ios::ate); }},
    {"file", []() -> Made { return std::make_unique<FileSink>(); }},
    {"file without a buffer", []() -> Made { return std::make_unique<FileSink>(0); }},
    {"file with a buffer for one byte", []() -> Made { return std::make_unique<FileSink>(1); }},
    {"file with a small buffer", []() -> Made { return std::make_unique<FileSink>(13); }},
    {"file that is added to",
     []() -> Made { return std::make_unique<FileSink>(20, std::ios::app, "what was there"); }},
    {"file that is read and written",
     []() -> Made {
         return with(
             std::make_unique<FileSink>(10, std::ios::in | std::ios::out, "what was there"),
             +[](FileSink& sink) { sink.file().get(); });
     }},
    {"file that is not open",
     []() -> Made {
         return with(
             std::make_unique<FileSink>(), +[](FileSink& sink) { sink.file().close(); });
     }},
    {"file of other line ends",
     []() -> Made {
         return with(
             std::make_unique<FileSink>(), +[](FileSink& sink) {
                 sink.file().imbue(std::locale(std::locale::classic(), new LineEnds));
             });
     }},
    {"file that is written at once",
     []() -> Made {
         return with(
             std::make_unique<FileSink>(), +[](FileSink& sink) { sink.file() << std::unitbuf; });
     }},
    {"text with a stream tied to it", []() -> Made { return std::make_unique<TiedSink>(); }},
    {"file that has failed",
     []() -> Made {
         return with(
             std::make_unique<FileSink>(),
             +[](FileSink& sink) { sink.file().setstate(std::ios::failbit); });
     }},
    {"full device", []() -> Made { return device("/dev/full", 50); }},
    {"full device with the usual buffer", []() -> Made { return device("/dev/full", -1); }},
    {"full device that throws",
     []() -> Made {
         return with(
             device("/dev/full", 60),
             +[](FileSink& sink) { sink.file().exceptions(std::ios::badbit | std::ios::failbit); });
     }},
    {"device without positions", []() -> Made { return device("/dev/null", 30); }},
    {"pipe", []() -> Made { return std::make_unique<PipeSink>(); }},
    {"caller's buffer", []() -> Made { return std::make_unique<BufferSink>(1000000); }},
    {"caller's buffer that fails", []() -> Made { return std::make_unique<BufferSink>(150); }},
    {"caller's buffer that throws",
     []() -> Made { return std::make_unique<BufferSink>(120, true); }},
    {"caller's buffer that throws, and so does the stream",
     []() -> Made {
         return with(
             std::make_unique<BufferSink>(170, true),
             +[](BufferSink& sink) { sink.stream().exceptions(std::ios::badbit); });
     }},
    {"buffer derived from that of a text",
     []() -> Made { return std::make_unique<DerivedTextSink>(); }},
};
const std::size_t kSinkKindCount = std::size(kSinkKinds);

}  // namespace support
