// SPDX-License-Identifier: GPL-3.0-or-later
// Makes the page editable. The design mode belongs to the document, not to its markup: no attribute and no
// helper element is added, so nothing of it can reach the file.

function makeEditable() {
    document.designMode = 'on';
    document.execCommand('defaultParagraphSeparator', false, 'p');
    document.execCommand('styleWithCSS', false, false);
    document.execCommand('enableObjectResizing', false, false);
}

makeEditable();

// "document.body.scrollTop" is how far the page is scrolled, whichever element scrolls it: in standards mode
// that is the root element, and the body's own value stays 0 (CSSOM View, scrollingElement). The accessor is
// seen by the editor's scripts alone.
(function () {
    const own = Object.getOwnPropertyDescriptor(Element.prototype, 'scrollTop');

    function scroller(body) {
        return body === document.body && document.scrollingElement || body;
    }

    Object.defineProperty(HTMLBodyElement.prototype, 'scrollTop', {
        configurable: true,
        get() { return own.get.call(scroller(this)); },
        set(offset) { own.set.call(scroller(this), offset); },
    });
})();
