#include "VexXml/Dom.h"

namespace Xml {

Entity::Entity(const std::string& name) : mName(name) {
    if (!isName(name)) Message("<Xml::Entity::Entity> not a valid name: " + name);
}

const std::string& Entity::toString() const { return mText = '&' + mName + ';'; }

}  // namespace Xml
