#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <limits>
#include <string>
#include <string_view>

#include "VexXml/Dtd.h"
#include "VexXml/Values.h"
#include "values/ByteClass.h"
#include "values/Bytes.h"
#include "values/References.h"

namespace Xml {
namespace {

struct StdEntity {
    char character;
    std::string_view reference;

    constexpr std::string_view name() const { return reference.substr(1, reference.size() - 2); }
};

constexpr StdEntity kStdEntities[] = {
    {'&', "&amp;"}, {'<', "&lt;"}, {'>', "&gt;"}, {'"', "&quot;"}, {'\'', "&apos;"},
};

// Null when the text is not a single special character.
const StdEntity* stdEntityOf(const DataHolder& value) {
    if (value.getSize() != 1) return nullptr;
    const auto isOfValue = [&](const StdEntity& entity) { return entity.character == value[0]; };
    const auto* const found =
        std::find_if(std::begin(kStdEntities), std::end(kStdEntities), isOfValue);
    return found != std::end(kStdEntities) ? found : nullptr;
}

// The size when there is none.
std::size_t findSpecial(const std::string& text, std::size_t begin) {
    const auto found = std::find_if(text.begin() + static_cast<std::ptrdiff_t>(begin), text.end(),
                                    ByteClass::isSpecial);
    return static_cast<std::size_t>(found - text.begin());
}

bool isCharacterReference(std::string_view name) { return name.size() > 1 && name[0] == '#'; }

// The byte that the number behind "#" stands for, which is its low byte; 0 when there is no number
// or it does not fit 32 bits. Only the lower-case "x" makes it hexadecimal. Needs: no digit stands
// behind the name.
char numberedCharacter(std::string_view name) {
    const bool isHex = name[1] == 'x';
    const long long number = std::strtoll(name.data() + (isHex ? 2 : 1), nullptr, isHex ? 16 : 10);
    using Limits = std::numeric_limits<std::int32_t>;
    if (number < Limits::min() || number > Limits::max()) return '\0';
    return static_cast<char>(static_cast<unsigned char>(number));
}

// 0 when the name is neither a number nor predefined. Needs: as above.
char characterValue(std::string_view name) {
    if (isCharacterReference(name)) return numberedCharacter(name);
    for (const StdEntity& entity : kStdEntities) {
        if (name.size() == entity.name().size() && name == entity.name()) return entity.character;
    }
    return '\0';
}

// As above, for a reference by a decimal number of few digits. Goes behind it if it is one.
char takeShortNumber(const char*& at, const char* end) {
    constexpr std::ptrdiff_t kMostDigits = 9;  // fit any 32 bits
    const char* const first = at + 2;
    const char* digit = first;
    std::uint32_t number = 0;
    for (; digit < end && *digit >= '0' && *digit <= '9'; ++digit) {
        number = number * 10 + static_cast<std::uint32_t>(*digit - '0');
    }
    if (digit == end || *digit != ';' || digit - first > kMostDigits) return '\0';
    at = digit + 1;
    return static_cast<char>(static_cast<unsigned char>(number));
}

// By the first two letters of a name. Each of the predefined ones has a slot for itself.
constexpr std::size_t slotOf(char first, char second) {
    return static_cast<std::size_t>(first ^ second) % 16;
}

using EntitiesBySlot = std::array<StdEntity, 16>;

constexpr EntitiesBySlot kEntitiesBySlot = [] {
    EntitiesBySlot entities{};
    for (const StdEntity& entity : kStdEntities) {
        entities[slotOf(entity.name()[0], entity.name()[1])] = entity;
    }
    return entities;
}();

// As above, for the references that are usual. The others are left to slower ways.
char takeUsualReference(const char*& at, const char* end) {
    constexpr std::ptrdiff_t kShortest = 4;
    if (end - at < kShortest) return '\0';
    if (at[1] == '#') return takeShortNumber(at, end);
    const StdEntity& entity = kEntitiesBySlot[slotOf(at[1], at[2])];
    const std::size_t size = entity.reference.size();
    if (static_cast<std::size_t>(end - at) < size ||
        !Bytes::areEqual(at, entity.reference.data(), size)) {
        return '\0';
    }
    at += size;
    return entity.character;
}

// Puts the plain text at `out`, which has room for the text as it is, and returns its end; null
// when there is a reference that is not a usual one.
char* replaceUsualReferences(std::string_view text, char* out) {
    const char* at = text.data();
    const char* const end = at + text.size();
    while (at < end) {
        if (*at != '&') {
            *out++ = *at++;
        } else if (const char character = takeUsualReference(at, end)) {
            *out++ = character;
        } else {
            return nullptr;
        }
    }
    return out;
}

std::string_view viewOf(const DataHolder& text) {
    return {text.toCString(), static_cast<std::size_t>(text.getSize())};
}

void append(DataHolder& text, std::string_view bytes) {
    text.append(bytes.data(), static_cast<int>(bytes.size()));
}

std::string reference(const std::string& name) { return '&' + name + ';'; }

// Calls `takeText` with each stretch of text without references and `takeName` with the name in
// each reference, in turn, until the latter answers false. A ";" stands behind every name but one
// that goes on to the end.
template <class TakeText, class TakeName>
void visitReferences(std::string_view source, const TakeText& takeText, const TakeName& takeName) {
    std::size_t at = 0;
    for (;;) {
        const std::size_t next = std::min(source.find('&', at), source.size());
        takeText(source.substr(at, next - at));
        if (next == source.size()) return;
        const std::size_t end = std::min(source.find(';', next), source.size());
        if (!takeName(source.substr(next + 1, end - next - 1))) return;
        at = std::min(end + 1, source.size());
    }
}

// Needs: a NUL stands behind the text. Whether all references are to characters.
bool appendReplaced(DataHolder& result, std::string_view source, const Dtd* dtd) {
    bool areCharacters = true;
    visitReferences(
        source, [&](std::string_view text) { append(result, text); },
        [&](std::string_view name) {
            if (const char character = characterValue(name)) {
                result.push(character);
            } else {
                append(result, viewOf(getEntityValue(std::string(name), dtd)));
                areCharacters = false;
            }
            return true;
        });
    return areCharacters;
}

}  // namespace

std::string_view stdReference(char character) {
    const StdEntity* entity = std::begin(kStdEntities);
    while (entity->character != character) ++entity;
    return entity->reference;
}

std::size_t replacedSize(const DataHolder& text, const Dtd* dtd, std::size_t limit) {
    std::size_t size = 0;
    visitReferences(
        viewOf(text), [&](std::string_view piece) { size += piece.size(); },
        [&](std::string_view name) {
            const bool isCharacter = characterValue(name) != '\0';
            size += isCharacter ? 1 : viewOf(getEntityValue(std::string(name), dtd)).size();
            return size <= limit;
        });
    return size;
}

DataHolder& replaceEntities(DataHolder& text, const Dtd* dtd) {
    if (viewOf(text).find('&') == std::string_view::npos) return text;
    const ReplacedText replaced(text, dtd);
    return text = DataHolder(replaced.view().data(), replaced.view().size());
}

ReplacedText::ReplacedText(const DataHolder& text, const Dtd* dtd) {
    const std::string_view source = viewOf(text);
    if (source.size() <= mShort.size()) {
        if (const char* end = replaceUsualReferences(source, mShort.data())) {
            mView = {mShort.data(), static_cast<std::size_t>(end - mShort.data())};
            return;
        }
    }
    mAreCharacters = appendReplaced(mLong, source, dtd);
    mView = viewOf(mLong);
}

DataHolder& insertStdEntities(DataHolder& text) {
    const std::string source = text;
    std::size_t next = findSpecial(source, 0);
    if (next == source.size()) return text;

    std::string result;
    std::size_t copied = 0;
    for (; next != source.size(); next = findSpecial(source, copied)) {
        result.append(source, copied, next - copied);
        result += stdReference(source[next]);
        copied = next + 1;
    }
    text = result.append(source, copied);
    return text;
}

std::string toXmlString(const DataHolder& text) {
    DataHolder holder = text;
    const std::string escaped = insertStdEntities(holder);
    return '"' + escaped + '"';
}

DataHolder getEntityValue(const std::string& name, const Dtd* dtd) {
    if (const char character = characterValue(name)) return {&character, 1};
    if (dtd != nullptr && dtd->isEntityName(name)) return dtd->getEntityValue(name);
    return reference(name);
}

std::string getEntityName(const DataHolder& value, const Dtd* dtd) {
    if (const StdEntity* entity = stdEntityOf(value)) return std::string(entity->name());
    if (dtd != nullptr && dtd->isEntityValue(value)) return dtd->getEntityName(value);
    return value;
}

// A number need not be valid here: "#zz" counts as a name that can be expanded.
bool isEntityName(const std::string& name, const Dtd* dtd) {
    if (isCharacterReference(name) || characterValue(name) != '\0') return true;
    return dtd != nullptr && dtd->isEntityName(name);
}

bool isEntityValue(const DataHolder& value, const Dtd* dtd) {
    if (stdEntityOf(value) != nullptr) return true;
    return dtd != nullptr && dtd->isEntityValue(value);
}

}  // namespace Xml
