#include "xpath/CompiledExpression.h"

#include "VexXml/Dom.h"

namespace Xml {
namespace {

void lookUp(NameTest& test) {
    const bool isUnknown = test.form == NameTest::Form::WholeName && test.sharedName == nullptr;
    if (isUnknown) test.sharedName = Detail::NodeName::sharedText(test.name);
}

}  // namespace

VexSys::Uni16String ExpressionSource::units() const {
    if (isUTF8) return VexSys::UTF8ToUni16Char(bytes.data(), bytes.size());
    return {reinterpret_cast<const wchar_t*>(bytes.data()), bytes.size() / sizeof(wchar_t)};
}

CompiledExpression::CompiledExpression(const ExpressionSource& source)
    : mSource(source.bytes), mIsUTF8(source.isUTF8), mText(source.units(), &mMemory) {}

XPathError CompiledExpression::compile(Compiler::Context context) {
    if (mText.error().code != XPath::NoError) return mText.error();
    Compiler compiler(mText, context, mProgram);
    mIsCompiled = compiler.compile();
    return compiler.error();
}

void CompiledExpression::lookUpNames() {
    for (Expression& expression : mProgram.expressions) {
        for (Operand& operand : expression.operands) {
            for (Step& step : operand.steps) lookUp(step.test.name);
        }
    }
}

}  // namespace Xml
