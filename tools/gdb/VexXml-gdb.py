"""Shows nodes and texts of VexXml in GDB as what they hold.

GDB loads this by itself with an installed library; otherwise: source tools/gdb/VexXml-gdb.py

A node shows as its start tag or its text, with the children of an element below. Pointers to nodes
show it behind the address; "print /r" shows nodes as they are. What is read here by addresses has
its layout where the type is declared: it may be hidden in the library, without debug information.
"""

import gdb
import gdb.printing
import gdb.types

SHOWN_BYTES = 60       # of each name and value in a start tag
SHOWN_ATTRIBUTES = 8   # in a start tag
POINTER = gdb.lookup_type("void").pointer().sizeof


def number_at(address, size):
    """The unsigned number of so many bytes, in the machine's order."""
    kind = {2: "unsigned short", 4: "unsigned int", 8: "unsigned long"}[size]
    return int(gdb.Value(address).cast(gdb.lookup_type(kind).pointer()).dereference())


def pointer_at(address):
    return number_at(address, POINTER)


def char_pointer(address):
    return gdb.Value(address).cast(gdb.lookup_type("char").pointer())


def quoted(address, size):
    """The beginning of a text, fit to be shown."""
    data = gdb.selected_inferior().read_memory(address, min(size, SHOWN_BYTES)).tobytes() if size > 0 else b""
    text = data.decode("utf-8", "backslashreplace")
    shown = "".join(c if c.isprintable() else c.encode("unicode_escape").decode() for c in text)
    return shown + ("..." if size > SHOWN_BYTES else "")


def string_at(address):
    """A std::string: the address of its bytes, then their number."""
    return pointer_at(address), pointer_at(address + POINTER)


def bytes_of(holder):
    """Where the text of a DataHolder lies, and its length. See DataHolder::mSmall."""
    address = int(holder["mSmall"].address)
    left = int(holder["mSmall"][15]) & 0xFF
    if left == 255:
        return pointer_at(address), number_at(address + POINTER, 4)
    return address, 15 - left


def name_of(node):
    """See NodeName::mTagged: what a name has for itself begins with it too."""
    return quoted(*string_at(int(node["mName"]["mTagged"]) & ~1))


def children_of(element):
    """The addresses of the children. See ChildList::mOnly."""
    place = element["mChildren"]["mOnly"]
    only = int(place)
    if only & 1 == 0:
        return [int(place.address)] if only != 0 else []
    block = only - 1
    first = block + 8
    return range(first, first + number_at(block, 4) * POINTER, POINTER)


def attributes_of(element):
    """The addresses of the attributes. See AttributeList."""
    size = gdb.lookup_type("Xml::Attribute").sizeof
    members = pointer_at(int(element["mAttributes"].address))
    if members == 0:
        return
    count, form, behind = number_at(members, 4), number_at(members + 6, 2), members + 8
    if form == 0:
        yield from range(behind, behind + count * size, size)
    elif form == 1:
        for link in range(count):
            yield pointer_at(behind + POINTER * (1 + link))
    else:
        yield from attributes_in_blocks(pointer_at(behind + POINTER))


def attributes_in_blocks(blocks):
    """See AttributeBlocks: a vector of vectors of pointers comes first."""
    for block in range(pointer_at(blocks), pointer_at(blocks + POINTER), 3 * POINTER):
        for link in range(pointer_at(block), pointer_at(block + POINTER), POINTER):
            yield pointer_at(link)


def show_attribute(attribute):
    return f'{name_of(attribute)}="{quoted(*bytes_of(attribute["mValue"]))}"'


def show_element(element):
    tag = "<" + name_of(element)
    kind = gdb.lookup_type("Xml::Attribute").pointer()
    for index, address in enumerate(attributes_of(element)):
        if index == SHOWN_ATTRIBUTES:
            tag += " ..."
            break
        tag += " " + show_attribute(gdb.Value(address).cast(kind).dereference())
    return tag + ">"


def show_text(text):
    return f'"{quoted(*bytes_of(text["mData"]))}"'


