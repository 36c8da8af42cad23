// SPDX-License-Identifier: GPL-3.0-or-later
// Markup that parses to the same nodes again: a parser drops a line end directly after these tags (HTML, "in body",
// pre), and the engine does not write an extra one. "document.documentElement.outerHTML" is such markup too; only the
// editor's scripts see this accessor.

'use strict';

const outerMarkup = Object.getOwnPropertyDescriptor(Element.prototype, 'outerHTML').get;

// The markup of a node and of what is in it.
function markupOfNode(node) {
    if (node instanceof Comment)
        return '<!--' + node.data + '-->';
    if (node instanceof Text)
        return rawTextElements.has(node.parentNode.localName) ? node.data : escapedText(node.data);
    if (!holdsOpened(node) && !holdsOwnSpellcheck(node) && !partsOf(node).some((part) => beginningWithLineEnd(part).length > 0))
        return outerMarkup.call(node);
    const copy = node.cloneNode(true);
    closeOpened(node, copy);
    withoutOwnSpellcheck(copy);
    for (const part of partsOf(copy))
        beginningWithLineEnd(part).forEach((element) => element.prepend('\n'));
    return outerMarkup.call(copy);
}

const rawTextElements = new Set('style script xmp iframe noembed noframes plaintext'.split(' '));

const escapedText = (text) => text.replace(/[&<>\u00a0\r]/g, (character) =>
    ({ '&': '&amp;', '<': '&lt;', '>': '&gt;', '\u00a0': '&nbsp;', '\r': '&#13;' })[character]);

// The content of a template is a separate tree.
function partsOf(root) {
    const templates = root instanceof HTMLTemplateElement ? [root] : root.querySelectorAll('template');
    return [root, ...Array.from(templates, (template) => partsOf(template.content)).flat()];
}

function beginningWithLineEnd(part) {
    const selector = 'pre, textarea, listing';
    const own = part instanceof Element && part.matches(selector) ? [part] : [];
    return [...own, ...part.querySelectorAll(selector)].filter(({ firstChild }) =>
        firstChild instanceof Text && firstChild.data.startsWith('\n'));
}

Object.defineProperty(HTMLHtmlElement.prototype, 'outerHTML', {
    configurable: true,
    get() { return markupOfNode(this); },
});
