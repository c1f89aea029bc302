#pragma once

#include <array>
#include <cstddef>
#include <memory_resource>
#include <string>
#include <string_view>

#include "xpath/Compiler.h"
#include "xpath/ExpressionText.h"
#include "xpath/Program.h"

namespace Xml {

/// An expression as a caller gives it, whose text must outlive it.
struct ExpressionSource {
    explicit ExpressionSource(const std::string& text) : bytes(text), isUTF8(true) {}
    explicit ExpressionSource(const VexSys::Uni16String& text)
        : bytes(reinterpret_cast<const char*>(text.data()), text.size() * sizeof(wchar_t)),
          isUTF8(false) {}

    VexSys::Uni16String units() const;

    std::string_view bytes;
    bool isUTF8;  ///< otherwise they are UTF-16 units
};

/// An expression and, once it is compiled, its program, with the memory of both.
class CompiledExpression {
public:
    explicit CompiledExpression(const ExpressionSource& source);
    CompiledExpression(const CompiledExpression&) = delete;
    CompiledExpression& operator=(const CompiledExpression&) = delete;

    bool isFrom(const ExpressionSource& source) const {
        return mIsUTF8 == source.isUTF8 && mSource == source.bytes;
    }
    std::size_t sourceSize() const { return mSource.size(); }
    const ExpressionText& text() const { return mText; }
    const Program& program() const { return mProgram; }
    bool isCompiled() const { return mIsCompiled; }

    /// Returns what is wrong with the expression, if anything is. To be called once.
    XPathError compile(Compiler::Context context);
    /// Notices the names that nodes have come to share since then.
    void lookUpNames();

private:
    // What the parts of an expression take, unless it is long.
    static constexpr std::size_t kUsualSize = 3072;

    std::array<std::byte, kUsualSize> mBuffer;
    std::pmr::monotonic_buffer_resource mMemory{mBuffer.data(), mBuffer.size()};
    std::string mSource;
    bool mIsUTF8;
    ExpressionText mText;
    Program mProgram{&mMemory};
    bool mIsCompiled = false;
};

}  // namespace Xml
