// SPDX-License-Identifier: GPL-3.0-or-later
// Makes the page editable. The design mode is a property of the document, not of its markup: it adds no attribute
// and no element that could reach the file.

'use strict';

function makeEditable() {
    document.designMode = 'on';
    document.execCommand('defaultParagraphSeparator', false, 'p');
    document.execCommand('styleWithCSS', false, false);
    document.execCommand('enableObjectResizing', false, false);
}

makeEditable();

// The engine types only into an element that has the focus, and only a click would give it to one.
addEventListener('focus', () => {
    if (!document.querySelector(':focus'))
        document.body?.focus({ preventScroll: true });
});

// Makes "document.body.scrollTop" the scroll position of the page, whichever element scrolls: in standards mode
// that is the root element, and the body's own value stays 0 (CSSOM View, scrollingElement). Only the editor's
// scripts see this accessor.
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
