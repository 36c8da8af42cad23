// SPDX-License-Identifier: GPL-3.0-or-later
// What Backspace, Delete and cutting do: letters go, blocks are joined, a table keeps its cells.

'use strict';

function deleteAt(edge, event) {
    const range = currentRange();
    if (!range)
        return false;
    if (!range.collapsed) {
        if (event.inputType === 'deleteByCut')
            return false;
        deleteSelection();
        return true;
    }
    const block = blockOf(range.startContainer);
    if (!isAtEdge(range, block, edge))
        return edge === 'start' ? deleteBefore(range) : deleteAfter(range);
    return edge === 'start' ? joinBackward(block) : joinForward(block);
}

function deleteUnit(direction, unit) {
    if (currentRange() && currentRange().collapsed)
        getSelection().modify('extend', direction, unit);
    deleteSelection();
    showLastBlank();
    return true;
}

// Deletes one letter as readers see letters, or all blanks that show as one. Anything but plain text is left to the
// engine.
function deleteBefore({ startContainer: node, startOffset: offset }) {
    const length = node instanceof Text ? lengthOfLast(node.data.slice(0, offset)) : 0;
    return deleteLetters(node, offset - length, length);
}

function deleteAfter({ startContainer: node, startOffset: offset }) {
    const length = node instanceof Text ? lengthOfFirst(node.data.slice(offset)) : 0;
    return deleteLetters(node, offset, length);
}

function deleteLetters(node, from, length) {
    if (length === 0)
        return false;
    if (length === node.length)
        return deleteText(node);
    settleBlank();
    node.deleteData(from, length);
    setCaret(node, from);
    showLastBlank();
    return true;
}

// With the last letter of a styled text its elements go; what is typed next gets their styles. The engine would leave a
// no-break space beside it.
function deleteText(node) {
    const block = blockOf(node);
    let gone = node;
    while (gone.parentNode !== block && gone.parentNode.childNodes.length === 1
        && gone.parentNode.matches(`a, ${allInlineStyles}`))
        gone = gone.parentNode;
    const before = gone.previousSibling;
    const after = gone.nextSibling;
    if (!(before instanceof Text || after instanceof Text))
        return false;
    settleBlank();
    const titles = getTextTags();
    if (before instanceof Text)
        setCaret(before, before.length);
    else
        setCaret(after, 0);
    gone.remove();
    showLastBlank();
    const now = getTextTags();
    waitWithStyles(titles.filter((title) => !now.includes(title) && textStyles[title].inline));
    return true;
}

function lengthOfLast(text) {
    const blanks = text.match(/[ \t\r\n\f]+$/);
    if (blanks)
        return blanks[0].length;
    const letters = Array.from(new Intl.Segmenter().segment(text.slice(-64)));
    return letters.length > 0 ? letters[letters.length - 1].segment.length : 0;
}

function lengthOfFirst(text) {
    const blanks = text.match(/^[ \t\r\n\f]+/);
    if (blanks)
        return blanks[0].length;
    const [letter] = new Intl.Segmenter().segment(text.slice(0, 64));
    return letter ? letter.segment.length : 0;
}

// Makes a blank that a deletion left at the end of a line visible, like a typed one.
function showLastBlank() {
    const range = currentRange();
    const { startContainer: node, startOffset: offset } = range;
    if (!(node instanceof Text) || node.data[offset - 1] !== ' ' || keepsBlanks(node)
        || !isAtEdge(range, blockOf(node), 'end'))
        return;
    node.replaceData(offset - 1, 1, '\u00a0');
    setCaret(node, offset);
    typing.blank = node;
}

function joinBackward(block) {
    const item = itemAt(block);
    if (item && isAtEdge(currentRange(), item, 'start') && !item.previousElementSibling) {
        leaveList(item);
        return true;
    }
    const before = neighbourOf(block, 'previousNode');
    if (!before)
        return true;
    return joinOver(before, block, before);
}

function joinForward(block) {
    const after = neighbourOf(block, 'nextNode');
    if (!after)
        return true;
    return joinOver(block, isBlock(after) && holdsNothing(after) ? after : blockOf(after), after);
}

// Cells are never joined with anything; a rule between two blocks is deleted instead.
function joinOver(first, second, neighbour) {
    if (neighbour instanceof Element && neighbour.localName === 'hr') {
        neighbour.remove();
        return true;
    }
    const firstBlock = blockOf(first);
    const secondBlock = blockOf(second);
    if (closestAt(firstBlock, 'td, th, caption') !== closestAt(secondBlock, 'td, th, caption'))
        return true;
    if (firstBlock === document.body || secondBlock === document.body || firstBlock.contains(secondBlock)
        && firstBlock.localName !== 'li')
        return false;
    if (isEmptyBlock(firstBlock) && firstBlock.localName !== 'li' && !firstBlock.contains(secondBlock)) {
        const around = firstBlock.parentElement;
        keepingSelection(() => firstBlock.remove());
        removeEmptied(around);
        caretToStart(secondBlock);
        return true;
    }
    joinBlocks(firstBlock, secondBlock);
    return true;
}

