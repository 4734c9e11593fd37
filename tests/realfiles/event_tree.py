"""The events of a decomposition as a tree, with the place of everything in the bytes.

A place follows from what comes before it and from the widths of PS3.5 section 7.1 alone, so that the bytes at it can be
looked at again.
"""

UNDEFINED = 0xFFFFFFFF
ITEM = 0xFFFEE000
DELIMITATION = 8  # bytes
END_OF_FRAGMENTS = "FFFEE0DD"
LONG_LENGTH = {"OB", "OW", "OF", "SQ", "UT", "UN"}  # with four bytes of length behind two reserved ones


class Node:
    """An element or an item: `start` and `value` are offsets of its header and of what follows it, `end` lies behind
    it, its delimitation included."""

    def __init__(self, tag, vr, length, start, header):
        self.tag = tag
        self.vr = vr
        self.length = length
        self.start = start
        self.value = start + header
        self.end = self.value
        self.children = []

    @property
    def is_item(self):
        return self.vr == ""

    def close(self):
        """Ends behind the last child, and behind the delimitation."""
        if self.children:
            self.end = self.children[-1].end
        if self.length == UNDEFINED:
            self.end += DELIMITATION


def walk(nodes, depth=0):
    """Pairs of depth and node, in stream order."""
    for node in nodes:
        yield depth, node
        yield from walk(node.children, depth + 1)


def tree(lines, implicit):
    """The elements at the top of a whole decomposition."""
    top = Node(0, "", UNDEFINED, 0, 0)
    stack = [top]
    for line in lines:
        name, _, rest = line.partition(" ")
        if rest.startswith(END_OF_FRAGMENTS):
            continue  # told as an item, and none in the bytes
        if name == "StartElement":
            tag, vr, length = rest[:8], rest[9:].rpartition(" ")[0], rest.rpartition(" ")[2]
            header = 12 if not implicit and vr in LONG_LENGTH else 8
            _open(stack, Node(int(tag, 16), vr or " ", int(length), _place(stack), header))
        elif name == "StartItem":
            _open(stack, Node(ITEM, "", int(rest.split(" ")[1]), _place(stack), 8))
        elif name == "Data":
            stack[-1].end += len(rest.split(" ")[2]) // 2 if rest.count(" ") == 2 else 0
        elif name in ("EndElement", "EndItem"):
            stack.pop().close()
    return top.children


def _place(stack):
    """Where the next child of the innermost open node begins."""
    children = stack[-1].children
    return children[-1].end if children else stack[-1].value


def _open(stack, node):
    stack[-1].children.append(node)
    stack.append(node)
