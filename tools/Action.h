#pragma once

#include <memory>
#include <string>
#include <vector>

#include "VexXml/Dom.h"
#include "VexXml/Readers.h"

namespace tools {

/// What is done to nodes of a document.
struct Action {
    enum class Kind { SetText, SetAttribute, RemoveAttribute, Rename, Add, Delete };
    Kind kind;
    std::string name;  ///< SetAttribute, RemoveAttribute and Rename
    std::string text;  ///< SetText and SetAttribute; the XML for Add
};

/// Does actions to a list of nodes, one action to all of them after the other.
///
/// Whatever is taken out of the document lives as long as this. So it does no harm if a node of
/// the list goes with one around it.
class Editor {
public:
    /// Neither is owned. The nodes belong to the document, each is there once.
    Editor(Xml::Document& document, const Xml::ReadLimits& limits, std::vector<Xml::Object*> nodes);
    ~Editor();
    Editor(const Editor&) = delete;
    Editor& operator=(const Editor&) = delete;

    /// Empty, or why that cannot be done; then a part of it may be done already.
    std::string apply(const Action& action);

private:
    std::string findUnfit(Action::Kind kind) const;
    std::string change(Xml::Object*& node, const Action& action);
    std::string setText(Xml::Object& node, const std::string& text);
    std::string setTextOf(Xml::Element& element, const std::string& text);
    std::string rename(Xml::Object*& node, const std::string& name);
    std::string addToAll(const std::string& xml);
    void removeAll(const std::vector<Xml::Object*>& nodes);
    void takeChildrenFrom(Xml::Element& element, std::vector<std::unique_ptr<Xml::Object>>& taken);

    Xml::Document& mDocument;
    const Xml::ReadLimits& mLimits;
    std::vector<Xml::Object*> mNodes;
    std::vector<Xml::Object*> mEmptied;  ///< texts that an action has left empty
    std::vector<std::unique_ptr<Xml::Object>> mGone;
};

}  // namespace tools
