// What a library finds in a document, for comparison with the others.
#include "bench/Fields.h"
#include "bench/Measurements.h"

namespace Bench {

namespace {

void addAnswers(Fields& fields, const Answers& answers) {
    fields.add("elements", answers.elements);
    fields.add("attributes", answers.attributes);
    fields.add("texts", answers.texts);
    fields.add("name bytes", answers.nameBytes);
    fields.add("value bytes", answers.valueBytes);
    fields.add("text bytes", answers.textBytes);
}

void addSelected(Fields& fields, Library& library, const std::string& name,
                 const std::string& expression) {
    if (expression.empty()) return;
    fields.add(name + " results", library.select(expression));
    fields.add(name + " bytes", library.selectedBytes(expression));
}

void addQueries(Fields& fields, const Subject& subject) {
    const Queries& queries = subject.document.queries;
    addSelected(fields, subject.tested, "child path", queries.childPath);
    addSelected(fields, subject.tested, "descendants", queries.descendants);
    addSelected(fields, subject.tested, "attribute predicate", queries.attribute);
    addSelected(fields, subject.tested, "position predicate", queries.position);
}

Answers answersOf(Library& library) {
    Answers answers;
    library.walk(answers);
    return answers;
}

// Whether what is written holds what was read.
bool writesTheSame(Library& library) {
    const Answers before = answersOf(library);
    const std::string text = library.write();
    library.clear();
    return library.parse(text) && answersOf(library).isLike(before);
}

bool readsTheSameFromFile(const Subject& subject) {
    const Answers before = answersOf(subject.tested);
    subject.tested.clear();
    return subject.tested.parseFile(subject.path) && answersOf(subject.tested).isLike(before);
}

}  // namespace

bool printAnswers(const Subject& subject) {
    Library& library = subject.tested;
    if (!library.parse(subject.text)) return false;
    Fields fields;
    if (!library.abilities().hasTree) return true;
    addAnswers(fields, answersOf(library));
    if (subject.document.use == Use::Validation) {
        if (library.abilities().hasValidation) fields.add("validate", library.validate());
        return true;
    }
    if (library.abilities().hasQueries && subject.document.use != Use::Reading) {
        addQueries(fields, subject);
    }
    if (library.abilities().hasFiles) fields.add("parse file", readsTheSameFromFile(subject));
    if (hasOutput(subject)) fields.add("write", writesTheSame(library));
    return true;
}

}  // namespace Bench
