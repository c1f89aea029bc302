# What Doxygen is shown of a header, whose comments are written for readers of the header:
# - the comment behind "#pragma once" is that of the file;
# - an overload right behind another one shares its comment, and all up to "@}" that with "@{";
# - an axis of a query is kept from being taken for a class;
# - copying and moving, where nothing is said about them, are as everywhere in the library.

function isComment(line) { return line ~ /^ *\/\/\// }

# The name of the function that the line begins to declare; empty for anything else.
function functionIn(line) {
    if (line !~ /^(    )?[A-Za-z_~\[]/ || line ~ /^ *(class|struct|enum|using|namespace|return|friend)/) return ""
    if (match(line, /operator *[^ (]+ *\(/)) return substr(line, RSTART, RLENGTH)
    if (match(line, /[A-Za-z_0-9~]+\(/)) return substr(line, RSTART, RLENGTH)
    return ""
}

function usualComment(line) {
    if (line ~ /operator=\(const [A-Za-z]+&/) return "/// Becomes a copy of the other one, deep where that owns something."
    if (line ~ /[A-Za-z]\(const ([A-Za-z]+)&( other)?\);/ && isOfClass(line)) return "/// A copy, deep where the other one owns something."
    if (line ~ /operator=\([A-Za-z]+&&/) return "/// Takes what the other one holds, which is valid and empty then."
    if (line ~ /[A-Za-z]\([A-Za-z]+&&/) return "/// Takes what the other one holds, which is valid and empty then."
    return ""
}

# Whether "Name(const Name& ...)" has the same name twice.
function isOfClass(line,    parts) {
    sub(/^ +(explicit )?/, "", line)
    split(line, parts, /\(const |&/)
    return parts[1] == parts[2]
}

NR == 1 { atTop = 1 }
atTop && isComment($0) { print "/// @file"; atTop = 0 }
/^#include|^namespace/ { atTop = 0 }

/\/\/\/.*`[a-z-]+::[a-z]+`/ {
    gsub(/::/, "\\::")
    while (match($0, /`[^`]*`/)) {
        $0 = substr($0, 1, RSTART - 1) "<code>" substr($0, RSTART + 1, RLENGTH - 2) "</code>" substr($0, RSTART + RLENGTH)
    }
    gsub(/@/, "\\@")
}
/^ *\/\/\/ @\{/ { shared = comment; isGroup = 1; next }
/^ *\/\/\/ @\}/ { isGroup = 0; next }
isComment($0) { comment = wasComment ? comment "\n" $0 : $0; wasComment = 1; print; next }
/^ *\/\/ NOLINT/ { print; next }  # belongs to the line behind it

{
    name = functionIn($0)
    if (name != "") {
        if (isGroup) {
            if (!wasComment) print shared
        } else if (wasComment) {
            shared = comment
        } else if (name != lastName || gap) {
            shared = usualComment($0)
            if (shared != "") print shared
        } else if (usualComment($0) != "") {
            print usualComment($0)
        } else if (shared != "") {
            print shared
        }
        lastName = name
        gap = 0
    } else if ($0 ~ /^ *$/ || $0 ~ /^(public|protected|private)/) {
        gap = 1
    }
    wasComment = 0
    print
}
