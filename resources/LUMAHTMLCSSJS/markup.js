// SPDX-License-Identifier: GPL-3.0-or-later
// "document.documentElement.outerHTML" as markup that is read as the same page again: a parser drops the line end
// right behind these tags (HTML, "in body", pre), and the engine writes none that it could drop. The accessor is
// seen by the editor's scripts alone.

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

    // What is in a template is a tree of its own.
    function partsOf(root) {
        return [root, ...Array.from(root.querySelectorAll('template'), (template) => partsOf(template.content)).flat()];
    }

    function beginningWithLineEnd(part) {
        return Array.from(part.querySelectorAll('pre, textarea, listing')).filter(({ firstChild }) =>
            firstChild instanceof Text && firstChild.data.startsWith('\n'));
    }
})();
