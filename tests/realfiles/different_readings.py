"""Faults of a data set that independent readers take otherwise than the library does, each found in the data set itself."""

import re

import event_tree


def runs_over(tree):
    """The last element of an item or a sequence of defined length runs over its end. The library ends it there; pydicom
    cuts the element, or leaves out what the sequence no longer holds."""
    return any(
        node.length != event_tree.UNDEFINED and node.end > node.value + node.length
        for _, node in event_tree.walk(tree)
        if node.is_item or node.vr == "SQ"
    )


def repeats_in_an_item(tree):
    """An item holds several elements of one tag. pydicom keeps the last of them, in the place of the first."""
    return any(
        len({child.tag for child in node.children}) < len(node.children)
        for _, node in event_tree.walk(tree)
        if node.is_item
    )


def no_vr_in_an_item(tree):
    """An item holds an element whose VR is not two capital letters. pydicom then takes the item for one in implicit VR."""
    return any(
        re.fullmatch("[A-Z]{2}", child.vr) is None
        for _, node in event_tree.walk(tree)
        if node.is_item
        for child in node.children
    )


def strange_vr(tree):
    """A VR that PS3.5 does not have. dcmdump takes a length of four bytes behind it, the library one of two."""
    return any(not node.is_item and node.vr not in VRS for _, node in event_tree.walk(tree))


# PS3.5 table 6.2-1, and the dictionary's placeholders in implicit VR.
VRS = set(
    "AE AS AT CS DA DS DT FD FL IS LO LT OB OD OF OL OV OW PN SH SL SQ SS ST SV TM UC UI UL UN UR US UT UV".split()
) | {"OX", "XS", "NA"}

FAULTS = {
    "pydicom": [runs_over, repeats_in_an_item, no_vr_in_an_item],
    "dcmdump": [strange_vr],
}


def of(reader, tree):
    """Names of the faults that explain another reading by that reader."""
    return [fault.__name__ for fault in FAULTS[reader] if fault(tree)]
