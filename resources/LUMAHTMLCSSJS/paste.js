// SPDX-License-Identifier: GPL-3.0-or-later
// Pasting and dropping: of what comes from elsewhere the structure is kept, but not its looks, classes, ids and scripts.

'use strict';

const pasting = {
    // Elements that are kept, with the attributes they keep.
    kept: {
        a: ['href', 'title'], abbr: ['title'], address: [], b: [], blockquote: ['cite'], br: [], caption: [],
        cite: [], code: [], col: ['span'], colgroup: ['span'], dd: [], del: [], details: [], dfn: [], dl: [], dt: [],
        em: [], figcaption: [], figure: [], h1: [], h2: [], h3: [], h4: [], h5: [], h6: [], hr: [], i: [],
        img: ['src', 'alt', 'width', 'height', 'title'], ins: [], kbd: [], li: [], mark: [], ol: ['start', 'type'],
        p: [], pre: [], q: ['cite'], s: [], samp: [], small: [], strong: [], sub: [], summary: [], sup: [],
        table: [], tbody: [], td: ['colspan', 'rowspan'], tfoot: [], th: ['colspan', 'rowspan', 'scope'], thead: [],
        time: ['datetime'], tr: [], u: [], ul: [], var: [],
    },
    // Elements that are removed with everything in them.
    dropped: new Set(('script style link meta base title head template noscript iframe object embed applet param '
        + 'form input button select textarea svg math canvas audio video source track').split(' ')),
};

document.addEventListener('paste', (event) => {
    event.preventDefault();
    event.stopPropagation();
    insertTransferred(event.clipboardData);
}, true);

document.addEventListener('beforeinput', (event) => {
    if (event.inputType !== 'insertFromDrop' && event.inputType !== 'insertFromPaste')
        return;
    event.preventDefault();
    const [target] = event.getTargetRanges();
    if (target)
        getSelection().setBaseAndExtent(target.startContainer, target.startOffset,
            target.endContainer, target.endOffset);
    insertTransferred(event.dataTransfer);
}, true);

function insertTransferred(transfer) {
    if (!transfer)
        return;
    const html = transfer.getData('text/html');
    const inPre = closestAt(getSelection().anchorNode, 'pre, textarea');
    const own = !inPre && ownFragment(transfer);
    if (own) {
        deleteSelection(); // The ids in it are free then.
        makeIdsUnique(own);
        if (insertItems(own))
            return;
    }
    insertFragment(own || (html && !inPre ? cleanedFragment(html)
        : plainFragment(transfer.getData('text/plain'), Boolean(inPre))));
}

// The clipboard's markup as clean nodes. Parsed as a separate document, so nothing in it is run or fetched.
function cleanedFragment(html) {
    const parsed = new DOMParser().parseFromString(html, 'text/html');
    const fragment = document.createDocumentFragment();
    fragment.append(...Array.from(parsed.body.childNodes).flatMap(cleanedNode));
    return asBlocks(fragment);
}

function cleanedNode(node) {
    if (node instanceof Text)
        return [document.createTextNode(node.data.replace(/[ \t\r\n\f]+/g, ' '))];
    if (!(node instanceof Element) || pasting.dropped.has(node.localName))
        return [];
    const children = Array.from(node.childNodes).flatMap(
        node.localName === 'pre' ? (child) => [document.createTextNode(child.textContent)] : cleanedNode);
    const name = nameWhenPasted(node);
    if (!name)
        return children;
    const element = document.createElement(name);
    for (const attribute of pasting.kept[name])
        if (node.hasAttribute(attribute) && isHarmless(attribute, node.getAttribute(attribute)))
            element.setAttribute(attribute, node.getAttribute(attribute));
    element.append(...children);
    return name === 'a' && !element.hasAttribute('href') ? children : [element];
}

// Word processors wrap everything in a "b" of normal weight, and use divisions as paragraphs.
function nameWhenPasted(node) {
    if (node.localName === 'div')
        return Array.from(node.childNodes).some(isBlock) ? '' : 'p';
    if (/^(b|strong|i|em)$/.test(node.localName) && /normal/.test(node.style.fontWeight + node.style.fontStyle))
        return '';
    return Object.hasOwn(pasting.kept, node.localName) ? node.localName : '';
}

function isHarmless(attribute, value) {
    if (!['href', 'src', 'cite'].includes(attribute))
        return true;
    const scheme = value.replace(/[\0- ]/g, '').match(/^([a-z][a-z0-9+.-]*):/i);
    return !scheme || /^(https?|mailto|tel|ftp)$/i.test(scheme[1])
        || attribute === 'src' && /^data:image\/(png|jpeg|gif|webp)[;,]/i.test(value);
}

