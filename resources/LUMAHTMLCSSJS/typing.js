// SPDX-License-Identifier: GPL-3.0-or-later
// What keys do: Enter, Backspace and Delete, blanks, and the first letter on an empty page.

'use strict';

const typing = {
    blank: null, // the text node that ends in a no-break space of ours
    keys: 0, // pressed since the page was loaded
    next: null, // the styles chosen for what is typed next, and where
};

// The number of keys that have arrived; the editor waits for those that it sent.
const countOfKeys = () => typing.keys;

document.addEventListener('keydown', () => ++typing.keys, true);

document.addEventListener('beforeinput', (event) => {
    // What is typed into a form field is no part of the page.
    if (event.target instanceof Element && event.target.matches('input, textarea, select')) {
        event.preventDefault();
        return;
    }
    const handler = Object.hasOwn(inputHandlers, event.inputType) && inputHandlers[event.inputType];
    if (handler && handler(event))
        event.preventDefault();
}, true);

document.addEventListener('input', () => cleanUp(), true);

const inputHandlers = {
    insertParagraph,
    insertText,
    deleteContentBackward: (event) => deleteAt('start', event),
    deleteContentForward: (event) => deleteAt('end', event),
    deleteWordBackward: () => deleteUnit('backward', 'word'),
    deleteWordForward: () => deleteUnit('forward', 'word'),
    deleteSoftLineBackward: () => deleteUnit('backward', 'lineboundary'),
    deleteSoftLineForward: () => deleteUnit('forward', 'lineboundary'),
    deleteByCut: (event) => deleteAt('start', event),
    formatBold: () => doCommand('Bold') || true,
    formatItalic: () => doCommand('Italic') || true,
    formatUnderline: () => doCommand('Underline') || true,
    historyUndo: () => true,
    historyRedo: () => true,
};

// Enter

function insertParagraph() {
    if (!currentRange())
        return false;
    deleteSelection();
    settleBlank();
    const range = currentRange();
    let block = blockOf(range.startContainer);
    const item = itemAt(block);
    if (block.localName === 'pre')
        return insertLineInPre(range);
    if (['td', 'th', 'dd', 'caption', 'figcaption', 'summary', 'legend'].includes(block.localName))
        return !execute('insertLineBreak') || true;
    if (item && isEmptyBlock(item)) {
        leaveList(item);
        return true;
    }
    if (block !== item && !textBlocks.has(block.localName))
        block = wrapInline(inlineAtCaret(), 'p');
    const quote = block.closest('blockquote');
    if (quote && isEmptyBlock(block) && block === quote.lastElementChild && quote.children.length > 1) {
        quote.after(block);
        keepOpen(block);
        caretToStart(block);
        return true;
    }
    const atEnd = isAtEdge(currentRange(), block, 'end');
    let second = splitBlock(item && block.parentElement === item && item.children.length === 1 ? item : block,
        currentRange());
    if (isHeading(second) && atEnd)
        second = asParagraph(second);
    caretToStart(second.localName === 'li' && second.firstElementChild && isBlock(second.firstElementChild)
        ? second.firstElementChild : second);
    return true;
}

// At the very end of a "pre", only a second line end makes the first one visible.
function insertLineInPre(range) {
    const atEnd = isAtEdge(range, blockOf(range.startContainer), 'end')
        && !blockOf(range.startContainer).textContent.endsWith('\n');
    const text = document.createTextNode(atEnd ? '\n\n' : '\n');
    range.insertNode(text);
    setCaret(text, 1);
    return true;
}

// Letters and blanks

function insertText(event) {
    const range = currentRange();
    if (!range || event.data === null)
        return false;
    if (!range.collapsed)
        makeRoomInSelection();
    if (blockOf(currentRange().startContainer) === document.body)
        caretToStart(wrapInline(inlineAtCaret(), 'p'));
    const { node, offset } = textAtCaret();
    if (event.data === ' ' && !keepsBlanks(node))
        return insertBlank(node, offset);
    const pending = takePendingStyles();
    insertInto(node, offset, event.data);
    dropPlaceholder(node);
    settleBlank();
    if (pending.length > 0)
        styleTyped(node, offset, event.data.length, pending);
    return true;
}

// Deletes the selection but keeps the elements around its first letter, whose styles the typed text gets.
function makeRoomInSelection() {
    const placeholder = '\ufdd0'; // a noncharacter, which no page contains
    const range = currentRange();
    const [leaf] = leavesOf(range);
    if (!(leaf instanceof Text)) {
        deleteSelection();
        return;
    }
    const start = leaf === range.startContainer ? range.startOffset : 0;
    leaf.insertData(start, placeholder);
    getSelection().setBaseAndExtent(leaf, start + 1, range.endContainer, range.endOffset);
    const block = blockOf(leaf);
    deleteSelection();
    const texts = document.createTreeWalker(block, NodeFilter.SHOW_TEXT);
    for (let node; (node = texts.nextNode());) {
        const at = node.data.indexOf(placeholder);
        if (at >= 0) {
            node.deleteData(at, 1);
            setCaret(node, at);
            return;
        }
    }
}

