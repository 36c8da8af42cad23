// SPDX-License-Identifier: GPL-3.0-or-later
// Reports changes of the page ("mutationObserver"), once for everything that one event changed: the number of changes
// so far, what changed, and what the user was doing. With the page's own scripts switched off, timers don't run here,
// so the editor decides when to ask for what a message did not say.

'use strict';

const changes = {
    count: 0,
    last: [], // the latest messages
    inputType: '', // of the user's action at the moment (Input Events, inputType)
};
const keptChanges = 50;
const longestMarkup = 65536; // code units in a message

// A change of the title's text, which only a script can make here, is also sent as text.
function postTitle(records) {
    const title = document.querySelector('head > title');
    if (title && records.some((record) => title.contains(record.target)))
        post('callback_text', title.textContent);
}

function postChanges(records) {
    if (records.length === 0)
        return;
    postTitle(records);
    const message = [++changes.count, changeOf(records), changes.inputType];
    changes.last.push(message);
    changes.last.splice(0, changes.last.length - keptChanges);
    post('mutationObserver', message);
    postFormats();
}

// The number of changes, those of the current event included. A blank that is a no-break space for the moment is
// made a plain one first.
function countOfChanges() {
    settleBlank();
    postChanges(changes.observer.takeRecords());
    return changes.count;
}

// The number of changes, and the messages of those after the first `known`, or the whole page's markup where that is
// wanted or a message does not say what changed. Nothing but the number if there are none.
function changesSince(known, asWhole) {
    postChanges(changes.observer.takeRecords());
    if (changes.count <= known)
        return [changes.count];
    const messages = changes.last.filter(([count]) => count > known);
    if (!asWhole && messages.length === changes.count - known && messages.every(([, change]) => change))
        return [changes.count, messages];
    return wholePage();
}

function wholePage() {
    postChanges(changes.observer.takeRecords());
    return [changes.count, document.documentElement.outerHTML];
}

// The keys that have arrived, and what changesSince() tells.
function stateSince(known, asWhole) {
    countOfChanges();
    return [typing.keys, ...changesSince(known, asWhole)];
}

// What the records changed, as the smallest run of one element's children between two element children that stayed:
// the path to the element, its name, how many element children are before and behind the run, and the run's markup
// with the number of its elements. Null where the whole page has to be read.
function changeOf(records) {
    const parent = commonParent(records);
    if (!parent || parent === document.documentElement || !document.documentElement.contains(parent))
        return null;
    const marks = marksIn(parent, records);
    const before = untouched(parent.firstChild, 'nextSibling', marks, marks.behind, marks.first);
    const after = untouched(parent.lastChild, 'previousSibling', marks, marks.inFront, marks.last);
    const nodes = [];
    for (let node = before.last ? before.last.nextSibling : parent.firstChild; node !== after.last; node = node.nextSibling)
        nodes.push(node);
    const markup = nodes.map(markupOfNode).join('');
    if (markup.length > longestMarkup)
        return null;
    return { path: pathOfElement(parent), name: parent.localName, before: before.count, after: after.count, markup,
        elements: countElements(nodes) };
}

const countElements = (nodes) => nodes.reduce((sum, node) =>
    sum + (node instanceof Element ? 1 + node.querySelectorAll('*').length : 0), 0);

// The innermost element whose children, or something below them, changed.
function commonParent(records) {
    let common = null;
    for (const { type, target } of records) {
        const parent = type === 'childList' ? target : target.parentNode;
        if (!parent || !parent.isConnected)
            continue;
        common = common || parent;
        while (!common.contains(parent))
            common = common.parentNode;
    }
    return common instanceof Element ? common : null;
}

// What changed among the children of `parent`: nodes, and places behind or in front of a node, or at the ends.
// A neighbour that has left since has records of its own.
function marksIn(parent, records) {
    const marks = { nodes: new Set(), behind: new Set(), inFront: new Set(), first: false, last: false };
    for (const { type, target, addedNodes, previousSibling, nextSibling } of records) {
        if (target !== parent || type !== 'childList') {
            marks.nodes.add(childAround(parent, target));
            continue;
        }
        addedNodes.forEach((node) => marks.nodes.add(node));
        if (previousSibling)
            marks.behind.add(previousSibling);
        else
            marks.first = true;
        if (nextSibling)
            marks.inFront.add(nextSibling);
        else
            marks.last = true;
    }
    return marks;
}

function childAround(parent, node) {
    while (node && node.parentNode !== parent)
        node = node.parentNode;
    return node;
}

// How many element children, from one end, come before the first mark, and the last of them.
function untouched(node, direction, marks, places, isAtEnd) {
    const found = { count: 0, last: null };
    for (; node && !isAtEnd && !marks.nodes.has(node); node = node[direction]) {
        if (node instanceof Element) {
            ++found.count;
            found.last = node;
        }
        isAtEnd = places.has(node);
    }
    return found;
}

// The number of changes and the page's fingerprint, or the number alone while there is more to read: a piece at a time,
// as keys wait for each. The page is read from the start if asked to, and after a change.
function fingerprint(fromStart) {
    if (fromStart || fingerprinting.count !== changes.count)
        Object.assign(fingerprinting, { count: changes.count, pieces: fingerprintByPieces() });
    const { value, done } = fingerprinting.pieces.next();
    if (!done)
        return [changes.count];
    forgetFingerprint();
    return [changes.count, value];
}

const fingerprinting = { count: -1, pieces: null };
const pieceOfFingerprint = 32768; // code units

function forgetFingerprint() {
    Object.assign(fingerprinting, { count: -1, pieces: null });
}

// Computed in the same way by the editor over its tree: FNV-1a over all names, values and texts, whose kinds are told
// apart by characters that no page contains.
function* fingerprintByPieces() {
    let hash = 2166136261;
    let added = 0;
    const add = (text) => {
        for (let i = 0; i < text.length; ++i)
            hash = Math.imul(hash ^ text.charCodeAt(i), 16777619);
        added += text.length;
    };
    const enter = (node) => {
        if (node instanceof Element) {
            add('\u0001' + node.localName);
            for (const { name, value } of node.attributes)
                if (!isOwnSpellcheck({ name, value }) && (name !== 'open' || !openedDetails.has(node)))
                    add('\u0002' + name + '\u0003' + value);
        } else {
            add(node instanceof Text ? node.data : '\u0004' + node.data + '\u0005');
        }
    };
    const open = []; // templates whose content is being walked
    let node = document.documentElement;
    enter(node);
    for (;;) {
        const content = node instanceof HTMLTemplateElement ? node.content : node;
        let next = content.firstChild;
        if (next && content !== node)
            open.push(node);
        while (!next) {
            if (node instanceof Element)
                add('\u0006');
            if (node === document.documentElement)
                return hash >>> 0;
            next = node.nextSibling;
            if (!next)
                node = node.parentNode instanceof DocumentFragment ? open.pop() : node.parentNode;
        }
        node = next;
        enter(node);
        if (added > pieceOfFingerprint) {
            added = 0;
            yield;
        }
    }
}

for (const type of ['beforeinput', 'paste', 'cut', 'keydown', 'mousedown'])
    document.addEventListener(type, (event) => {
        changes.inputType = event.inputType || { paste: 'insertFromPaste', cut: 'deleteByCut' }[type] || '';
    }, { capture: true, passive: true });

changes.observer = new MutationObserver(postChanges);

changes.observer.observe(document, {
    attributes: true,
    characterData: true,
    childList: true,
    subtree: true,
});
