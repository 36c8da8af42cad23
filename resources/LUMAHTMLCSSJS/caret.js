// SPDX-License-Identifier: GPL-3.0-or-later
// Where the caret stands, kept while the page is shown anew, and set where something is dropped.

// Both ends of the selection, each as the way from the root node down over child nodes and an offset; the
// empty text without a selection.
function caretPosition() {
    const { anchorNode, anchorOffset, focusNode, focusOffset } = getSelection();
    if (!anchorNode)
        return '';
    return JSON.stringify([[wayToNode(anchorNode), anchorOffset], [wayToNode(focusNode), focusOffset]]);
}

// Sets the selection as caretPosition() told it, as far as the page still has such places.
function restoreCaret(position) {
    const [anchor, focus] = JSON.parse(position).map(([way, offset]) => placeAt(way, offset));
    const range = getSelection();
    range.setBaseAndExtent(anchor.node, anchor.offset, focus.node, focus.offset);
    activeElement.chosen = range.getRangeAt(0).cloneRange();
}

// Whether the user has not touched the page since it was shown.
const isAsShown = () => caret.isAsShown;
const caret = { isAsShown: true };
const markAsShown = () => { caret.isAsShown = true; };
for (const type of ['keydown', 'mousedown', 'wheel', 'drop'])
    document.addEventListener(type, () => { caret.isAsShown = false; }, { capture: true, passive: true });

function wayToNode(node) {
    const way = [];
    for (; node.parentNode && node !== document.documentElement; node = node.parentNode)
        way.unshift(Array.prototype.indexOf.call(node.parentNode.childNodes, node));
    return way;
}

function placeAt(way, offset) {
    let node = document.documentElement;
    for (const step of way) {
        if (!node.childNodes[step])
            return { node, offset: node.childNodes.length };
        node = node.childNodes[step];
    }
    const length = node instanceof CharacterData ? node.length : node.childNodes.length;
    return { node, offset: Math.min(offset, length) };
}

// Sets the caret at a point of the window, in CSS pixels.
function setCaretAt(x, y) {
    const range = document.caretRangeFromPoint(x, y);
    if (range && document.body.contains(range.startContainer))
        getSelection().collapse(range.startContainer, range.startOffset);
}
