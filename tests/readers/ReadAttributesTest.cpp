#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <random>
#include <string>
#include <utility>

#include "VexXml/Dom.h"
#include "VexXml/Readers.h"
#include "VexXml/Streams.h"
#include "support/Diagnostics.h"

namespace {

using Values = std::map<std::string, std::string>;

std::string nameOf(unsigned number) { return 'a' + std::to_string(number % 7919); }

// Elements of a few, many and very many attributes, as a reader makes them.
std::unique_ptr<Xml::Element> readElement(unsigned count, Values& values) {
    std::string text = "<r><e";
    for (unsigned i = 0; i < count; ++i) {
        const std::string value(i % 30, 'v');
        text += ' ' + nameOf(i * 4001) + "=\"" + value + '"';
        values[nameOf(i * 4001)] = value;
    }
    Xml::StringInStream in(text + "/></r>");
    Xml::ElementReader reader(nullptr);
    EXPECT_TRUE(reader.parse(in)) << reader.getErrorMessage();
    Xml::Object* element = reader.getRoot()->extractChild(0);
    return std::unique_ptr<Xml::Element>(element->toElement());
}

/// An element, and the attributes that it is to have, each at its place in memory.
class Expected {
public:
    Expected(Xml::Element& element, Values values) : mElement(element), mValues(std::move(values)) {
        for (const auto& value : mValues) place(value.first);
    }

    void set(const std::string& name, const std::string& value) {
        mElement.setAttribute(name, value);
        mValues[name] = value;
        if (mPlaces.count(name) == 0) place(name);
    }
    void removeByName(const std::string& name) {
        mElement.removeAttribute(name);
        mValues.erase(name);
        mPlaces.erase(name);
    }
    void removeByIndex(unsigned number) {
        if (mValues.empty()) return;
        const auto index = static_cast<int>(number % mValues.size());
        const std::string name = mElement.getAttribute(index)->getName();
        mElement.removeAttribute(index);
        mValues.erase(name);
        mPlaces.erase(name);
    }

    /// Empty for none.
    std::string mistakes() const {
        std::string mistake;
        const Xml::Element& element = mElement;
        if (element.getAttributeCount() != static_cast<int>(mValues.size())) mistake += "count ";
        int index = 0;
        for (const auto& [name, value] : mValues) {
            const Xml::Attribute* attribute = element.getAttribute(index++);
            if (attribute != mPlaces.at(name)) mistake += name + " moved ";
            if (attribute != element.getAttribute(name)) mistake += name + " not found ";
            if (attribute == nullptr) continue;
            if (attribute->getName() != name) mistake += name + " is " + attribute->getName();
            if (attribute->getValue() != Xml::DataHolder(value))
                mistake += name + " is valued wrong ";
            if (attribute->getParent() != &element) mistake += name + " has another parent ";
        }
        return mistake;
    }
    Xml::Element& element() const { return mElement; }
    const Values& values() const { return mValues; }

private:
    void place(const std::string& name) { mPlaces[name] = mElement.getAttribute(name); }

    Xml::Element& mElement;
    Values mValues;
    std::map<std::string, const Xml::Attribute*> mPlaces;
};

std::string mistakesInCopyOf(const Expected& expected) {
    Xml::Element copy(expected.element());
    return Expected(copy, expected.values()).mistakes();
}

TEST(ReadAttributes, StayWhereTheyAreWhileOthersComeAndGo) {
    const support::Diagnostics diagnostics;
    for (const unsigned count : {0U, 1U, 2U, 9U, 16U, 17U, 100U, 127U, 128U, 129U, 300U}) {
        SCOPED_TRACE(count);
        Values values;
        const auto element = readElement(count, values);
        Expected expected(*element, values);
        ASSERT_EQ(expected.mistakes(), "");
        std::mt19937 random(count);
        for (int step = 0; step < 120; ++step) {
            const auto number = static_cast<unsigned>(random() % 10000);
            switch (number % 4) {
                case 0:
                    expected.removeByName(nameOf(number % 512 * 4001));
                    break;
                case 1:
                    expected.removeByIndex(number);
                    break;
                case 2:
                    expected.set(nameOf(number % 256 * 4001), std::string(number % 40, 'w'));
                    break;
                default:
                    expected.set(nameOf(number), "new");
            }
            if (step % 8 == 0) {
                ASSERT_EQ(expected.mistakes(), "") << step;
            }
        }
        EXPECT_EQ(expected.mistakes(), "");
        EXPECT_EQ(mistakesInCopyOf(expected), "");
    }
}

TEST(ReadAttributes, AreOneByOneTakenAway) {
    for (const unsigned count : {1U, 2U, 20U, 128U, 129U}) {
        SCOPED_TRACE(count);
        Values values;
        const auto element = readElement(count, values);
        Expected expected(*element, values);
        for (unsigned i = 0; i < count; ++i) {
            expected.removeByIndex(i * 31);
            ASSERT_EQ(expected.mistakes(), "") << i;
        }
        EXPECT_EQ(element->getAttributeCount(), 0);
        expected.set("again", "1");
        EXPECT_EQ(expected.mistakes(), "");
    }
}

TEST(ReadAttributes, GoWithTheContentOfAnElement) {
    Values values;
    const auto element = readElement(5, values);
    const Xml::Attribute* first = element->getAttribute(0);
    Xml::Element other("other");
    other = std::move(*element);
    EXPECT_EQ(other.getAttribute(0), first);
    EXPECT_EQ(first->getParent(), &other);
    EXPECT_EQ(Expected(other, values).mistakes(), "");
}

TEST(ReadAttributes, StayFoundByTheNameTheyWereReadUnder) {
    Values values;
    const auto element = readElement(3, values);
    Xml::Attribute* first = element->getAttribute(0);
    const std::string name = first->getName();
    *first = Xml::Attribute("zz", "1");
    EXPECT_EQ(element->getAttribute(name), first);
    EXPECT_EQ(element->getAttribute("zz"), nullptr);
    element->setAttribute("b", "2");
    EXPECT_EQ(element->getAttribute(name), first);
}

}  // namespace