// The text node at the caret, created if there is none.
function textAtCaret() {
    const { startContainer, startOffset } = currentRange();
    if (startContainer instanceof Text)
        return { node: startContainer, offset: startOffset };
    const before = startContainer.childNodes[startOffset - 1];
    if (before instanceof Text)
        return { node: before, offset: before.length };
    const node = document.createTextNode('');
    startContainer.insertBefore(node, startContainer.childNodes[startOffset] || null);
    return { node, offset: 0 };
}

// A block's last line break only keeps its line open: it goes when there is text on the line.
function dropPlaceholder(node) {
    const next = node.nextSibling;
    if (next instanceof Element && next.localName === 'br' && isAtEdge(currentRange(), blockOf(node), 'end'))
        next.remove();
}

const keepsBlanks = (node) => /^(pre|break-spaces)/.test(getComputedStyle(node.parentElement).whiteSpace);

// The change is told before the caret is set, for which the engine lays the whole page out.
function insertInto(node, offset, text) {
    node.insertData(offset, text);
    postChanges(changes.observer.takeRecords());
    setCaret(node, offset + text.length);
}

// One blank separates words. A second one would be invisible, so the caret only moves over the first. At the end of
// a line a blank is a no-break space, which is visible, until something follows it or the caret leaves.
function insertBlank(node, offset) {
    const isSpace = (character) => /[ \t\r\n\f\u00a0]/.test(character || '');
    if (isSpace(node.data[offset - 1]))
        return true;
    if (isSpace(node.data[offset]) && node.data.slice(offset).trim() !== '') {
        setCaret(node, offset + 1);
        return true;
    }
    if (isAtEdge(currentRange(), blockOf(node), 'end')) {
        node.replaceData(offset, node.length - offset, '\u00a0');
        setCaret(node, offset + 1);
        typing.blank = node;
    } else {
        insertInto(node, offset, ' ');
    }
    return true;
}

// Turns our no-break space into a plain blank: something follows it now, or the caret has left.
function settleBlank() {
    const node = typing.blank;
    typing.blank = null;
    if (!node || !node.isConnected)
        return;
    const at = node.data.lastIndexOf('\u00a0');
    if (at < 0)
        return;
    const { anchorNode, anchorOffset } = getSelection();
    node.replaceData(at, 1, ' ');
    if (anchorNode === node)
        setCaret(node, Math.min(anchorOffset, node.length));
}

document.addEventListener('selectionchange', () => {
    const { anchorNode, anchorOffset } = getSelection();
    if (typing.blank && !(anchorNode === typing.blank && anchorOffset === typing.blank.length))
        settleBlank();
});

// Backspace and Delete

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
    if (length === 0 || length === node.length)
        return false;
    settleBlank();
    node.deleteData(from, length);
    setCaret(node, from);
    showLastBlank();
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

// Styles that are chosen at a caret: what is typed next there gets them, or is freed from them.

function toggleNextStyle(title) {
    const { startContainer: node, startOffset: offset } = currentRange();
    const titles = new Set(takePendingStyles());
    if (!titles.delete(title))
        titles.add(title);
    typing.next = { node, offset, titles: Array.from(titles) };
}

// None where the caret has moved on.
function takePendingStyles() {
    const { next } = typing;
    typing.next = null;
    const { startContainer, startOffset } = currentRange();
    return next && next.node.isConnected && (next.node === startContainer && next.offset === startOffset
        || next.node.contains(startContainer) && next.node instanceof Element) ? next.titles : [];
}

function styleTyped(node, offset, length, titles) {
    for (const title of titles) {
        getSelection().setBaseAndExtent(node, offset, node, offset + length);
        toggleStyle(title);
        ({ startContainer: node, startOffset: offset } = currentRange());
    }
    getSelection().collapseToEnd();
}

// Tab and Shift+Tab move between cells. Returns whether there was one to go to.
function moveToCell(step) {
    const cell = currentRange() && cellAt(currentRange().startContainer);
    const cells = cell ? Array.from(cell.closest('table').querySelectorAll('td, th'))
        .filter((each) => each.closest('table') === cell.closest('table')) : [];
    const next = cells[cells.indexOf(cell) + step];
    if (!next)
        return false;
    getSelection().selectAllChildren(next);
    reveal(next);
    return true;
}
