#include <utility>

#include "VexXml/Dom.h"

namespace Xml {

Entity::Entity(const std::string& name) : mName(name) {
    if (!isName(name)) Message("<Xml::Entity::Entity> not a valid name: " + name);
}

Entity::Entity(const Entity&) = default;
Entity& Entity::operator=(const Entity&) = default;

Entity::Entity(Entity&& other) noexcept : mName(std::exchange(other.mName, {})) {}

Entity& Entity::operator=(Entity&& other) noexcept {
    mName = std::exchange(other.mName, {});
    return *this;
}

const std::string& Entity::toString() const { return mText = '&' + mName + ';'; }

}  // namespace Xml
