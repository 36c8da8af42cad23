// SPDX-License-Identifier: GPL-3.0-or-later
// What keys do: Enter, Tab, blanks, and the first letter on an empty page.

'use strict';

const typing = {
    blank: null, // the text node that ends in a no-break space of ours
    keys: 0, // pressed since the page was loaded
    link: null, // whose text is being typed
    engine: null, // the block in which the engine itself makes an edit, and its text before
    next: null, // the styles chosen for what is typed next, and where
};

// The number of keys that have arrived; the editor waits for those that it sent.
const countOfKeys = () => typing.keys;

document.addEventListener('keydown', ({ key }) => {
    ++typing.keys;
    if (/^(Arrow|Home|End|Page)/.test(key))
        typing.link = null;
}, true);
document.addEventListener('mousedown', () => { typing.link = null; }, { capture: true, passive: true });

document.addEventListener('beforeinput', (event) => {
    // What is typed into a form field is no part of the page.
    if (event.target instanceof Element && event.target.matches('input, textarea, select')) {
        event.preventDefault();
        return;
    }
    const handler = Object.hasOwn(inputHandlers, event.inputType) && inputHandlers[event.inputType];
    if (handler && handler(event))
        event.preventDefault();
    else if (/^(delete|insertLineBreak)/.test(event.inputType) && currentRange())
        typing.engine = blockAsItIs(currentRange());
}, true);

document.addEventListener('input', () => {
    settleBlanksOfEngine();
    cleanUp();
}, true);

const inputHandlers = {
    insertParagraph: () => currentRange() !== null && withWaitingStyles(insertParagraph),
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
    const isReplaced = !range.collapsed;
    if (isReplaced)
        makeRoomInSelection();
    if (isReplaced || !isBehindLink(range))
        typing.link = linkAt(currentRange());
    else if (!/[\p{L}\p{N}]/u.test(event.data))
        leaveLink(linkAt(range));
    makeParagraphInBody();
    insertAtCaret(event.data);
    return true;
}

function insertAtCaret(data) {
    const { node, offset } = textAtCaret();
    if (data === ' ' && !keepsBlanks(node)) {
        withWaitingStyles((pending) => typeBlank(node, offset, pending));
        return;
    }
    const pending = takePendingStyles();
    insertInto(node, offset, data);
    dropPlaceholder(node);
    settleBlank();
    if (pending.length > 0)
        styleTyped(node, offset, data.length, pending);
}

const linkAt = ({ startContainer: node }) => (node instanceof Element ? node : node.parentElement)?.closest('a[href]');

// At the end of a link in running text, which a blank or a mark leaves; a letter still belongs to its last word. A link
// that is all of its line, as in a menu, is longer then, and so is one whose text is just being typed.
function isBehindLink(range) {
    const link = linkAt(range);
    if (!link || link === typing.link || !isAtEdge(range, link, 'end'))
        return false;
    const block = blockOf(range.startContainer);
    const line = document.createRange();
    line.selectNodeContents(block);
    return block !== link && block.contains(link)
        && leavesOf(line).some((leaf) => leaf instanceof Text && !leaf.parentElement.closest('a[href]'));
}

function leaveLink(link) {
    if (!(link.nextSibling instanceof Text))
        link.after('');
    setCaret(link.nextSibling, 0);
}

// Directly in the body a paragraph is begun, but text that stands there stays as it is.
function makeParagraphInBody() {
    const { startContainer } = currentRange();
    if (startContainer === document.body || isBlank(startContainer) && startContainer.parentNode === document.body)
        caretToStart(wrapInline(inlineAtCaret(), 'p'));
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

// A blank leaves the styles that were switched off; those that were switched on wait for a letter.
function typeBlank(node, offset, pending) {
    const ended = pending.filter((title) => getTextTags().includes(title));
    if (!insertBlank(node, offset) || ended.length === 0)
        return;
    const isOurs = typing.blank === node;
    styleTyped(node, offset, 1, ended);
    if (isOurs)
        typing.blank = currentRange().startContainer;
}

// Returns whether there is a new blank. One blank separates words. A second one would be invisible, so the caret only moves over the first. At the end of
// a line a blank is a no-break space, which is visible, until something follows it or the caret leaves.
function insertBlank(node, offset) {
    const isSpace = (character) => /[ \t\r\n\f\u00a0]/.test(character || '');
    if (isSpace(node.data[offset - 1]))
        return false;
    if (isSpace(node.data[offset]) && node.data.slice(offset).trim() !== '') {
        setCaret(node, offset + 1);
        return false;
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

function blockAsItIs({ startContainer }) {
    const block = blockOf(startContainer);
    return { block, text: block.textContent };
}

// The engine makes a blank beside the caret a no-break space, so that it shows. It is a blank again, or one of ours where
// a line ends.
function settleBlanksOfEngine() {
    const { engine } = typing;
    typing.engine = null;
    const { startContainer: node, startOffset: offset } = currentRange() || {};
    if (!engine || !(node instanceof Text) || !engine.block.contains(node))
        return;
    const ahead = document.createRange();
    ahead.selectNodeContents(engine.block);
    ahead.setEnd(node, offset);
    const at = ahead.toString().length;
    const behind = engine.text.length - engine.block.textContent.length + at;
    const before = offset > 0 ? [node, offset - 1] : [node.previousSibling, (node.previousSibling?.length ?? 0) - 1];
    const after = offset < node.length ? [node, offset] : [node.nextSibling, 0];
    const isMade = ([text, place], was) =>
        text instanceof Text && text.data[place] === '\u00a0' && /[ \t\r\n\f]/.test(was || '');
    if (isMade(before, engine.text[at - 1]) && offset === node.length
        && isAtEdge(currentRange(), blockOf(node), 'end')) {
        typing.blank = node;
        return;
    }
    for (const [place, was] of [[before, engine.text[at - 1]], [after, engine.text[behind]]])
        if (isMade(place, was)) {
            place[0].replaceData(place[1], 1, ' ');
            setCaret(node, offset);
        }
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
