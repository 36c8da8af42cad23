// SPDX-License-Identifier: GPL-3.0-or-later
// Makes "document.documentElement.outerHTML" markup that parses to the same page again: a parser drops a line end
// directly after these tags (HTML, "in body", pre), and the engine does not write an extra one. Only the editor's
// scripts see this accessor.

'use strict';

(function () {
    const own = Object.getOwnPropertyDescriptor(Element.prototype, 'outerHTML');

    Object.defineProperty(HTMLHtmlElement.prototype, 'outerHTML', {
        configurable: true,
        get() {
            if (!partsOf(this).some((part) => beginningWithLineEnd(part).length > 0))
                return own.get.call(this);
            const copy = this.cloneNode(true);
            for (const part of partsOf(copy))
                beginningWithLineEnd(part).forEach((element) => element.prepend('\n'));
            return own.get.call(copy);
        },
    });

    // The content of a template is a separate tree.
    function partsOf(root) {
        return [root, ...Array.from(root.querySelectorAll('template'), (template) => partsOf(template.content)).flat()];
    }

    function beginningWithLineEnd(part) {
        return Array.from(part.querySelectorAll('pre, textarea, listing')).filter(({ firstChild }) =>
            firstChild instanceof Text && firstChild.data.startsWith('\n'));
    }
})();
