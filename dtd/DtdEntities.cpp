#include <algorithm>
#include <string>

#include "VexXml/Dtd.h"

namespace Xml {

void Dtd::setEntity(const std::string& name, const DataHolder& value) {
    mEntities.insert_or_assign(name, value);
}

bool Dtd::isEntityName(const std::string& name) const { return mEntities.count(name) > 0; }

bool Dtd::isEntityValue(const DataHolder& value) const {
    return std::any_of(mEntities.begin(), mEntities.end(),
                       [&](const auto& entity) { return entity.second == value; });
}

const DataHolder& Dtd::getEntityValue(const std::string& name) const {
    const auto found = mEntities.find(name);
    if (found != mEntities.end()) return found->second;
    // "unkown": callers compare this.
    Message("<Xml::Dtd::getEntityValue> unkown entity name: " + name);
    mUnknownEntityValue = '&' + name + ';';
    return mUnknownEntityValue;
}

const std::string& Dtd::getEntityName(const DataHolder& value) const {
    const auto found = std::find_if(mEntities.begin(), mEntities.end(),
                                    [&](const auto& entity) { return entity.second == value; });
    if (found != mEntities.end()) return found->first;
    const std::string text = value;
    // "unkown", and the other function's name: callers compare this.
    Message("<Xml::Dtd::getEntityValue> unkown entity value: " + text);
    mUnknownEntityName = text;
    return mUnknownEntityName;
}

}  // namespace Xml
