# What Doxygen is shown of a document, which is written for forges:
# - headings get the names that links to them use, with that of the document in front;
# - links to headings, headers and other files become ones that lead somewhere in the site;
# - blocks of code get the marks that Doxygen looks into least;
# - code that holds a single quote is put between two backquotes, as Doxygen takes `it' for a quotation,
#   and the axis of a query is kept from being taken for a class.

function anchorOf(heading,    anchor) {
    anchor = tolower(heading)
    gsub(/[^a-z0-9 _-]/, "", anchor)
    gsub(/ /, "-", anchor)
    return anchor
}

function baseName(path) { sub(/.*\//, "", path); return path }

# The name of a document in the site, for a path as it stands in another document.
function pageOf(path,    name) {
    if (path ~ /examples\/README\.md$/) return "examples"
    if (path ~ /(^|\/)docs\/README\.md$/ || (path == "README.md" && FILENAME ~ /\/docs\/[^\/]*$/)) return "index"
    name = tolower(baseName(path))
    sub(/\.md$/, "", name)
    return name
}

# Sources lie beside the pages. What is neither there nor a page gives an empty text.
function linkTo(target,    hash) {
    if (target ~ /:|\.svg$/) return target
    hash = index(target, "#")
    if (hash == 1) return "@ref " page "_" substr(target, 2)
    if (hash > 1) return "@ref " pageOf(substr(target, 1, hash - 1)) "_" substr(target, hash + 1)
    if (target ~ /\.md$/) return "@ref " pageOf(target)
    if (target ~ /\.h$/) return "@ref " baseName(target)
    return target ~ /\.cpp$|LICENSE$/ ? "./" baseName(target) : ""
}

# The page that the site begins with has all the others below it.
function link(text, target) {
    if (linkTo(target) == "") return text
    if (page == "index" && target ~ /^[a-z]+\.md$/) return "@subpage " pageOf(target) " \"" text "\""
    return "[" text "](" linkTo(target) ")"
}

function withLinks(line,    result, middle) {
    while (match(line, /\[[^\]]*\]\([^)]*\)/)) {
        result = result substr(line, 1, RSTART - 1)
        middle = RSTART + index(substr(line, RSTART), "](")
        result = result link(substr(line, RSTART + 1, middle - RSTART - 2), substr(line, middle + 1, RSTART + RLENGTH - middle - 2))
        line = substr(line, RSTART + RLENGTH)
    }
    return result line
}

function code(text) {
    if (text ~ /[a-z]::[a-z]/ && text !~ /[A-Z]/) {
        gsub(/&/, "\\&amp;", text); gsub(/</, "\\&lt;", text); gsub(/>/, "\\&gt;", text)
        gsub(/::/, "\\::", text); gsub(/@/, "\\@", text)
        return "<code>" text "</code>"
    }
    return text ~ /'/ ? "``" text "``" : "`" text "`"
}

# Code is put aside while links are looked for, which it may look like.
function hold(text) { held[++heldCount] = text; return "\001" heldCount "\002" }
function release(text) {
    while (match(text, /\001[0-9]+\002/)) {
        text = substr(text, 1, RSTART - 1) held[substr(text, RSTART + 1, RLENGTH - 2)] substr(text, RSTART + RLENGTH)
    }
    return text
}

# Pieces between backquotes are the second, the fourth and so on.
# Whether the code at that place is all of a link's text, which would show the backquotes.
function isLinked(pieces, i) { return pieces[i - 1] ~ /\[$/ && pieces[i + 1] ~ /^\]\(/ }

function withCode(text,    pieces, count, i, result) {
    count = split(text, pieces, /`/)
    if (count % 2 == 0) return text
    for (i = 2; i < count; i += 2) {
        result = result pieces[i - 1] (isLinked(pieces, i) ? pieces[i] : hold(code(pieces[i])))
    }
    return release(withLinks(result pieces[count]))
}

NR == 1 { page = pageOf(FILENAME) }
/^```/ {
    isInside = !isInside
    print isInside ? "@code{." ($0 == "```cpp" ? "cpp" : "unparsed") "}" : "@endcode"
    next
}
isInside { print; next }
/^# / && page != "index" { print $0 " {#" page "}"; next }
/^##/ {
    heading = $0
    sub(/^#+ /, "", heading)
    print $0 " {#" page "_" anchorOf(heading) "}"
    next
}
{ print withCode($0) }