// The nearest visible thing outside the block: text, an image, a rule, or the line of an empty block.
function neighbourOf(block, direction) {
    const walker = document.createTreeWalker(document.body, NodeFilter.SHOW_ELEMENT | NodeFilter.SHOW_TEXT);
    walker.currentNode = block;
    let node = block;
    if (direction === 'nextNode') {
        const within = document.createTreeWalker(block, NodeFilter.SHOW_ALL);
        const { endContainer, endOffset } = currentRange();
        within.currentNode = endContainer.childNodes[endOffset] || endContainer;
        while (within.nextNode() && blockOf(within.currentNode) === block);
        if (within.currentNode !== block && block.contains(within.currentNode)
            && blockOf(within.currentNode) !== block)
            return firstLeafFrom(within.currentNode, walker, block);
        while (walker.lastChild());
    }
    while ((node = walker[direction]()))
        if (isLeaf(node))
            return node;
    return null;
}

function firstLeafFrom(node, walker) {
    walker.currentNode = node;
    for (; node; node = walker.nextNode())
        if (isLeaf(node))
            return node;
    return null;
}

const cellAt = (node) => closestAt(node, 'td, th, caption');

// A triple click selects up to the start of the next block; nothing of that is meant.
function withoutNextBlock(range) {
    const last = blockOf(range.endContainer);
    if (range.collapsed || last === document.body || last.contains(range.startContainer)
        || !isAtEdge({ startContainer: range.endContainer, startOffset: range.endOffset }, last, 'start'))
        return range;
    const leaf = leavesOf(range).pop();
    if (leaf && !last.contains(leaf))
        range.setEndAfter(leaf);
    return range;
}

// Deletes the selection and joins blocks that are only partly left, without the engine's styled spans. What can't be
// seen stays: scripts, comments.
function deleteSelection() {
    const range = currentRange() && withoutNextBlock(currentRange());
    if (!range || range.collapsed)
        return;
    if (cellAt(range.startContainer) !== cellAt(range.endContainer)) {
        emptyCells(range);
        return;
    }
    const first = blockOf(range.startContainer);
    const last = blockOf(range.endContainer);
    const emptied = [...elementsBetween(range.startContainer, first), ...elementsBetween(range.endContainer, last)];
    const hidden = hiddenNodesIn(range);
    range.deleteContents();
    emptied.forEach(removeVacant);
    hidden.reverse().forEach((node) => range.insertNode(node));
    range.collapse(hidden.length === 0);
    if (first !== last && first.isConnected && last.isConnected && first !== document.body && last !== document.body
        && closestAt(first, 'td, th') === closestAt(last, 'td, th') && !first.contains(last) && !last.contains(first))
        joinBlocks(first, last);
    for (const block of [first, last]) {
        if (block.isConnected && block !== document.body) {
            block.normalize();
            keepOpen(block);
        }
    }
    if (first.isConnected && isEmptyBlock(first) && first !== document.body)
        caretToStart(isEmptyBlock(document.body) ? asParagraph(first) : first);
}

function hiddenNodesIn(range) {
    const walker = document.createTreeWalker(range.commonAncestorContainer, NodeFilter.SHOW_ELEMENT | NodeFilter.SHOW_COMMENT);
    const nodes = [];
    for (let node; (node = walker.nextNode());)
        if (isHidden(node) && range.comparePoint(node.parentNode, positionOf(node.parentNode, node)) === 0
            && range.comparePoint(node.parentNode, positionOf(node.parentNode, node) + 1) === 0)
            nodes.push(node);
    return nodes;
}

// A table keeps its cells: those that the range reaches lose what is selected of them, and so does what is around.
function emptyCells(range) {
    const { startContainer, startOffset } = range;
    const ends = [range.startContainer, range.endContainer].map((node) => closestAt(node, 'table'));
    for (const leaf of leavesOf(range)) {
        if (leaf instanceof Text) {
            const from = leaf === range.startContainer ? range.startOffset : 0;
            const to = leaf === range.endContainer ? range.endOffset : leaf.length;
            leaf.deleteData(from, to - from);
        } else {
            leaf.remove();
        }
        const block = blockOf(leaf.isConnected ? leaf : range.startContainer);
        elementsBetween(leaf, block).forEach(removeVacant);
        if (ends.includes(closestAt(block, 'table')))
            keepOpen(block);
        else if (isEmptyBlock(block) && !block.contains(startContainer))
            removeEmptied(block);
    }
    if (startContainer.isConnected)
        setCaret(startContainer, Math.min(startOffset, lengthOf(startContainer)));
}

// Turns a block into a plain paragraph without attributes; items and cells stay what they are.
function asParagraph(block) {
    if (!textBlocks.has(block.localName))
        return block;
    const paragraph = renameBlock(block, 'p');
    Array.from(paragraph.attributes, ({ name }) => name).forEach((name) => paragraph.removeAttribute(name));
    return paragraph;
}
