#pragma once

#include <string>

#include "VexXml/Dom.h"
#include "VexXml/Streams.h"

namespace support {

/// A stream that keeps a record of what is done to it: each byte, and "[to 12]" for a move.
class LogStream : public Xml::OutStream {
public:
    explicit LogStream(int position = 0) : mPosition(position) {}

    void putChar(char c) override;
    int getPosition() const override { return mPosition; }
    void setPosition(int position) override;

    const std::string& log() const { return mLog; }

private:
    int mPosition;
    std::string mLog;
};

/// The record of writing the node to a fresh stream that stands at `position`.
std::string writeAt(int position, Xml::Object& node);

/// Switches the read/write optimisation on while it lives.
class OptimizedRewriting {
public:
    OptimizedRewriting() : mBefore(Xml::Object::setRWOptimization(true)) {}
    ~OptimizedRewriting() { Xml::Object::setRWOptimization(mBefore); }
    OptimizedRewriting(const OptimizedRewriting&) = delete;
    OptimizedRewriting& operator=(const OptimizedRewriting&) = delete;

private:
    bool mBefore;
};

/// Sets whether empty elements are written in short notation, while it lives.
class ShortNotation {
public:
    explicit ShortNotation(bool on) : mBefore(Xml::Element::setShortNotationForEmptyTags(on)) {}
    ~ShortNotation() { Xml::Element::setShortNotationForEmptyTags(mBefore); }
    ShortNotation(const ShortNotation&) = delete;
    ShortNotation& operator=(const ShortNotation&) = delete;

private:
    bool mBefore;
};

}  // namespace support