// Beside blocks, text becomes paragraphs and blanks are dropped.
function asBlocks(fragment) {
    const hasBlocks = Array.from(fragment.childNodes).some(isBlock);
    if (!hasBlocks)
        return fragment;
    const holder = document.createElement('li');
    holder.append(fragment);
    const blocks = document.createDocumentFragment();
    blocks.append(...paragraphsOf(holder).filter((block) => !isEmptyBlock(block) || block.localName === 'hr'
        || block.querySelector('td')));
    return blocks;
}

// Plain text: blank lines separate paragraphs, line ends become line breaks.
function plainFragment(text, asItIs) {
    const fragment = document.createDocumentFragment();
    const lines = text.replace(/\r\n?/g, '\n');
    if (asItIs) {
        fragment.append(lines);
        return fragment;
    }
    const paragraphs = lines.split(/\n[ \t]*\n\s*/).map((paragraph) => paragraph.replace(/^\n+|\n+$/g, ''));
    if (paragraphs.length === 1) {
        fragment.append(...linesOf(paragraphs[0]));
        return fragment;
    }
    for (const paragraph of paragraphs.filter((each) => each.trim() !== '')) {
        const block = document.createElement('p');
        block.append(...linesOf(paragraph));
        fragment.append(block);
    }
    return fragment;
}

function linesOf(text) {
    return text.split('\n').flatMap((line, index) => index === 0 ? [line] : [document.createElement('br'), line]);
}

// Inserts nodes at the caret and sets the caret after them. Blocks split the paragraph at the caret.
function insertFragment(fragment) {
    if (!currentRange() || !fragment.lastChild)
        return;
    deleteSelection();
    settleBlank();
    unnest(fragment);
    if (blockOf(currentRange().startContainer).matches(headBlocks))
        makeInline(fragment);
    const last = fragment.lastChild;
    if (Array.from(fragment.childNodes).some(isBlock))
        insertBlocks(fragment);
    else
        insertInline(fragment);
    if (last instanceof Text)
        setCaret(last, last.length);
    else if (isBlock(last) && !holdsNothing(last))
        caretToEnd(last);
    else
        setCaret(last.parentNode, Array.prototype.indexOf.call(last.parentNode.childNodes, last) + 1);
    reveal(last instanceof Element ? last : last.parentElement);
}

// Links don't stand in links nor forms in forms: the inner one would end the outer when the page is read again.
function unnest(fragment) {
    for (const name of ['a', 'button', 'form'].filter((each) => closestAt(currentRange().startContainer, each)))
        for (const element of fragment.querySelectorAll(name))
            element.replaceWith(...element.childNodes);
}

// Blocks become lines.
function makeInline(fragment) {
    for (let block; (block = Array.from(fragment.querySelectorAll('*')).find(isBlock));) {
        if (block.previousSibling && block.firstChild)
            block.before(document.createElement('br'));
        block.replaceWith(...block.childNodes);
    }
}

function insertInline(fragment) {
    makeParagraphInBody();
    const block = blockOf(currentRange().startContainer);
    const wasEmpty = isEmptyBlock(block);
    currentRange().insertNode(fragment);
    if (wasEmpty)
        dropLastBreak(block);
}

function insertBlocks(fragment) {
    const range = currentRange();
    const block = blockOf(range.startContainer);
    if (!textBlocks.has(block.localName)) {
        insertBetween(fragment, range, block);
        return;
    }
    const second = splitBlock(block, range);
    block.after(fragment);
    for (const part of [block, second])
        if (isEmptyBlock(part))
            part.remove();
}

function insertBetween(fragment, range, block) {
    const node = range.startContainer;
    if (node === block) {
        range.insertNode(fragment);
    } else {
        const around = wrapInline(node, 'p');
        const second = splitBlock(around, currentRange());
        around.after(fragment);
        [around, second].forEach((part) => isEmptyBlock(part) && part.remove());
    }
    if (isEmptyBlock(block))
        dropLastBreak(block);
}

function caretToEnd(block) {
    const walker = document.createTreeWalker(block, NodeFilter.SHOW_TEXT);
    let last = null;
    while (walker.nextNode())
        last = walker.currentNode;
    if (last)
        setCaret(last, last.length);
    else
        setCaret(block, block.childNodes.length);
}
