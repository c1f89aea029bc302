#pragma once

#include <cstddef>
#include <vector>

#include "VexXml/Streams.h"
#include "dtd/ModelAccess.h"

namespace Xml {

/// Writes particles as they stand in an element declaration, such as `(head, (para | list)*)`.
class ModelWriter {
public:
    explicit ModelWriter(OutStream& out);

    /// Writes the particle as the class named here, even if a caller derived one from it.
    void write(const ChildrenSpec& node, bool parenthesise);
    void write(const NameSpec& particle, bool parenthesise);
    void write(const SeqSpec& particle, bool parenthesise);
    void write(const ChoiceSpec& particle, bool parenthesise);

private:
    /// A list of which "(" is written, if it has one, and the items in front of `next`.
    struct OpenList {
        const ParticleList* items;
        std::size_t next;
        const char* separator;
        const char* end;     ///< what stands behind the last item
        const char* suffix;  ///< the repetition of the whole list
    };

    void begin(const ChildrenSpec& node, bool parenthesise);
    void begin(const NameSpec& particle, bool parenthesise, const char* suffix);
    void begin(const SeqSpec& particle, bool parenthesise, const char* suffix);
    void begin(const ChoiceSpec& particle, bool parenthesise, const char* suffix);
    void begin(const CpSpec& particle, bool parenthesise, const char* suffix);
    void finishOpenLists();

    OutStream& mOut;
    std::vector<OpenList> mOpen;
};

}  // namespace Xml