def show_document(document):
    root = root_of(document)
    return "document " + (show_element(root.dereference()) if int(root) != 0 else "without a root")


def root_of(document):
    address = pointer_at(int(document["mRoot"].address))
    return gdb.Value(address).cast(gdb.lookup_type("Xml::Element").pointer())


SHOWN_KINDS = {
    "Xml::Element": show_element,
    "Xml::Attribute": show_attribute,
    "Xml::CharData": show_text,
    "Xml::Document": show_document,
}


def node_kind(kind):
    """The name of the class, or of the nearest base that is known here. Null when it is no node."""
    while kind.name not in SHOWN_KINDS and kind.name != "Xml::Object":
        bases = [field.type for field in kind.fields() if field.is_base_class] if kind.code == gdb.TYPE_CODE_STRUCT else []
        if not bases:
            return None
        kind = bases[0]
    return kind.name


def show_node(node):
    """Empty when it is of no kind that is known."""
    show = SHOWN_KINDS.get(node_kind(gdb.types.get_basic_type(node.type)))
    try:
        return show(node) if show else ""
    except gdb.MemoryError:
        return "<not a node>"
    except gdb.error:
        return "<incomplete type>"


class NodePointer:
    """The address, as ever, and the node."""

    def __init__(self, value):
        self.value = value

    def to_string(self):
        address = hex(int(self.value))
        if int(self.value) == 0:
            return address
        try:
            node = self.value.cast(self.value.dynamic_type).dereference()
        except gdb.MemoryError:
            return address + " <not a node>"
        return f"{address} {show_node(node)}".rstrip()


class Node:
    def __init__(self, value):
        self.value = value

    def to_string(self):
        return show_node(self.value)


class ElementNode(Node):
    def children(self):
        kind = gdb.lookup_type("Xml::Object").pointer().pointer()
        for index, place in enumerate(children_of(self.value)):
            yield f"[{index}]", gdb.Value(place).cast(kind).dereference()


class DocumentNode(Node):
    def children(self):
        yield "root", root_of(self.value)


class DataHolder:
    def __init__(self, value):
        self.value = value

    def to_string(self):
        address, size = bytes_of(self.value)
        return char_pointer(address).lazy_string("utf-8", length=size)

    def display_hint(self):
        return "string"


class Uni16String:
    """A std::basic_string whose units are those of UTF-16, however wide."""

    def __init__(self, value):
        self.value = value

    def to_string(self):
        address, size = string_at(int(self.value.address))
        width = gdb.lookup_type("wchar_t").sizeof
        shown = min(size, 200)
        units = gdb.selected_inferior().read_memory(address, shown * width).tobytes() if shown > 0 else b""
        text = b"".join(units[i:i + 2] for i in range(0, len(units), width))
        return text.decode("utf-16-le", "backslashreplace") + ("..." if size > shown else "")

    def display_hint(self):
        return "string"


NODE_PRINTERS = {"Xml::Element": ElementNode, "Xml::Document": DocumentNode, "Xml::Attribute": Node, "Xml::CharData": Node}


def find_printer(value):
    kind = gdb.types.get_basic_type(value.type)
    if kind.code == gdb.TYPE_CODE_PTR:
        return NodePointer(value) if node_kind(gdb.types.get_basic_type(kind.target())) else None
    if kind.name == "Xml::DataHolder":
        return DataHolder(value)
    if kind.name and "basic_string<wchar_t, VexSys::Core::uni16char_traits," in kind.name:
        return Uni16String(value)
    printer = NODE_PRINTERS.get(node_kind(kind))
    return printer(value) if printer else None


find_printer.name = "VexXml"
find_printer.enabled = True


def register(objfile):
    """What comes first in GDB's list decides, and the standard library has a printer for all strings."""
    gdb.printing.register_pretty_printer(objfile, find_printer, replace=True)


for loaded in gdb.objfiles():
    register(loaded)
gdb.events.new_objfile.connect(lambda event: register(event.new_objfile))
