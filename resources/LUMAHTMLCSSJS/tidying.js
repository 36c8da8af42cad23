// SPDX-License-Identifier: GPL-3.0-or-later
// What printing a page's source anew must know of its looks.

'use strict';

// The paths of the elements that style sheets show in a line of text, though their names are those of blocks, or with
// all their blanks: line ends in or beside them would be seen. Without what is in another of them.
function elementsShownInLines() {
    const paths = [];
    const walker = document.createTreeWalker(document.body, NodeFilter.SHOW_ELEMENT, (element) => {
        if (element === document.body)
            return NodeFilter.FILTER_SKIP;
        const { display, whiteSpace } = getComputedStyle(element);
        const isShownSo = isBlock(element) && /^(inline|contents|ruby)/.test(display)
            || /^(pre|break-spaces)/.test(whiteSpace) && !element.matches('pre, textarea, listing');
        if (isShownSo)
            paths.push(pathOfElement(element));
        return isShownSo ? NodeFilter.FILTER_REJECT : NodeFilter.FILTER_ACCEPT;
    });
    while (walker.nextNode());
    return paths;
}
